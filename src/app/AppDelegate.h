#pragma once

#include <QObject>

#include "app/UpdaterController.h"

namespace tamboro {

/// What the program does at the edges of its life: updates, the last window, coming back to the front.
class AppDelegate : public QObject {
  Q_OBJECT

 public:
  explicit AppDelegate(UpdaterServices updates, QObject* parent = nullptr);

  void applicationDidFinishLaunching();
  bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }
  /// The program was started or clicked again while it runs: without a visible window, all windows come to the front.
  bool applicationShouldHandleReopen(bool hasVisibleWindows);
  UpdaterController& updaterController() { return updaterController_; }

 private:
  UpdaterController updaterController_;
};

}  // namespace tamboro
