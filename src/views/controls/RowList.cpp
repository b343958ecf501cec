#include "views/controls/RowList.h"

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>

#include "views/controls/RowDelegate.h"
#include "views/controls/RowListAccessible.h"
#include "views/look/Look.h"
#include "views/look/LookPaint.h"

namespace tamboro {

namespace {

/// Keys that the field has no use for must not move the list's selection under it.
class RowEditor : public QLineEdit {
 public:
  explicit RowEditor(RowList& list) : QLineEdit(&list), list_(list) {}

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    QLineEdit::keyPressEvent(event);
    event->accept();
  }
  void wheelEvent(QWheelEvent* event) override { QCoreApplication::sendEvent(list_.viewport(), event); }
  void focusInEvent(QFocusEvent* event) override {
    QLineEdit::focusInEvent(event);
    list_.viewport()->update();
  }
  void focusOutEvent(QFocusEvent* event) override {
    QLineEdit::focusOutEvent(event);
    list_.viewport()->update();
  }

 private:
  RowList& list_;
};

}  // namespace

RowList::RowList(RowModel* model, RowDelegate* delegate, QWidget* parent)
    : QTreeView(parent), rows_(model), delegate_(delegate) {
  installRowListAccessible();
  model->setParent(this);
  delegate->setParent(this);
  setModel(model);
  setItemDelegate(delegate);
  setFrameShape(NoFrame);
  setHeaderHidden(true);
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setEditTriggers(NoEditTriggers);
  setSelectionBehavior(SelectRows);
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setAutoScroll(false);
  header()->setMinimumSectionSize(0);
  viewport()->setAutoFillBackground(false);  // the column's ground shows through
}

void RowList::setRows(std::vector<RowKey> rows, const std::set<RowKey>& changed) {
  const std::set<RowKey> selected = selectedKeys();
  const auto current = rows_->key(currentIndex());
  const auto kept = place();
  if (rows_->setRows(std::move(rows), changed)) {
    const QScopedValueRollback filling(isFilling_, true);
    hoveredRow_ = -1;
    std::erase_if(editors_, [&](const auto& entry) {
      if (rows_->indexOf(entry.first).isValid()) return false;
      if (entry.second) entry.second->deleteLater();
      return true;
    });
    if (current) selectionModel()->setCurrentIndex(rows_->indexOf(*current), QItemSelectionModel::NoUpdate);
    setSelectedKeys(selected);
    keepPlace(kept);
    announce(QAccessible::ObjectReorder, {});
  } else {
    for (const RowKey& key : changed)
      announce(QAccessible::NameChanged, rows_->indexOf(key));
  }
  viewport()->update();
}

std::optional<std::pair<RowKey, int>> RowList::place() const {
  if (verticalScrollBar()->value() == 0) return std::nullopt;
  // The lowest row in sight: what comes and goes at the list's head then moves nothing below it.
  for (int y = viewport()->height() - 1; y >= 0; y -= 16) {
    const QModelIndex index = indexAt({1, y});
    if (index.isValid()) return std::pair(*rows_->key(index), visualRect(index).y());
  }
  return std::nullopt;
}

void RowList::keepPlace(const std::optional<std::pair<RowKey, int>>& place) {
  executeDelayedItemsLayout();
  const QModelIndex index = place ? rows_->indexOf(place->first) : QModelIndex();
  if (index.isValid())
    verticalScrollBar()->setValue(verticalScrollBar()->value() + visualRect(index).y() - place->second);
}

std::set<RowKey> RowList::selectedKeys() const {
  std::set<RowKey> keys;
  for (const QModelIndex& index : selectionModel()->selectedRows())
    keys.insert(*rows_->key(index));
  return keys;
}

void RowList::setSelectedKeys(const std::set<RowKey>& keys) {
  if (keys == selectedKeys()) return;
  const QScopedValueRollback filling(isFilling_, true);
  QItemSelection selection;
  int last = -1;
  const int end = rows_->rowCount();
  for (int row = 0; row < end; ++row) {
    const bool isWanted = keys.contains(rows_->rows()[static_cast<std::size_t>(row)]);
    if (isWanted && last < 0) last = row;
    const bool isEnd = !isWanted || row + 1 == end;
    if (last >= 0 && isEnd) {
      selection.select(rows_->index(last, 0), rows_->index(isWanted ? row : row - 1, rows_->columnCount() - 1));
      last = -1;
    }
  }
  selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  const QModelIndexList indexes = selectionModel()->selectedRows();
  if (!indexes.isEmpty() && !selectionModel()->isSelected(currentIndex()))
    selectionModel()->setCurrentIndex(indexes.first(), QItemSelectionModel::NoUpdate);
}

void RowList::reveal(const RowKey& key) {
  executeDelayedItemsLayout();
  scrollTo(rows_->indexOf(key));
}

QLineEdit* RowList::openEditor(const RowKey& key, const QString& text) {
  const QModelIndex index = rows_->indexOf(key);
  if (!index.isValid()) return nullptr;
  auto& editor = editors_[key];
  if (!editor) editor = new RowEditor(*this);
  editor->setText(text);
  reveal(key);
  updateEditorGeometries();
  editor->show();
  editor->selectAll();
  editor->setFocus();
  update(index);
  return editor;
}

void RowList::closeEditor(const RowKey& key) {
  const auto place = editors_.find(key);
  if (place == editors_.end()) return;
  const QPointer<QLineEdit> editor = place->second;
  editors_.erase(place);
  if (editor) {
    if (editor->hasFocus()) setFocus();
    editor->hide();
    editor->deleteLater();
  }
  viewport()->update();
}

QLineEdit* RowList::editor(const RowKey& key) const {
  const auto place = editors_.find(key);
  return place == editors_.end() ? nullptr : place->second.data();
}

QList<QLineEdit*> RowList::editors() const {
  QList<QLineEdit*> open;
  for (const auto& [key, editor] : editors_) {
    if (editor) open << editor;
  }
  return open;
}

void RowList::updateEditorGeometries() {
  QTreeView::updateEditorGeometries();
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  for (const auto& [key, editor] : editors_) {
    const QModelIndex index = rows_->indexOf(key);
    if (!editor || !index.isValid()) continue;
    option.rect = visualRect(index);
    editor->setGeometry(delegate_->editorRect(option, index).translated(viewport()->pos()));
  }
}

void RowList::scrollContentsBy(int dx, int dy) {
  QTreeView::scrollContentsBy(dx, dy);
  updateEditorGeometries();
}

bool RowList::isInUse() const {
  const QWidget* focused = QApplication::focusWidget();
  return focused && (focused == this || isAncestorOf(focused));
}

void RowList::paintGround(QPainter& painter, const QRect& row, const QModelIndex& index) const {
  const Look& look = Look::current();
  const QRect shape = row.adjusted(6, 0, -6, 0);
  const bool isSelected = selectionModel()->isSelected(index);
  const bool isEcho = index.data(rowRole::isEcho).toBool();
  if (isSelected && isInUse()) {
    paintBox(painter, shape, controlRadius, look.rowSelected);
    const QRect bar(shape.x(), shape.y() + Look::px(10), 3, shape.height() - 2 * Look::px(10));
    paintBox(painter, QStyle::visualRect(layoutDirection(), shape, bar), 1.5, look.focusRing);
  } else if (isSelected || isEcho) {
    paintBox(painter, shape, controlRadius, look.rowSelectedUnfocused);
  } else if (index.row() == hoveredRow_) {
    paintBox(painter, shape, controlRadius, look.rowHover);
  }
  if (!isSelected && hasFocus() && index.row() == currentIndex().row())
    paintBox(painter, shape, controlRadius, {}, look.focusRing, 2);
}

void RowList::drawRow(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const auto kind = rows_->key(index)->kind;
  if (kind == RowKey::Kind::record) paintGround(*painter, option.rect, index);
  QStyleOptionViewItem cell(option);
  cell.state.setFlag(QStyle::State_MouseOver, index.row() == hoveredRow_);
  cell.state.setFlag(QStyle::State_Selected, selectionModel()->isSelected(index));
  const bool isSpanned = kind != RowKey::Kind::record;
  for (int column = 0; column < (isSpanned ? 1 : rows_->columnCount()); ++column) {
    const QModelIndex sibling = index.siblingAtColumn(column);
    cell.rect = isSpanned ? option.rect : visualRect(sibling);
    delegate_->paint(painter, cell, sibling);
  }
}

bool RowList::isSelectable(int row) const {
  return rows_->flags(rows_->index(row, 0)).testFlag(Qt::ItemIsSelectable);
}

QModelIndex RowList::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
  const QModelIndex wanted = QTreeView::moveCursor(action, modifiers);
  if (!wanted.isValid() || isSelectable(wanted.row())) return wanted;
  const bool isUp = action == MoveUp || action == MovePrevious || action == MovePageUp || action == MoveEnd;
  // On over rows that only echo others; where the list ends with them, back to the last that can be selected.
  for (const int step : {isUp ? -1 : 1, isUp ? 1 : -1})
    for (int row = wanted.row(); row >= 0 && row < rows_->rowCount(); row += step)
      if (isSelectable(row)) return rows_->index(row, wanted.column());
  return {};
}

void RowList::announce(int event, const QModelIndex& index) {
  if (!QAccessible::isActive()) return;
  QAccessibleEvent told(this, static_cast<QAccessible::Event>(event));
  if (index.isValid()) told.setChild(index.row() * rows_->columnCount() + index.column());
  QAccessible::updateAccessibility(&told);
}

// Not the tree view's own: that counts a row of column titles into the place of a cell.
void RowList::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QAbstractItemView::selectionChanged(selected, deselected);
  if (!selected.isEmpty()) announce(QAccessible::Selection, selected.first().topLeft());
  if (!isFilling_) Q_EMIT selectionEdited();
}

void RowList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QAbstractItemView::currentChanged(current, previous);
  if (isFilling_ || !current.isValid()) return;
  scrollTo(current);
  if (hasFocus()) announce(QAccessible::Focus, current);
}

void RowList::focusInEvent(QFocusEvent* event) {
  QTreeView::focusInEvent(event);
  announce(QAccessible::Focus, currentIndex());
}

void RowList::press(const QModelIndex& index) {
  const auto key = rows_->key(index);
  if (!key || key->kind == RowKey::Kind::header) return;
  if (isSelectable(index.row()))
    setCurrentIndex(index);
  else
    Q_EMIT rowPressed(*key);
}

void RowList::showMenu(const QModelIndex& index, const QPoint& globalPosition) {
  const auto key = rows_->key(index);
  if (key && key->kind == RowKey::Kind::record) Q_EMIT menuRequested(*key, globalPosition);
}

void RowList::mousePressEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  pressed_ = rows_->key(index);
  pressedPlace_ = event->position().toPoint() - visualRect(index).topLeft();
  // A click beside the rows selects nothing else, and the secondary button only asks for the menu.
  if (event->button() != Qt::LeftButton || !index.isValid()) return;
  if (isSelectable(index.row()))
    QTreeView::mousePressEvent(event);
  else
    press(index);
}

void RowList::mouseMoveEvent(QMouseEvent* event) {
  if (selectionMode() != SingleSelection || event->buttons() == Qt::NoButton) QTreeView::mouseMoveEvent(event);
}

void RowList::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && pressed_ && pressed_->kind == RowKey::Kind::record)
    Q_EMIT rowDoubleClicked(*pressed_, pressedPlace_);
}

void RowList::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() == QContextMenuEvent::Mouse)
    return showMenu(indexAt(viewport()->mapFromGlobal(event->globalPos())), event->globalPos());
  scrollTo(currentIndex());
  showMenu(currentIndex(), viewport()->mapToGlobal(visualRect(currentIndex()).center()));
}

void RowList::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_F10 || event->modifiers() != Qt::ShiftModifier) return QTreeView::keyPressEvent(event);
  QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(), QPoint());
  contextMenuEvent(&menu);
}

void RowList::hover(int row) {
  if (row == hoveredRow_) return;
  for (const int changed : {hoveredRow_, row})
    if (changed >= 0)
      viewport()->update(QRect(0, visualRect(rows_->index(changed, 0)).y(), viewport()->width(),
                               visualRect(rows_->index(changed, 0)).height()));
  hoveredRow_ = row;
}

bool RowList::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverMove)
    hover(indexAt(static_cast<QHoverEvent*>(event)->position().toPoint()).row());
  if (event->type() == QEvent::HoverLeave) hover(-1);
  return QTreeView::viewportEvent(event);
}

}  // namespace tamboro
