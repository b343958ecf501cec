#include "views/lists/RowDelegate.h"

#include <QPainter>

#include "views/lists/RowList.h"
#include "views/look/Look.h"
#include "views/look/LookPaint.h"

namespace tamboro {

namespace {
constexpr int inset = 6;
constexpr int padding = 10;

bool isHeader(const QModelIndex& index) {
  const auto key = static_cast<const RowModel*>(index.model())->key(index);
  return key && key->kind == RowKey::Kind::header;
}
}  // namespace

void paintRowText(QPainter& painter, Qt::LayoutDirection direction, const QRect& rect, const QString& text) {
  paintText(painter, direction, rect, Qt::AlignLeft | Qt::AlignVCenter,
            painter.fontMetrics().elidedText(text, Qt::ElideRight, rect.width()));
}

QRect RowDelegate::contentRect(const QRect& row) {
  const int side = inset + padding;
  return row.adjusted(side, 0, -side, 0);
}

void RowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  painter->save();
  if (isHeader(index)) {
    painter->setFont(Look::font(TextStyle::captionHeadline));
    painter->setPen(Look::current().secondary);
    const int height = std::max(Look::px(26), painter->fontMetrics().height());
    QRect line = contentRect(option.rect);
    line.setTop(std::max(line.top(), line.bottom() + 1 - height));
    paintRowText(*painter, option.direction, line, index.data(Qt::DisplayRole).toString());
  } else {
    paintCell(*painter, option, index);
  }
  painter->restore();
}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const {
  if (!isHeader(index)) return QSize(0, rowHeight(index));
  return QSize(0, Look::px(index.row() == 0 ? 26 : 32));
}

}  // namespace tamboro
