#pragma once

#include <QObject>

namespace tamboro {

class UndoManager;

/// There is one undo, the store's: Undo and Redo reach it while a text field has the focus, also in a sheet, which
/// keeps the menu bar's keys away. Fields lose their own undo, in their context menus too.
class StoreUndoKeys : public QObject {
  Q_OBJECT

 public:
  /// Watches the whole application.
  explicit StoreUndoKeys(UndoManager& undoManager, QObject* parent = nullptr);
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  UndoManager& undoManager_;
};

}  // namespace tamboro
