#pragma once

#include <QWidget>

#include "library/store/RolandLibrary.h"

class QPushButton;

namespace tamboro {

class ElidedLabel;
class FileViewer;
class MenuPicker;
class Prompts;
class Switch;

/// The settings window's content: where the card is, autosave and backup. Every change takes effect at once.
class PreferencesView : public QWidget {
  Q_OBJECT

 public:
  /// The disk is asked through `files` on one of `jobs`; both outlive the view and its jobs.
  PreferencesView(RolandLibrary& store, const FileSystem& files, BackgroundJobs& jobs, FileViewer& viewer,
                  Prompts& prompts, QWidget* parent = nullptr);

 protected:
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  QWidget* makeCardGroup();
  QWidget* makeAutosaveGroup();
  QWidget* makeSafetyGroup();
  void changeLocation();
  void refresh();
  void lookForBackup();

  RolandLibrary& store_;
  const FileSystem& files_;
  BackgroundJobs& jobs_;
  FileViewer& viewer_;
  Prompts& prompts_;

  bool isLooking_ = false;
  bool looksAgain_ = false;

  ElidedLabel* cardPath_ = nullptr;
  QWidget* cardPathRow_ = nullptr;
  Switch* autosave_ = nullptr;
  MenuPicker* interval_ = nullptr;
  QWidget* intervalRow_ = nullptr;
  Switch* backup_ = nullptr;
  QPushButton* showBackup_ = nullptr;
};

}  // namespace tamboro
