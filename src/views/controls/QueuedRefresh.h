#pragma once

#include <QObject>
#include <functional>

#include "library/RolandLibrary.h"

namespace tamboro {

/// Runs a screen's refresh once per event turn, however many properties of the store changed in it.
class QueuedRefresh : public QObject {
  Q_OBJECT

 public:
  QueuedRefresh(RolandLibrary& store, std::function<void()> refresh, QObject* parent);

 private:
  void request();

  std::function<void()> refresh_;
  bool isRequested_ = false;
};

}  // namespace tamboro
