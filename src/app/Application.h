#pragma once

#include <QMainWindow>
#include <memory>

#include "app/AppDelegate.h"
#include "app/CardFolderPanel.h"
#include "app/ColourScheme.h"
#include "app/DesktopFileViewer.h"
#include "app/DesktopPrompts.h"
#include "app/EndSignals.h"
#include "app/NetworkFeedFetcher.h"
#include "audio/SamplePlayer.h"
#include "library/store/RolandLibrary.h"

namespace tamboro {

class ContentView;
class GuideWindow;
class SettingsWindow;

/// The application object: owns the delegate, the desktop's services, the one store, the one player, the main
/// window and the settings window. Lives as long as the process; its end waits for jobs that still run.
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
  void showPreferences();
  void showGuide();
  void followScheme();
  void finish();
  bool eventFilter(QObject* watched, QEvent* event) override;

  DesktopPrompts prompts_;
  std::unique_ptr<Defaults> defaults_;
  std::unique_ptr<Timers> timers_;
  NetworkFeedFetcher feedFetcher_;
  AppDelegate appDelegate_;
  DesktopFileViewer fileViewer_;
  std::unique_ptr<FileSystem> files_;
  std::unique_ptr<BackgroundJobs> jobs_;
  CardFolderPanel folderPanel_;
  std::unique_ptr<RolandLibrary> library_;
  SamplePlayer player_;
  std::unique_ptr<QMainWindow> window_;
  ContentView* content_ = nullptr;
  ColourScheme scheme_;
  EndSignals endSignals_;
  SettingsWindow* settings_ = nullptr;  ///< made when first asked for, the main window's
  GuideWindow* guide_ = nullptr;        ///< likewise
};

}  // namespace tamboro
