#include "views/samples/RenamePreview.h"

#include <QAbstractListModel>
#include <QEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include "views/controls/CardText.h"
#include "views/look/Look.h"
#include "views/look/LookPaint.h"
#include "views/look/Symbols.h"

namespace tamboro {

namespace {

constexpr int oldName = Qt::UserRole;
constexpr int newName = Qt::UserRole + 1;

constexpr int sidePadding = 10;
constexpr int endPadding = 5;

int lineHeight() {
  return std::max(Look::px(24), QFontMetrics(Look::font(TextStyle::body)).height() + 4);
}

}  // namespace

class RenamePreview::Model : public QAbstractListModel {
 public:
  using QAbstractListModel::QAbstractListModel;

  std::vector<RenameRow> rows;
  RenamePattern pattern;

  void setRows(std::vector<RenameRow> now) {
    beginResetModel();
    rows = std::move(now);
    endResetModel();
  }
  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(rows.size());
  }
  Qt::ItemFlags flags(const QModelIndex&) const override { return Qt::ItemIsEnabled | Qt::ItemNeverHasChildren; }
  QVariant data(const QModelIndex& index, int role) const override {
    const auto row = static_cast<std::size_t>(index.row());
    switch (role) {
      case oldName:
        return visibleText(cardText(rows[row].oldName));
      case newName:
        return pattern.newName(row);
      case Qt::AccessibleTextRole:
        return QStringLiteral("%1 becomes %2").arg(visibleText(cardText(rows[row].oldName)), pattern.newName(row));
      default:
        return {};
    }
  }
};

class RenamePreview::Delegate : public QStyledItemDelegate {
 public:
  Delegate(const Model& model, QObject* parent) : QStyledItemDelegate(parent), model_(model) {}

  /// All lines are as wide as the one that takes most.
  void measureOldNames() {
    const QFontMetrics metrics(Look::font(TextStyle::body));
    oldWidth_ = Look::px(104);
    for (const RenameRow& row : model_.rows)
      oldWidth_ = std::max(oldWidth_, metrics.horizontalAdvance(visibleText(cardText(row.oldName))));
  }
  void measureNewNames() {
    if (model_.rows.empty()) return;
    // The last number has the most digits, which are equally wide or nearly so.
    const QFontMetrics metrics(Look::font(TextStyle::body));
    newWidth_ = metrics.horizontalAdvance(model_.pattern.newName(model_.rows.size() - 1)) + Look::px(4);
  }
  QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
    return QSize(2 * Look::px(sidePadding) + oldWidth_ + arrowRoom() + newWidth_, lineHeight());
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const Look& look = Look::current();
    const auto mirrored = [&](const QRect& place) { return QStyle::visualRect(option.direction, option.rect, place); };
    const auto paintName = [&](const QRect& room, int role) {
      paintText(*painter, option.direction, mirrored(room), Qt::AlignLeft | Qt::AlignVCenter,
                index.data(role).toString());
    };
    const QRect line = option.rect.adjusted(Look::px(sidePadding), 0, -Look::px(sidePadding), 0);
    painter->save();
    QFont font = Look::font(TextStyle::body);
    painter->setFont(font);
    painter->setPen(look.primary);
    paintName(line.adjusted(oldWidth_ + arrowRoom(), 0, 0, 0), newName);
    font.setStrikeOut(true);
    painter->setFont(font);
    painter->setPen(look.secondary);
    paintName(QRect(line.x(), line.y(), oldWidth_, line.height()), oldName);
    const int arrow = Look::px(10);
    const QRect place(line.x() + oldWidth_ + Look::px(8), line.y() + (line.height() - arrow) / 2, arrow, arrow);
    paintSymbol(*painter, QStringLiteral("arrow.right"), mirrored(place), look.secondary);
    painter->restore();
  }

 private:
  static int arrowRoom() { return Look::px(8) + Look::px(10) + Look::px(8); }

  const Model& model_;
  int oldWidth_ = 0;
  int newWidth_ = 0;
};

RenamePreview::RenamePreview(QWidget* parent)
    : QListView(parent), model_(new Model(this)), delegate_(new Delegate(*model_, this)) {
  setObjectName(QStringLiteral("renamePreview"));
  setAccessibleName(QStringLiteral("Preview"));
  setFrameShape(NoFrame);
  setUniformItemSizes(true);
  setSelectionMode(NoSelection);
  setEditTriggers(NoEditTriggers);
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollMode(ScrollPerPixel);
  viewport()->setAutoFillBackground(false);
  setItemDelegate(delegate_);
  setModel(model_);
}

const std::vector<RenameRow>& RenamePreview::rows() const {
  return model_->rows;
}

void RenamePreview::setRows(std::vector<RenameRow> rows) {
  if (rows == model_->rows) return;
  const int place = verticalScrollBar()->value();
  model_->setRows(std::move(rows));
  delegate_->measureOldNames();
  fit();
  executeDelayedItemsLayout();
  verticalScrollBar()->setValue(place);
}

void RenamePreview::setPattern(const RenamePattern& pattern) {
  model_->pattern = pattern;
  fit();
}

void RenamePreview::fit() {
  delegate_->measureNewNames();
  scheduleDelayedItemsLayout();
  viewport()->update();
  // The bar that long names bring has its room below the lines: it covers none, and the sheet keeps its height.
  const int below = horizontalScrollBar()->sizeHint().height() + 1;
  setViewportMargins(1, endPadding, 1, below);
  const qint64 lines = std::max(1, model_->rowCount()) * qint64(lineHeight()) + endPadding + below;
  setFixedHeight(static_cast<int>(std::min<qint64>(Look::px(160), lines)));
}

bool RenamePreview::event(QEvent* event) {
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
  if (event->type() != QEvent::Paint) return QListView::event(event);
  QPainter painter(this);
  const Look& look = Look::current();
  paintBox(painter, rect(), controlRadius, look.controlBackground, hasFocus() ? look.focusRing : look.separator,
           hasFocus() ? 2 : 1);
  return true;
}

}  // namespace tamboro
