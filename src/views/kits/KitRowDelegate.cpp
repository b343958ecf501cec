#include "views/kits/KitRowDelegate.h"

#include <QPainter>
#include <QStyle>

#include "views/lists/RowList.h"
#include "views/look/Look.h"
#include "views/look/LookPaint.h"
#include "views/look/Palette.h"

namespace tamboro {

namespace {

constexpr int lineGap = 2;

/// The places of a row's parts, from left to right; mirrored only when painted.
struct Places {
  QRect slot, name, subtitle, dot;
};

Places placesOf(const QRect& row, const QModelIndex& index) {
  const QRect content = RowDelegate::contentRect(row);
  const int side = Look::px(8);
  Places places;
  places.slot = QRect(content.x(), content.y(), Look::px(40), content.height());
  places.dot = QRect(content.right() + 1 - side, content.y() + (content.height() - side) / 2, side, side);
  const bool isDirty = index.data(kitRole::isDirty).toBool();
  const int left = places.slot.right() + 1;
  const int width = (isDirty ? places.dot.x() - 6 : content.right() + 1) - left;
  const int nameHeight = QFontMetrics(Look::font(TextStyle::body)).height();
  const bool hasSubtitle = !index.data(kitRole::subtitle).toString().isEmpty();
  const int subtitleHeight = hasSubtitle ? QFontMetrics(Look::font(TextStyle::caption)).height() : 0;
  const int height = nameHeight + (hasSubtitle ? lineGap + subtitleHeight : 0);
  const int top = content.y() + (content.height() - height) / 2;
  places.name = QRect(left, top, width, nameHeight);
  places.subtitle = QRect(left, top + nameHeight + lineGap, width, subtitleHeight);
  return places;
}

void paintDot(QPainter& painter, const QRect& place) {
  // Orange alone can't be told from a light ground.
  const QColor ring = Look::current().isDark ? QColor() : QColor(0x8A, 0x4B, 0x00);
  paintBox(painter, place, place.height() / 2.0, paletteOrange, ring);
}

bool isEditing(const QStyleOptionViewItem& option, const QModelIndex& index) {
  const auto* list = qobject_cast<const RowList*>(option.widget);
  const auto key = list ? list->rows().key(index) : std::nullopt;
  return key && list->field(*key);
}

}  // namespace

void KitRowDelegate::paintCell(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const Look& look = Look::current();
  const Places places = placesOf(option.rect, index);
  const auto mirrored = [&](const QRect& place) { return QStyle::visualRect(option.direction, option.rect, place); };
  painter.setFont(Look::monospaced(TextStyle::body));
  painter.setPen(look.secondary);
  paintRowText(painter, option.direction, mirrored(places.slot), index.data(kitRole::slot).toString());
  if (index.data(kitRole::isDirty).toBool()) paintDot(painter, mirrored(places.dot));
  if (isEditing(option, index)) return;
  painter.setFont(Look::font(TextStyle::body));
  painter.setPen(look.primary);
  paintRowText(painter, option.direction, mirrored(places.name), index.data(kitRole::name).toString());
  painter.setFont(Look::font(TextStyle::caption));
  painter.setPen(look.secondary);
  paintRowText(painter, option.direction, mirrored(places.subtitle), index.data(kitRole::subtitle).toString());
}

int KitRowDelegate::rowHeight(const QModelIndex&) const {
  const int lines = QFontMetrics(Look::font(TextStyle::body)).height() + lineGap +
                    QFontMetrics(Look::font(TextStyle::caption)).height();
  return std::max(Look::px(40), lines + 6);
}

QRect KitRowDelegate::editorRect(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const QRect name = placesOf(option.rect, index).name;
  const int height = std::max(Look::px(28), name.height() + 6);
  // The text keeps its place: the field's padding stands before it.
  const QRect field(name.x() - Look::px(8), option.rect.y() + (option.rect.height() - height) / 2,
                    name.width() + Look::px(8), height);
  return QStyle::visualRect(option.direction, option.rect, field);
}

QRect KitRowDelegate::nameLine(const QSize& row, Qt::LayoutDirection direction, const QModelIndex& index) const {
  const QRect whole(QPoint(), row);
  return QStyle::visualRect(direction, whole, placesOf(whole, index).name);
}

}  // namespace tamboro
