#pragma once

#include <QWidget>

#include "views/controls/Prompts.h"
#include "views/kits/KitListRules.h"
#include "views/lists/RowModel.h"

class QMenu;

namespace tamboro {

class KitRowDelegate;
class RolandLibrary;
class RowList;
class SearchField;

/// The sidebar: the card's kits, those used last above them, a search, and all that is done to a whole kit.
class KitListView : public QWidget {
  Q_OBJECT

 public:
  enum Section { recent, all };

  KitListView(RolandLibrary& store, Prompts& prompts, QWidget* parent = nullptr);

  void setShowingNewKitSheet();
  /// Comes up for the first time, if only behind a hidden column: without a selected kit the first one is selected.
  void appear();
  /// To the list, where the open kit is.
  void takeKeyboard();
  void search();

 Q_SIGNALS:
  /// The user opened a kit, or the one that is open, by the keyboard: its pads are next.
  void handsKeyboardOn();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  QWidget* makeStrip();
  QVariant value(const RowKey& row, int role) const;
  QVariant kitValue(const KitRowValues& kit, const RowKey& row, int role) const;
  void refresh();
  void showRows();
  void followSelection();
  void select(Slot slot);
  void selectionEdited();
  void activated(const RowKey& row, Qt::Key key);
  void doubleClicked(const RowKey& row, const QPoint& place);
  void openMenu(const RowKey& row, const QPoint& position);
  void rename(const RowKey& row);
  void duplicateKit(Slot slot);
  void confirmDelete(Slot slot);
  void deleteKit(Slot slot);
  void chooseExportFolder(Slot slot);
  void exportKit(Slot slot, const std::filesystem::path& folder);

  RolandLibrary& store_;
  Prompts& prompts_;

  std::vector<KitRowValues> kits_;
  std::optional<Slot> shownSelection_;  ///< the selection that the list has been brought to
  bool hasAppeared_ = false;

  SearchField* search_;
  KitRowDelegate* delegate_;
  RowList* list_;
};

}  // namespace tamboro
