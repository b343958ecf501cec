#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

namespace tamboro::test {

/// Runs the event loop until a condition holds; false after half a minute without it.
template<typename Condition>
bool waitUntil(Condition condition) {
  const QDeadlineTimer deadline(30'000);
  while (!condition()) {
    if (deadline.hasExpired()) return false;
    QCoreApplication::processEvents();
    QThread::usleep(500);
  }
  return true;
}

inline void runLoopFor(int milliseconds) {
  const QDeadlineTimer deadline(milliseconds);
  waitUntil([&] { return deadline.hasExpired(); });
}

}  // namespace tamboro::test
