#pragma once

#include <QMainWindow>
#include <memory>

#include "app/AppDelegate.h"
#include "app/CardFolderPanel.h"
#include "app/DesktopPrompts.h"
#include "audio/SamplePlayer.h"
#include "library/RolandLibrary.h"

namespace tamboro {

/// The application object: owns the delegate, the desktop's services, the one store, the one player and the main
/// window. Lives as long as the process; its end waits for jobs that still run.
class Application : public QObject {
  Q_OBJECT

 public:
  Application();
  ~Application() override;

  RolandLibrary& library() { return *library_; }
  AppDelegate& appDelegate() { return appDelegate_; }
  void showMainWindow();

 private:
  void makeWindow();
  void showAbout();
  bool eventFilter(QObject* watched, QEvent* event) override;

  DesktopPrompts prompts_;
  AppDelegate appDelegate_;
  std::unique_ptr<FileSystem> files_;
  std::unique_ptr<Defaults> defaults_;
  std::unique_ptr<BackgroundJobs> jobs_;
  std::unique_ptr<Timers> timers_;
  CardFolderPanel folderPanel_;
  std::unique_ptr<RolandLibrary> library_;
  SamplePlayer player_;
  std::unique_ptr<QMainWindow> window_;
};

}  // namespace tamboro
