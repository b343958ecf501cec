// Where the rows and their cells stand, and how they are painted.

#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <array>

#include "views/lists/RowDelegate.h"
#include "views/lists/RowList.h"
#include "views/look/Look.h"
#include "views/look/LookPaint.h"

namespace tamboro {

namespace {
constexpr int inset = 6;
}

void RowList::reset() {
  tops_.clear();
  hovered_ = QModelIndex();
  sunken_ = QModelIndex();
  QAbstractItemView::reset();
}

const std::vector<int>& RowList::tops() const {
  if (!tops_.empty()) return tops_;
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  // Rows of a kind are equally high, but for a header at the list's head: ten thousand rows are asked four times.
  std::array<int, 4> heights{-1, -1, -1, -1};
  tops_.reserve(rows_->rows().size() + 1);
  int y = 0;
  for (const RowKey& key : rows_->rows()) {
    const std::size_t row = tops_.size();
    int& height = heights[row == 0 ? 3 : static_cast<std::size_t>(key.kind)];
    if (height < 0) height = delegate_->sizeHint(option, rows_->index(static_cast<int>(row), mainColumn_)).height();
    tops_.push_back(y);
    y += height;
  }
  tops_.push_back(y);
  return tops_;
}

/// -1 above all rows, their count below them.
int RowList::rowAt(int y) const {
  return static_cast<int>(std::upper_bound(tops().begin(), tops().end(), y) - tops().begin()) - 1;
}

int RowList::verticalOffset() const {
  return verticalScrollBar()->value();
}

QRect RowList::rowRect(int row) const {
  const auto place = static_cast<std::size_t>(row);
  return {0, tops()[place] - verticalOffset(), viewport()->width(), tops()[place + 1] - tops()[place]};
}

QRect RowList::cellRect(const QRect& row, int column) const {
  if (rows_->columnCount() == 1) return row;
  // One column takes what the others leave.
  int taken = 0;
  for (int other = 0; other < rows_->columnCount(); ++other)
    taken += delegate_->columnWidth(other);
  const int rest = std::max(0, row.width() - 2 * inset - taken);
  const auto width = [&](int other) { return delegate_->columnWidth(other) ? delegate_->columnWidth(other) : rest; };
  int x = inset;
  for (int other = 0; other < column; ++other)
    x += width(other);
  return QStyle::visualRect(layoutDirection(), row, QRect(x, row.y(), width(column), row.height()));
}

QRect RowList::visualRect(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  const QRect row = rowRect(index.row());
  return rows_->key(index)->kind == RowKey::Kind::record ? cellRect(row, index.column()) : row;
}

QRect RowList::cellRect(const RowKey& key, int column) const {
  return visualRect(rows_->indexOf(key).siblingAtColumn(column));
}

QModelIndex RowList::indexAt(const QPoint& point) const {
  const int row = rowAt(point.y() + verticalOffset());
  if (row < 0 || row >= rows_->rowCount()) return {};
  const QRect whole = rowRect(row);
  if (rows_->rows()[static_cast<std::size_t>(row)].kind == RowKey::Kind::record)
    for (int column = 0; column < rows_->columnCount(); ++column)
      if (cellRect(whole, column).contains(point)) return rows_->index(row, column);
  return rows_->index(row, mainColumn_);
}

void RowList::scrollTo(const QModelIndex& index, ScrollHint hint) {
  if (!index.isValid()) return;
  const QRect row = rowRect(index.row());
  const int room = viewport()->height() - row.height();
  int shift = 0;
  if (hint == PositionAtTop || (hint == EnsureVisible && row.y() < 0))
    shift = row.y();
  else if (hint == PositionAtBottom || (hint == EnsureVisible && row.y() > room))
    shift = row.y() - room;
  else if (hint == PositionAtCenter)
    shift = row.y() - room / 2;
  verticalScrollBar()->setValue(verticalOffset() + shift);
}

QRegion RowList::visualRegionForSelection(const QItemSelection& selection) const {
  QRegion region;
  for (const QItemSelectionRange& range : selection)
    region += QRect(rowRect(range.top()).topLeft(), rowRect(range.bottom()).bottomRight()) & viewport()->rect();
  return region;
}

void RowList::updateGeometries() {
  const int height = viewport()->height();
  verticalScrollBar()->setRange(0, std::max(0, tops().back() - height));
  verticalScrollBar()->setPageStep(height);
  verticalScrollBar()->setSingleStep(Look::px(32));
  QAbstractItemView::updateGeometries();
}

void RowList::updateEditorGeometries() {
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  for (const auto& [key, field] : fields_) {
    const QModelIndex index = rows_->indexOf(key);
    if (!field || !index.isValid()) continue;
    option.rect = visualRect(index.siblingAtColumn(mainColumn_));
    field->setGeometry(delegate_->editorRect(option, index).translated(viewport()->pos()));
  }
  for (const auto& [key, detail] : details_) {
    const QModelIndex index = rows_->indexOf(key);
    if (detail && index.isValid()) detail->setGeometry(rowRect(index.row()));
  }
}

void RowList::scrollContentsBy(int dx, int dy) {
  QAbstractItemView::scrollContentsBy(dx, dy);
  updateEditorGeometries();
}

void RowList::changeEvent(QEvent* event) {
  QAbstractItemView::changeEvent(event);
  if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange) return;
  tops_.clear();
  scheduleDelayedItemsLayout();
}

void RowList::updateRow(int row) {
  if (row >= 0 && row < rows_->rowCount()) viewport()->update(rowRect(row));
}

// ---- painting

void RowList::paintEvent(QPaintEvent* event) {
  executeDelayedItemsLayout();
  QPainter painter(viewport());
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  const int end = std::min(rowAt(event->rect().bottom() + verticalOffset()) + 1, rows_->rowCount());
  for (int row = std::max(0, rowAt(event->rect().top() + verticalOffset())); row < end; ++row)
    paintRow(painter, option, row);
}

void RowList::paintRow(QPainter& painter, QStyleOptionViewItem& option, int row) const {
  const QRect whole = rowRect(row);
  const bool isRecord = rows_->rows()[static_cast<std::size_t>(row)].kind == RowKey::Kind::record;
  if (isRecord) paintGround(painter, whole, row);
  const QStyle::State state = option.state & ~(QStyle::State_MouseOver | QStyle::State_Sunken | QStyle::State_HasFocus);
  for (int column = 0; column < (isRecord ? rows_->columnCount() : 1); ++column) {
    const QModelIndex cell = rows_->index(row, column);
    const bool isPressable = isControl(cell);
    option.rect = isRecord ? cellRect(whole, column) : whole;
    option.state = state;
    option.state.setFlag(QStyle::State_Selected, isRowSelected(row));
    option.state.setFlag(QStyle::State_MouseOver, isPressable && hovered_ == cell);
    option.state.setFlag(QStyle::State_Sunken, sunken_ == cell && hovered_ == cell);
    const bool hasKeyboard = isPressable && hasFocus() && currentIndex() == cell;
    option.state.setFlag(QStyle::State_HasFocus, hasKeyboard);
    delegate_->paint(&painter, option, cell);
    if (hasKeyboard)
      paintBox(painter, option.rect.adjusted(1, 2, -1, -2), controlRadius, {}, Look::current().focusRing, 2);
  }
  option.state = state;
}

void RowList::paintGround(QPainter& painter, const QRect& row, int place) const {
  const Look& look = Look::current();
  const QRect shape = row.adjusted(inset, 0, -inset, 0);
  const bool isSelected = isRowSelected(place);
  const QModelIndex main = rows_->index(place, mainColumn_);
  if (isSelected && isInUse()) {
    paintBox(painter, shape, controlRadius, look.rowSelected);
    const QRect bar(shape.x(), shape.y() + Look::px(10), 3, shape.height() - 2 * Look::px(10));
    paintBox(painter, QStyle::visualRect(layoutDirection(), shape, bar), 1.5, look.focusRing);
  } else if (isSelected || main.data(rowRole::isEcho).toBool()) {
    paintBox(painter, shape, controlRadius, look.rowSelectedUnfocused);
  } else if (hovered_.isValid() && place == hovered_.row()) {
    paintBox(painter, shape, controlRadius, look.rowHover);
  }
  if (!isSelected && hasFocus() && currentIndex() == main)
    paintBox(painter, shape, controlRadius, {}, look.focusRing, 2);
}

}  // namespace tamboro
