#include "views/lists/RowList.h"

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QScopedValueRollback>
#include <QScrollBar>

#include "views/lists/RowDelegate.h"
#include "views/lists/RowListAccessible.h"

namespace tamboro {

namespace {

/// Keys that the field has no use for must not move the list's selection under it.
class RowField : public QLineEdit {
 public:
  explicit RowField(RowList& list) : QLineEdit(&list), list_(list) {}

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    QLineEdit::keyPressEvent(event);
    event->accept();
  }
  void wheelEvent(QWheelEvent* event) override { QCoreApplication::sendEvent(list_.viewport(), event); }
  void focusInEvent(QFocusEvent* event) override {
    QLineEdit::focusInEvent(event);
    if (event->reason() != Qt::MouseFocusReason) list_.revealField(*this);
    list_.viewport()->update();
  }
  void focusOutEvent(QFocusEvent* event) override {
    QLineEdit::focusOutEvent(event);
    list_.viewport()->update();
  }

 private:
  RowList& list_;
};

template<class Widget>
QList<Widget*> living(const std::map<RowKey, QPointer<Widget>>& widgets) {
  QList<Widget*> found;
  for (const auto& [key, widget] : widgets) {
    if (widget) found << widget;
  }
  return found;
}

template<class Widget>
Widget* widgetOf(const std::map<RowKey, QPointer<Widget>>& widgets, const RowKey& key) {
  const auto place = widgets.find(key);
  return place == widgets.end() ? nullptr : place->second.data();
}

}  // namespace

RowList::RowList(RowModel* model, RowDelegate* delegate, QWidget* parent)
    : QAbstractItemView(parent), rows_(model), delegate_(delegate) {
  installRowListAccessible();
  model->setParent(this);
  delegate->setParent(this);
  setModel(model);
  setItemDelegate(delegate);
  setFrameShape(NoFrame);
  setEditTriggers(NoEditTriggers);
  setSelectionBehavior(SelectRows);
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setAutoScroll(false);
  setMouseTracking(true);
  // A click on a control of a row leaves the focus where it is; one on the row itself takes it (see the mouse's press).
  setFocusPolicy(Qt::TabFocus);
  viewport()->setAttribute(Qt::WA_Hover);
  viewport()->setAutoFillBackground(false);  // the column's ground shows through
}

// ---- rows

void RowList::setRows(std::vector<RowKey> rows, const std::set<RowKey>& changed) {
  const std::set<RowKey> selected = selectedKeys();
  const auto current = rows_->key(currentIndex());
  const int row = currentIndex().row();
  const int column = currentIndex().isValid() ? currentIndex().column() : mainColumn_;
  const auto kept = place();
  if (rows_->setRows(std::move(rows), changed)) {
    const QScopedValueRollback filling(isFilling_, true);
    dropWidgetsOfGoneRows();
    if (current) keepKeyboard(*current, row, column);
    setSelectedKeys(selected);
    keepPlace(kept);
    announce(QAccessible::ObjectReorder, {});
    viewport()->update();
  } else if (QAccessible::isActive() && !changed.empty()) {
    // One pass: to look for each row from the top would take its time with thousands of them.
    for (int place = 0; place < rows_->rowCount(); ++place)
      if (changed.contains(rows_->rows()[static_cast<std::size_t>(place)]))
        announce(QAccessible::NameChanged, rows_->index(place, mainColumn_));
  }
}

/// Where the keyboard's row is gone, its place in the list counts: the row that came up there.
void RowList::keepKeyboard(const RowKey& key, int row, int column) {
  QModelIndex index = rows_->indexOf(key).siblingAtColumn(column);
  if (!index.isValid()) {
    const int last = std::min(row, rows_->rowCount() - 1);
    const int below = nearestSelectable(last, 1);
    index = rows_->index(below >= 0 ? below : nearestSelectable(last, -1), mainColumn_);
  }
  selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
}

void RowList::dropWidgetsOfGoneRows() {
  const auto drop = [this](const auto& entry) {
    if (rows_->indexOf(entry.first).isValid()) return false;
    if (entry.second) {
      entry.second->hide();
      entry.second->deleteLater();
    }
    return true;
  };
  std::erase_if(fields_, drop);
  std::erase_if(details_, drop);
}

std::optional<RowList::Place> RowList::place() const {
  if (verticalOffset() == 0) return std::nullopt;
  // The lowest row in sight: what comes and goes at the list's head then moves nothing below it.
  const int row = std::min(rowAt(verticalOffset() + viewport()->height() - 1), rows_->rowCount() - 1);
  if (row < 0) return std::nullopt;
  return Place{rows_->rows()[static_cast<std::size_t>(row)], rowRect(row).y()};
}

void RowList::keepPlace(const std::optional<Place>& place) {
  executeDelayedItemsLayout();
  const QModelIndex index = place ? rows_->indexOf(place->key) : QModelIndex();
  if (index.isValid()) verticalScrollBar()->setValue(verticalOffset() + visualRect(index).y() - place->y);
}

void RowList::reveal(const RowKey& key) {
  executeDelayedItemsLayout();
  scrollTo(rows_->indexOf(key));
}

// ---- selection

bool RowList::isSelectable(int row) const {
  return rows_->flags(rows_->index(row, mainColumn_)).testFlag(Qt::ItemIsSelectable);
}

bool RowList::isRowSelected(int row) const {
  return selectionModel()->isSelected(rows_->index(row, mainColumn_));
}

std::set<RowKey> RowList::selectedKeys() const {
  std::set<RowKey> keys;
  for (const QItemSelectionRange& range : selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row)
      if (isRowSelected(row)) keys.insert(rows_->rows()[static_cast<std::size_t>(row)]);
  return keys;
}

void RowList::setSelectedKeys(const std::set<RowKey>& keys) {
  if (keys == selectedKeys()) return;
  // Other rows under it leave a cursor that walks by itself where it is; another selection brings it along.
  const bool keepsCursor = isFilling_ && !cursorSelects_;
  const QScopedValueRollback filling(isFilling_, true);
  QItemSelection selection;
  int first = -1;
  int start = -1;
  const int end = keys.empty() ? 0 : rows_->rowCount();
  for (int row = 0; row <= end; ++row) {
    const bool isWanted = row < end && keys.contains(rows_->rows()[static_cast<std::size_t>(row)]);
    if (isWanted && start < 0) start = row;
    if (isWanted && first < 0) first = row;
    if (isWanted || start < 0) continue;
    selection.select(rows_->index(start, 0), rows_->index(row - 1, rows_->columnCount() - 1));
    start = -1;
  }
  selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  if (first >= 0 && (!currentIndex().isValid() || (!keepsCursor && !isRowSelected(currentIndex().row()))))
    selectionModel()->setCurrentIndex(rows_->index(first, mainColumn_), QItemSelectionModel::NoUpdate);
}

void RowList::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) {
  const QRect area = rect.normalized();
  const int last = std::min(rowAt(area.bottom() + verticalOffset()), rows_->rowCount() - 1);
  QItemSelection selection;
  for (int row = std::max(0, rowAt(area.top() + verticalOffset())); row <= last; ++row) {
    if (!isSelectable(row)) continue;
    int end = row;
    while (end < last && isSelectable(end + 1))
      ++end;
    selection.select(rows_->index(row, 0), rows_->index(end, rows_->columnCount() - 1));
    row = end;
  }
  selectionModel()->select(selection, command);
}

void RowList::announce(int event, const QModelIndex& index) {
  if (!QAccessible::isActive()) return;
  QAccessibleEvent told(this, static_cast<QAccessible::Event>(event));
  if (index.isValid()) told.setChild(index.row() * rows_->columnCount() + index.column());
  QAccessible::updateAccessibility(&told);
}

void RowList::announceColumn(int column) {
  if (!QAccessible::isActive()) return;
  const int last = std::min(rowAt(verticalOffset() + viewport()->height() - 1), rows_->rowCount() - 1);
  for (int row = std::max(0, rowAt(verticalOffset())); row <= last; ++row)
    announce(QAccessible::NameChanged, rows_->index(row, column));
}

// Neither tells assistive tools of it as the base does: that knows nothing of the place of a cell among its rows.
void RowList::selectionChanged(const QItemSelection& selected, const QItemSelection&) {
  viewport()->update();  // also the rows that stand for the same record
  if (!selected.isEmpty()) announce(QAccessible::Selection, rows_->index(selected.first().top(), mainColumn_));
  if (!isFilling_) Q_EMIT selectionEdited();
}

void RowList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QAbstractItemView::currentChanged(current, previous);
  updateRow(previous.row());
  updateRow(current.row());
  if (isFilling_ || !current.isValid()) return;
  scrollTo(current);
  if (hasFocus()) announce(QAccessible::Focus, current);
}

// ---- fields and details over rows

void RowList::openField(const RowKey& key, const Field& texts, std::function<void(const QString&)> commit) {
  const QModelIndex index = rows_->indexOf(key);
  if (!index.isValid()) return;
  QLineEdit* open = field(key);
  if (!open) open = makeField(key, texts, std::move(commit));
  open->setText(texts.text);
  reveal(key);
  updateEditorGeometries();
  open->show();
  open->selectAll();
  open->setFocus();
  updateRow(index.row());
}

QLineEdit* RowList::makeField(const RowKey& key, const Field& texts, std::function<void(const QString&)> commit) {
  auto* made = new RowField(*this);
  made->setObjectName(texts.objectName);
  made->setAccessibleName(texts.accessibleName);
  made->setPlaceholderText(texts.placeholder);
  connect(made, &QLineEdit::returnPressed, this, [this, key, made, commit = std::move(commit)] {
    commit(made->text());
    closeField(key);
  });
  fields_[key] = made;
  return made;
}

void RowList::closeField(const RowKey& key) {
  const auto place = fields_.find(key);
  if (place == fields_.end()) return;
  const QPointer<QLineEdit> field = place->second;
  fields_.erase(place);
  if (field) {
    if (field->hasFocus()) setFocus();
    field->hide();
    field->deleteLater();
  }
  viewport()->update();
}

QLineEdit* RowList::field(const RowKey& key) const {
  return widgetOf(fields_, key);
}

QList<QLineEdit*> RowList::fields() const {
  return living(fields_);
}

/// The keyboard can come back to a field that was scrolled away.
void RowList::revealField(const QLineEdit& field) {
  for (const auto& [key, open] : fields_)
    if (open == &field) reveal(key);
}

void RowList::openDetail(const RowKey& key, QWidget* detail) {
  details_[key] = detail;
  detail->setParent(viewport());
  updateEditorGeometries();
  detail->show();
  QWidget* before = this;
  for (auto* field : detail->findChildren<QWidget*>()) {
    field->installEventFilter(this);
    if ((field->focusPolicy() & Qt::TabFocus) == 0) continue;
    setTabOrder(before, field);
    before = field;
  }
}

/// The keyboard can come to a detail that was scrolled away.
bool RowList::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn && static_cast<QFocusEvent*>(event)->reason() != Qt::MouseFocusReason)
    for (const auto& [key, detail] : details_)
      if (detail && detail->isAncestorOf(static_cast<QWidget*>(watched))) scrollTo(rows_->indexOf(key));
  return QAbstractItemView::eventFilter(watched, event);
}

QWidget* RowList::detail(const RowKey& key) const {
  return widgetOf(details_, key);
}

QWidgetList RowList::details() const {
  return living(details_);
}

// ---- presses

bool RowList::isControl(const QModelIndex& index) const {
  return index.isValid() && index.data(rowRole::isControl).toBool();
}

void RowList::press(const QModelIndex& index) {
  const auto key = rows_->key(index);
  if (!key || key->kind == RowKey::Kind::header) return;
  if (isControl(index))
    Q_EMIT cellPressed(*key, index.column());
  else if (isSelectable(index.row()))
    setCurrentIndex(index.siblingAtColumn(mainColumn_));
  else
    Q_EMIT rowPressed(*key);
}

void RowList::showMenu(const QModelIndex& index, const QPoint& globalPosition) {
  const auto key = rows_->key(index);
  if (key && key->kind == RowKey::Kind::record) Q_EMIT menuRequested(*key, globalPosition);
}

bool RowList::isInUse() const {
  const QWidget* focused = QApplication::focusWidget();
  return focused && (focused == this || isAncestorOf(focused));
}

}  // namespace tamboro
