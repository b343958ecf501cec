#include "app/StoreUndoKeys.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>

#include "platform/UndoManager.h"

namespace tamboro {

namespace {

/// The standard menu without its first rows, undo, redo and a divider, which a read-only field hasn't got.
void showContextMenu(QLineEdit& field, const QPoint& place) {
  QMenu* menu = field.createStandardContextMenu();
  menu->setAttribute(Qt::WA_DeleteOnClose);
  if (!field.isReadOnly()) {
    const QList<QAction*> rows = menu->actions();
    for (qsizetype row = 0; row < 3 && row < rows.size(); ++row)
      menu->removeAction(rows[row]);
  }
  menu->popup(place);
}

}  // namespace

StoreUndoKeys::StoreUndoKeys(UndoManager& undoManager, QObject* parent) : QObject(parent), undoManager_(undoManager) {
  qApp->installEventFilter(this);
}

bool StoreUndoKeys::eventFilter(QObject* watched, QEvent* event) {
  auto* field = qobject_cast<QLineEdit*>(watched);
  if (!field) return false;
  if (event->type() == QEvent::ContextMenu && field->contextMenuPolicy() == Qt::DefaultContextMenu) {
    showContextMenu(*field, static_cast<QContextMenuEvent*>(event)->globalPos());
    return true;
  }
  if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress) return false;
  const auto* key = static_cast<QKeyEvent*>(event);
  const bool isUndo = key->matches(QKeySequence::Undo);
  if (!isUndo && !key->matches(QKeySequence::Redo)) return false;
  if (event->type() == QEvent::ShortcutOverride) {
    event->ignore();  // the menu's rows get the key
  } else {
    event->accept();
    isUndo ? undoManager_.undo() : undoManager_.redo();
  }
  return true;
}

}  // namespace tamboro
