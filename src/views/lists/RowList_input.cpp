// What the mouse and the keyboard do in a list.

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMetaMethod>
#include <QScopedValueRollback>

#include "views/lists/RowList.h"

namespace tamboro {

// ---- the keyboard's place

int RowList::nearestSelectable(int row, int step) const {
  for (; row >= 0 && row < rows_->rowCount(); row += step)
    if (isSelectable(row)) return row;
  return -1;
}

/// In the column where the keyboard stands, if the row has a control there.
QModelIndex RowList::landing(int row) const {
  if (row < 0) return {};
  const QModelIndex same = rows_->index(row, currentIndex().isValid() ? currentIndex().column() : mainColumn_);
  return isControl(same) ? same : rows_->index(row, mainColumn_);
}

QModelIndex RowList::moveCursor(CursorAction action, Qt::KeyboardModifiers) {
  const int end = rows_->rowCount() - 1;
  if (end < 0 || action == MoveLeft || action == MoveRight) return currentIndex();
  const int row = currentIndex().row();
  const auto page = [&](int height) {
    return std::clamp(rowAt(tops()[static_cast<std::size_t>(row)] + height), 0, end);
  };
  const bool isUp = action == MoveUp || action == MovePrevious || action == MovePageUp || action == MoveEnd;
  int wanted = 0;
  if (action == MoveEnd)
    wanted = end;
  else if (row < 0 || action == MoveHome)
    wanted = 0;
  else if (action == MovePageUp || action == MovePageDown)
    wanted = page(action == MovePageUp ? -viewport()->height() : viewport()->height());
  else
    wanted = std::clamp(row + (isUp ? -1 : 1), 0, end);
  // On over rows that can't be selected; where the list ends with them, back to the last that can.
  const int found = nearestSelectable(wanted, isUp ? -1 : 1);
  return landing(found >= 0 ? found : nearestSelectable(wanted, isUp ? 1 : -1));
}

/// The next control of the row to that side, or its name.
QModelIndex RowList::control(const QModelIndex& index, int step) const {
  for (int column = index.column() + step; column >= 0 && column < rows_->columnCount(); column += step) {
    const QModelIndex next = index.siblingAtColumn(column);
    if (column == mainColumn_ || isControl(next)) return next;
  }
  return index;
}

// ---- keys

void RowList::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    return contextMenuEvent(&menu);
  }
  const bool isSideways = event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
  if (isSideways && rows_->columnCount() > 1 && currentIndex().isValid()) {
    const bool isForward = (event->key() == Qt::Key_Right) != isRightToLeft();
    selectionModel()->setCurrentIndex(control(currentIndex(), isForward ? 1 : -1), QItemSelectionModel::NoUpdate);
    return;
  }
  if (!activate(*event)) QAbstractItemView::keyPressEvent(event);
}

bool RowList::activate(QKeyEvent& event) {
  const auto key = rows_->key(currentIndex());
  if (!key || key->kind != RowKey::Kind::record || (event.modifiers() & ~Qt::KeypadModifier)) return false;
  auto pressed = static_cast<Qt::Key>(event.key());
  if (pressed == Qt::Key_Enter) pressed = Qt::Key_Return;
  const bool isPress = pressed == Qt::Key_Space || pressed == Qt::Key_Return;
  if (!isPress && pressed != Qt::Key_F2 && pressed != Qt::Key_Delete && pressed != Qt::Key_Backspace) return false;
  if (isPress && isControl(currentIndex())) {
    if (!event.isAutoRepeat()) press(currentIndex());
    return true;
  }
  if (!isSignalConnected(QMetaMethod::fromSignal(&RowList::rowActivated))) return false;
  if (!event.isAutoRepeat()) Q_EMIT rowActivated(*key, pressed);
  return true;
}

void RowList::keyboardSearch(const QString& search) {
  // What is typed finds names, wherever in a row the keyboard stands.
  const QModelIndex current = currentIndex();
  if (current.isValid() && current.column() != mainColumn_)
    selectionModel()->setCurrentIndex(current.siblingAtColumn(mainColumn_), QItemSelectionModel::NoUpdate);
  const QScopedValueRollback searching(isSearching_, true);
  QAbstractItemView::keyboardSearch(search);
}

QItemSelectionModel::SelectionFlags RowList::selectionCommand(const QModelIndex& index, const QEvent* event) const {
  const bool isCursor = isSearching_ || (event && event->type() == QEvent::KeyPress);
  return isCursor && !cursorSelects_ ? QItemSelectionModel::NoUpdate
                                     : QAbstractItemView::selectionCommand(index, event);
}

void RowList::focusInEvent(QFocusEvent* event) {
  QAbstractItemView::focusInEvent(event);
  viewport()->update();
  // Behind the toolkit's own word, which is for the list as a whole.
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (hasFocus()) announce(QAccessible::Focus, currentIndex());
      },
      Qt::QueuedConnection);
}

// ---- mouse

void RowList::beginControl(const QModelIndex& index) {
  sunken_ = index;
  hovered_ = index;
  updateRow(index.row());
}

/// Meant for the row that stood there when the first one selected it, and moved on with that.
bool RowList::isSecondClick(const QPoint& point, const std::optional<RowKey>& key) const {
  return pressed_ && key != pressed_ && sincePress_.isValid() &&
         !sincePress_.hasExpired(QApplication::doubleClickInterval()) && pressedArea_.contains(point);
}

void RowList::mousePressEvent(QMouseEvent* event) {
  const QPoint point = event->position().toPoint();
  const QModelIndex index = indexAt(point);
  if (event->button() == Qt::LeftButton && isSecondClick(point, rows_->key(index))) return;
  pressed_ = rows_->key(index);
  pressedPoint_ = point;
  pressedArea_ = index.isValid() ? rowRect(index.row()) : QRect();
  sincePress_.start();
  if (index.isValid()) pressedPlace_ = point - pressedArea_.topLeft();
  // A click beside the rows selects nothing else, and the secondary button only asks for the menu.
  if (event->button() != Qt::LeftButton || !index.isValid()) return;
  if (isControl(index)) return beginControl(index);
  setFocus(Qt::MouseFocusReason);
  if (!isSelectable(index.row())) return press(index);
  QAbstractItemView::mousePressEvent(event);
  if (currentIndex().isValid() && currentIndex().column() != mainColumn_)
    selectionModel()->setCurrentIndex(currentIndex().siblingAtColumn(mainColumn_), QItemSelectionModel::NoUpdate);
}

void RowList::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() != Qt::LeftButton) return;
  const QPoint point = event->position().toPoint();
  if (sunken_.isValid()) return hover(indexAt(point));
  const bool isFar = (point - pressedPoint_).manhattanLength() >= QApplication::startDragDistance();
  if (!dragEnabled() || !isFar || !pressed_ || pressed_->kind != RowKey::Kind::record) return;
  const RowKey key = *pressed_;
  pressed_.reset();
  setState(NoState);  // the release belongs to the drag
  Q_EMIT dragRequested(key);
}

void RowList::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  if (!sunken_.isValid()) return pressed_ ? QAbstractItemView::mouseReleaseEvent(event) : void();
  const QModelIndex control = sunken_;
  sunken_ = QModelIndex();
  updateRow(control.row());
  if (indexAt(event->position().toPoint()) == control) press(control);
}

void RowList::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  sincePress_.start();
  const QModelIndex index = indexAt(event->position().toPoint());
  if (isControl(index)) return beginControl(index);
  if (pressed_ && pressed_->kind == RowKey::Kind::record) Q_EMIT rowDoubleClicked(*pressed_, pressedPlace_);
}

void RowList::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() == QContextMenuEvent::Mouse)
    return showMenu(indexAt(viewport()->mapFromGlobal(event->globalPos())), event->globalPos());
  scrollTo(currentIndex());
  showMenu(currentIndex(), viewport()->mapToGlobal(visualRect(currentIndex()).center()));
}

void RowList::hover(const QModelIndex& index) {
  if (hovered_ == index) return;
  updateRow(hovered_.row());
  updateRow(index.row());
  hovered_ = index;
}

bool RowList::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverMove)
    hover(indexAt(static_cast<QHoverEvent*>(event)->position().toPoint()));
  if (event->type() == QEvent::HoverLeave) hover({});
  return QAbstractItemView::viewportEvent(event);
}

}  // namespace tamboro
