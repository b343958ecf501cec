#include "views/tags/TagFieldList.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <algorithm>

#include "views/controls/CardText.h"
#include "views/controls/EditField.h"
#include "views/controls/Labels.h"
#include "views/controls/QueuedRefresh.h"
#include "views/look/Look.h"

namespace tamboro {

namespace {

constexpr int endPadding = 4;
constexpr int inset = 12;
constexpr int gap = 7;
/// Rows out of sight that have fields all the same: the usual list has all of its fields, and so has the tree that
/// assistive tools read.
constexpr int reach = 100;

/// A list of fields, without what scrolls them.
class TagListAccessible : public QAccessibleWidget {
 public:
  explicit TagListAccessible(TagFieldList& list) : QAccessibleWidget(&list, QAccessible::List), list_(list) {}

  int childCount() const override { return static_cast<int>(list_.fields().size()); }
  QAccessibleInterface* child(int place) const override {
    return QAccessible::queryAccessibleInterface(list_.fields().value(place));
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    return child ? static_cast<int>(list_.fields().indexOf(qobject_cast<QWidget*>(child->object()))) : -1;
  }
  QAccessibleInterface* focusChild() const override {
    for (QWidget* field : list_.fields())
      if (field->hasFocus()) return QAccessible::queryAccessibleInterface(field);
    return nullptr;
  }

 private:
  TagFieldList& list_;
};

QAccessibleInterface* makeAccessible(const QString& className, QObject* object) {
  auto* list = qobject_cast<TagFieldList*>(object);
  return list && className == QLatin1String(TagFieldList::staticMetaObject.className()) ? new TagListAccessible(*list)
                                                                                        : nullptr;
}

}  // namespace

TagFieldList::TagFieldList(RolandLibrary& store, QWidget* parent) : QAbstractScrollArea(parent), store_(store) {
  [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(makeAccessible), true);
  setObjectName(QStringLiteral("tagList"));
  setAccessibleName(QStringLiteral("Tags"));
  setFrameShape(NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  viewport()->setBackgroundRole(QPalette::Base);
  noTags_ =
      makeLabel(QStringLiteral("noTags"), QStringLiteral("No Tags"), TextStyle::body, textRole::secondary, viewport());
  noTags_->setAlignment(Qt::AlignCenter);
  new QueuedRefresh(
      store, [this] { refresh(); }, this);
  refresh();
}

/// Not deleted at once: one of them can be what sent the event that scrolled.
template<class Wanted>
void TagFieldList::dropFields(const Wanted& isWanted) {
  std::erase_if(fields_, [&](const auto& entry) {
    if (!isWanted(entry.first)) return false;
    entry.second->hide();
    entry.second->deleteLater();
    return true;
  });
}

void TagFieldList::refresh() {
  const int count = store_.tagList() ? store_.tagList()->tagCount() : 0;
  if (count != rowCount_) {
    rowCount_ = count;
    dropFields([count](int row) { return row >= count; });
    // Only the list is in the order of the Tab key: fields come and go in any order.
    setFocusPolicy(count > 0 ? Qt::TabFocus : Qt::NoFocus);
    layOut();
  }
  noTags_->setVisible(count == 0);
  for (const auto& [row, field] : fields_)
    field->refresh();
}

/// All names in one pass: asked for one by one, each would count its way through a long list.
QString TagFieldList::nameOf(int row) {
  if (readList_ != store_.tagList()) {
    readList_ = store_.tagList();
    tags_ = readList_ ? readList_->tags() : std::vector<Tag>();
  }
  const auto position = static_cast<std::size_t>(row);
  return position < tags_.size() ? cardText(tags_[position].name()) : QString();
}

void TagFieldList::layOut() {
  const int height = rowCount_ * rowHeight() + 2 * endPadding;
  verticalScrollBar()->setRange(0, std::max(0, height - viewport()->height()));
  verticalScrollBar()->setPageStep(viewport()->height());
  verticalScrollBar()->setSingleStep(rowHeight());
  noTags_->setGeometry(viewport()->rect());
  placeFields();
  viewport()->update();
}

void TagFieldList::placeFields() {
  const int first = std::max(0, rowAt(0) - reach);
  const int last = std::min(rowCount_ - 1, rowAt(viewport()->height()) + reach);
  const int focused = focusedRow();
  dropFields([&](int row) { return (row < first || row > last) && row != focused; });
  for (int row = first; row <= last; ++row)
    if (!fields_.contains(row)) fields_.emplace(row, makeField(row));
  for (const auto& [row, field] : fields_) {
    field->setGeometry(fieldRect(row));
    field->show();
  }
}

EditField* TagFieldList::makeField(int row) {
  auto* field =
      new EditField(QStringLiteral("tagName%1").arg(row), QStringLiteral("Tag Name"),
                    {.read = [this, row] { return nameOf(row); },
                     .write = [this, row](const QString& name) { store_.setTagName(row, name.toStdString()); }},
                    viewport());
  field->setAccessibleName(QStringLiteral("Tag Name %1").arg(row));
  field->setFocusPolicy(Qt::ClickFocus);
  field->installEventFilter(this);
  field->refresh();
  field->end(false);
  return field;
}

// ---- places

int TagFieldList::rowHeight() const {
  return std::max(Look::px(32), fontMetrics().height() + 14);
}

int TagFieldList::numberWidth() const {
  const QFontMetrics metrics(Look::monospaced(TextStyle::caption));
  return std::max(Look::px(24), metrics.horizontalAdvance(QString::number(std::max(0, rowCount_ - 1))));
}

QRect TagFieldList::rowRect(int row) const {
  return QRect(0, endPadding + row * rowHeight() - verticalScrollBar()->value(), viewport()->width(), rowHeight());
}

QRect TagFieldList::numberRect(int row) const {
  const QRect line = rowRect(row);
  return QStyle::visualRect(layoutDirection(), line, QRect(inset, line.y(), numberWidth(), line.height()));
}

QRect TagFieldList::fieldRect(int row) const {
  const QRect line = rowRect(row);
  const int left = inset + numberWidth() + gap;
  const QRect field(left, line.y() + 2, line.width() - left - inset, line.height() - 4);
  return QStyle::visualRect(layoutDirection(), line, field);
}

int TagFieldList::rowAt(int y) const {
  return std::clamp((verticalScrollBar()->value() + y - endPadding) / rowHeight(), 0, std::max(0, rowCount_ - 1));
}

void TagFieldList::resizeEvent(QResizeEvent*) {
  layOut();
}

void TagFieldList::scrollContentsBy(int, int) {
  placeFields();
  viewport()->update();
}

void TagFieldList::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::LayoutDirectionChange) layOut();
}

void TagFieldList::paintEvent(QPaintEvent* event) {
  if (rowCount_ == 0) return;
  QPainter painter(viewport());
  painter.setFont(Look::monospaced(TextStyle::caption));
  painter.setPen(Look::current().secondary);
  const int side = static_cast<int>(QStyle::visualAlignment(layoutDirection(), Qt::AlignRight | Qt::AlignVCenter));
  for (int row = rowAt(event->rect().top()); row <= rowAt(event->rect().bottom()); ++row)
    painter.drawText(numberRect(row), side | Qt::AlignAbsolute | Qt::TextSingleLine, QString::number(row));
}

// ---- walking through the rows

int TagFieldList::focusedRow() const {
  for (const auto& [row, field] : fields_)
    if (field->hasFocus()) return row;
  return -1;
}

QWidgetList TagFieldList::fields() const {
  QWidgetList found;
  for (const auto& [row, field] : fields_)
    found << field;
  return found;
}

void TagFieldList::reveal(int row) {
  if (row < 0) return;
  const QRect line = rowRect(row).adjusted(0, -endPadding, 0, endPadding);
  QScrollBar& bar = *verticalScrollBar();
  if (line.bottom() >= viewport()->height()) bar.setValue(bar.value() + line.bottom() + 1 - viewport()->height());
  if (line.top() < 0) bar.setValue(bar.value() + line.top());
}

void TagFieldList::edit(int row, Qt::FocusReason reason) {
  if (row < 0 || row >= rowCount_) return;
  reveal(row);
  placeFields();
  fields_.at(row)->setFocus(reason);
}

bool TagFieldList::eventFilter(QObject* watched, QEvent* event) {
  // Also for what assistive tools give the focus to, anywhere in the list.
  if (event->type() == QEvent::FocusIn && static_cast<QFocusEvent*>(event)->reason() != Qt::MouseFocusReason)
    reveal(focusedRow());
  if (event->type() != QEvent::KeyPress) return QAbstractScrollArea::eventFilter(watched, event);
  const auto* key = static_cast<QKeyEvent*>(event);
  if (key->modifiers() & ~Qt::KeypadModifier) return false;
  const int row = focusedRow();
  switch (key->key()) {
    case Qt::Key_Up:
      edit(row - 1, Qt::BacktabFocusReason);
      return true;
    case Qt::Key_Down:
    case Qt::Key_Return:
    case Qt::Key_Enter:
      // Return goes on to the next name and doesn't close the sheet in the middle of the work.
      edit(row + 1, Qt::TabFocusReason);
      return true;
    default:
      return false;
  }
}

bool TagFieldList::focusNextPrevChild(bool next) {
  const int row = focusedRow();
  const int wanted = next ? row + 1 : row - 1;
  if (row >= 0 && wanted >= 0 && wanted < rowCount_) {
    edit(wanted, next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
  }
  // Out of the list, and not to the list itself, which would lead back into it.
  const Qt::FocusPolicy policy = focusPolicy();
  setFocusPolicy(Qt::NoFocus);
  const bool moved = QAbstractScrollArea::focusNextPrevChild(next);
  setFocusPolicy(policy);
  return moved;
}

void TagFieldList::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  edit(event->reason() == Qt::BacktabFocusReason ? rowCount_ - 1 : 0, event->reason());
}

}  // namespace tamboro
