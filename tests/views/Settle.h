#pragma once

#include <QApplication>

namespace tamboro::test {

/// Delivers what is queued, and what that queues; what was to be deleted later is gone then.
inline void settle() {
  for (int turn = 0; turn < 3; ++turn) {
    QApplication::sendPostedEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();
  }
}

}  // namespace tamboro::test
