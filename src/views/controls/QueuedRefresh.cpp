#include "views/controls/QueuedRefresh.h"

namespace tamboro {

QueuedRefresh::QueuedRefresh(RolandLibrary& store, std::function<void()> refresh, QObject* parent)
    : QueuedRefresh(store, {}, std::move(refresh), parent) {}

QueuedRefresh::QueuedRefresh(RolandLibrary& store, std::set<RolandLibrary::Property> properties,
                             std::function<void()> refresh, QObject* parent)
    : QObject(parent), properties_(std::move(properties)), refresh_(std::move(refresh)) {
  connect(&store, &RolandLibrary::published, this, &QueuedRefresh::published);
}

void QueuedRefresh::published(RolandLibrary::Property property) {
  if (isRequested_ || (!properties_.empty() && !properties_.contains(property))) return;
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
