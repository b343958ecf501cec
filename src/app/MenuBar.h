#pragma once

#include <QMenuBar>
#include <array>
#include <optional>

#include "library/store/RolandLibrary.h"

namespace tamboro {

/// The slot that "Go to Kit `number`" selects, counting the existing kits in the order of their slots from 1.
std::optional<Slot> slotOfKitNumber(const RolandLibrary& store, int number);

/// The menus. Each row is one call into the store; the rows follow the store at once.
class MenuBar : public QMenuBar {
  Q_OBJECT

 public:
  explicit MenuBar(RolandLibrary& store, QWidget* parent = nullptr);
  void showKitListShown(bool on) { kitList_->setChecked(on); }

 Q_SIGNALS:
  void preferencesRequested();
  void aboutRequested();
  void guideRequested();
  void checkForUpdatesRequested();
  void kitListToggled(bool on);
  void searchRequested();
  void columnRequested(int step);

 private:
  QAction* addRow(QMenu* menu, const QString& objectName, const QString& title, const QKeySequence& key = {});
  QMenu* addNamedMenu(const QString& title);
  void addFileMenu();
  void addEditMenu();
  void addKitMenu();
  void addViewMenu();
  void addHelpMenu();
  void follow();
  void followUndo();
  void goToKit(int number);
  void copySound();
  void pasteSound();
  void save();

  RolandLibrary& store_;
  QAction* save_ = nullptr;
  QAction* undo_ = nullptr;
  QAction* redo_ = nullptr;
  QAction* copySound_ = nullptr;
  QAction* pasteSound_ = nullptr;
  QAction* kitList_ = nullptr;
  QList<QAction*> viewRows_;
  std::array<QAction*, 9> goToKit_{};
};

}  // namespace tamboro
