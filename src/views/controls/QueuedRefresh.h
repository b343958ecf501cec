#pragma once

#include <QObject>
#include <functional>
#include <set>

#include "library/store/RolandLibrary.h"

namespace tamboro {

/// Runs a screen's refresh once per event turn, however many properties of the store changed in it.
class QueuedRefresh : public QObject {
  Q_OBJECT

 public:
  QueuedRefresh(RolandLibrary& store, std::function<void()> refresh, QObject* parent);
  /// Only after a change of one of these properties.
  QueuedRefresh(RolandLibrary& store, std::set<RolandLibrary::Property> properties, std::function<void()> refresh,
                QObject* parent);

 private:
  void published(RolandLibrary::Property property);

  std::set<RolandLibrary::Property> properties_;  ///< empty: any
  std::function<void()> refresh_;
  bool isRequested_ = false;
};

}  // namespace tamboro
