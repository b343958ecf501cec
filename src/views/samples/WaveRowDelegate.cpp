#include "views/samples/WaveRowDelegate.h"

#include <QAbstractItemView>
#include <QPainter>
#include <QStyle>
#include <cmath>

#include "views/lists/RowList.h"
#include "views/look/Look.h"
#include "views/look/LookPaint.h"
#include "views/look/Palette.h"
#include "views/look/Symbols.h"
#include "views/samples/WaveColumn.h"
#include "views/samples/WaveLoopSection.h"

namespace tamboro {

namespace {

constexpr int inset = 6;      // of a row from its list's edge
constexpr int nameRoom = 88;  // for twelve letters of usual width
constexpr int textRoom = 10;  // from a picker's edge to its text

QColor withOpacity(QColor colour, float opacity) {
  colour.setAlphaF(opacity);
  return colour;
}

QColor tintOf(const QModelIndex& index) {
  const Look& look = Look::current();
  switch (static_cast<WaveTint>(index.data(waveRole::tint).toInt())) {
    case WaveTint::quiet:
      break;
    case WaveTint::faint:
      return withOpacity(look.secondary, 0.4F);
    case WaveTint::accent:
      return look.accentText;
    case WaveTint::red:
      return paletteRed;
    case WaveTint::orange:
      return paletteOrange;
  }
  return look.secondary;
}

const WaveColumn& columnAt(int place) {
  return waveColumns[static_cast<std::size_t>(place)];
}

QRectF centred(const QRectF& room, double side) {
  return {room.center().x() - side / 2, room.center().y() - side / 2, side, side};
}

/// The ground that a control of the row shows under the pointer and while it is held.
void paintVeil(QPainter& painter, const QStyleOptionViewItem& option, const QRectF& shape) {
  const bool isHeld = option.state & QStyle::State_Sunken;
  if (!isHeld && !(option.state & QStyle::State_MouseOver)) return;
  paintBox(painter, shape, controlRadius, withOpacity(Look::current().primary, isHeld ? 0.14F : 0.07F));
}

void paintSymbolCell(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) {
  const QString symbol = index.data(waveRole::symbol).toString();
  if (symbol.isEmpty()) return;
  const WaveColumn& column = columnAt(index.column());
  QRect slot = option.rect;
  if (column.symbolRoom > 0) slot.setWidth(std::min(slot.width(), Look::px(column.symbolRoom)));
  const QRectF room = QStyle::visualRect(option.direction, option.rect, slot);
  paintVeil(painter, option, centred(room, Look::px(24)));
  if (column.hasPlate && !Look::current().isDark)
    paintBox(painter, centred(room, Look::px(18)), Look::px(9), Look::current().plate());
  paintSymbol(painter, symbol, centred(room, Look::px(column.symbolSide)), tintOf(index));
}

void paintName(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) {
  painter.setFont(Look::font(TextStyle::body));
  painter.setPen(Look::current().primary);
  paintRowText(painter, option.direction, option.rect, index.data(Qt::DisplayRole).toString());
}

void paintNumber(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) {
  painter.setFont(Look::monospaced(TextStyle::caption));
  painter.setPen(Look::current().secondary);
  const QRect room = QStyle::visualRect(option.direction, option.rect, option.rect.adjusted(0, 0, -Look::px(6), 0));
  paintText(painter, option.direction, room, Qt::AlignRight | Qt::AlignVCenter, index.data(Qt::DisplayRole).toString());
}

void paintPicker(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) {
  const QFontMetrics metrics(Look::font(TextStyle::body));
  const int height = std::min(option.rect.height(), std::max(Look::px(26), metrics.height()));
  const QRect shape(option.rect.x(), option.rect.y() + (option.rect.height() - height) / 2, option.rect.width(),
                    height);
  paintVeil(painter, option, shape);
  const int side = Look::px(12);
  const QRect arrow(shape.right() - side - Look::px(7), shape.y() + (shape.height() - side) / 2, side, side);
  const QRect text(shape.x() + Look::px(textRoom), shape.y(), arrow.x() - shape.x() - Look::px(textRoom + 4),
                   shape.height());
  const auto mirrored = [&](const QRect& place) { return QStyle::visualRect(option.direction, shape, place); };
  painter.setFont(Look::font(TextStyle::body));
  painter.setPen(Look::current().primary);
  paintRowText(painter, option.direction, mirrored(text), index.data(Qt::DisplayRole).toString());
  paintSymbol(painter, QStringLiteral("chevron.up.chevron.down"), mirrored(arrow), Look::current().secondary);
}

bool isEditing(const QStyleOptionViewItem& option, const QModelIndex& index) {
  const auto* list = qobject_cast<const RowList*>(option.widget);
  const auto key = list ? list->rows().key(index) : std::nullopt;
  return key && list->field(*key);
}

}  // namespace

void WaveRowDelegate::paintCell(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const auto* rows = static_cast<const RowModel*>(index.model());
  if (rows->key(index)->kind != RowKey::Kind::record) return;
  switch (columnAt(index.column()).paint) {
    case WavePaint::symbol:
      return paintSymbolCell(painter, option, index);
    case WavePaint::name:
      if (!isEditing(option, index)) paintName(painter, option, index);
      return;
    case WavePaint::picker:
      return paintPicker(painter, option, index);
    case WavePaint::number:
      return paintNumber(painter, option, index);
  }
}

/// Names are told apart by their ends, tags by their beginnings: where large type makes the row tight, the tag gives
/// way.
int WaveRowDelegate::columnWidth(int place) const {
  const WaveColumn& column = columnAt(place);
  if (column.leastWidth == 0) return Look::px(column.width);
  const auto* list = qobject_cast<const QAbstractItemView*>(parent());
  int rest = list ? list->viewport()->width() - 2 * inset : 0;
  for (const WaveColumn& other : waveColumns)
    if (&other != &column) rest -= Look::px(other.width);
  return std::clamp(rest - Look::px(nameRoom), Look::px(column.leastWidth), Look::px(column.width));
}

int WaveRowDelegate::rowHeight(const QModelIndex& index) const {
  if (static_cast<const RowModel*>(index.model())->key(index)->kind == RowKey::Kind::detail)
    return WaveLoopSection::neededHeight();
  return std::max(Look::px(32), QFontMetrics(Look::font(TextStyle::body)).height() + 6);
}

QRect WaveRowDelegate::editorRect(const QStyleOptionViewItem& option, const QModelIndex&) const {
  const int height = std::max(Look::px(28), QFontMetrics(Look::font(TextStyle::body)).height() + 6);
  // The text keeps its place: the field's padding stands before it.
  const QRect field(option.rect.x() - Look::px(8), option.rect.y() + (option.rect.height() - height) / 2,
                    option.rect.width() + Look::px(8), height);
  return QStyle::visualRect(option.direction, option.rect, field);
}

QPixmap wavePixmap(const QString& name, double devicePixelRatio) {
  constexpr int padding = 6;
  const QFontMetrics metrics(Look::font(TextStyle::body));
  const QSize size(metrics.horizontalAdvance(name) + 2 * padding, metrics.height() + 2 * padding);
  QPixmap pixmap(QSizeF(size * devicePixelRatio).toSize());
  pixmap.setDevicePixelRatio(devicePixelRatio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  const QRect whole(QPoint(), size);
  paintBox(painter, whole, controlRadius, withOpacity(Look::current().controlBackground, 0.9F),
           Look::current().buttonOutline);
  painter.setFont(Look::font(TextStyle::body));
  painter.setPen(Look::current().primary);
  paintText(painter, Qt::LeftToRight, whole, Qt::AlignCenter, name);
  return pixmap;
}

}  // namespace tamboro
