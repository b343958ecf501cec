#pragma once

#include <QPointer>
#include <QWidget>
#include <optional>

#include "library/store/RolandLibrary.h"
#include "views/controls/Prompts.h"

class QPushButton;
class QStackedLayout;

namespace tamboro {

class ColumnSplitter;
class EmptyStatePanel;
class KitEditorView;
class KitListView;
class NoticeStack;
class SamplePlayer;
class Sheet;
class WaveBrowserView;
class WelcomeView;

/// The main window's content: the welcome screen exactly while no card is open, else three columns between toolbar and
/// status line. Restores the last card and kit when it first appears and takes dropped card folders.
class ContentView : public QWidget {
  Q_OBJECT

 public:
  static const QString lastKitSlotKey;

  ContentView(RolandLibrary& store, SamplePlayer& player, const FileSystem& files, Defaults& defaults, Prompts& prompts,
              QWidget* parent = nullptr);

  void setShowingTagEditor(bool on);
  bool showingTagEditor() const { return !tagEditor_.isNull(); }

  ColumnSplitter& columns() { return *columns_; }
  bool isKitListShown() const;
  /// By the user's hand: what is shown so gets the keyboard.
  void setKitListShown(bool on);
  /// To the search field of the column in use; from the pads, which have none, to that of the samples.
  void search();
  /// Gives the keyboard to the next of the shown columns, or with -1 to the one before.
  void walkColumns(int step);
  /// The message of a failed save while its alert is up.
  const std::optional<QString>& showingExportError() const { return showingExportError_; }

 Q_SIGNALS:
  void kitListShownChanged(bool on);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  QWidget* makeWorkspace();
  QWidget* makeToolbar();
  QPushButton* makeKitListButton();
  QWidget* makeColumns();
  QWidget* makeMiddle();
  void refresh();
  void followLastError();
  void tellOfLeftovers();
  void restore();
  void rememberKit();
  void save();
  void startSave(RolandLibrary::ChangedFiles changed);
  void tellOfFailedSave(const std::exception_ptr& error);
  QString leftoversText() const;
  void followShortcutsHelp();
  bool isInUse(const QWidget& column) const;

  RolandLibrary& store_;
  SamplePlayer& player_;
  const FileSystem& files_;
  Defaults& defaults_;
  Prompts& prompts_;

  std::optional<QString> showingExportError_;
  bool hasAppeared_ = false;

  QStackedLayout* pages_;
  WelcomeView* welcome_;
  QWidget* workspace_;
  NoticeStack* notices_ = nullptr;
  QStackedLayout* middle_ = nullptr;
  EmptyStatePanel* noKit_ = nullptr;
  KitEditorView* kit_ = nullptr;
  ColumnSplitter* columns_ = nullptr;
  KitListView* kits_ = nullptr;
  WaveBrowserView* samples_ = nullptr;
  QPointer<Sheet> tagEditor_;
  QPointer<Sheet> shortcutsHelp_;
};

}  // namespace tamboro
