#include "views/controls/QueuedRefresh.h"

namespace tamboro {

QueuedRefresh::QueuedRefresh(RolandLibrary& store, std::function<void()> refresh, QObject* parent)
    : QObject(parent), refresh_(std::move(refresh)) {
  connect(&store, &RolandLibrary::published, this, &QueuedRefresh::request);
}

void QueuedRefresh::request() {
  if (isRequested_) return;
  isRequested_ = true;
  QMetaObject::invokeMethod(
      this,
      [this] {
        isRequested_ = false;
        refresh_();
      },
      Qt::QueuedConnection);
}

}  // namespace tamboro
