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
#include "views/samples/WaveLoopSection.h"

namespace tamboro {

namespace {

constexpr int symbolSlot = 28;
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

double symbolSide(int column) {
  switch (column) {
    case waveColumn::play:
    case waveColumn::pending:
      return Look::px(12);
    case waveColumn::loop:
      return Look::px(16);
    default:
      return Look::px(14);
  }
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
  // The last slot is wider: the scroll bar lies over its end.
  const QRect slot(option.rect.x(), option.rect.y(), std::min(option.rect.width(), Look::px(symbolSlot)),
                   option.rect.height());
  const bool isFirst = index.column() == waveColumn::play;
  const QRectF room = isFirst ? option.rect : QStyle::visualRect(option.direction, option.rect, slot);
  paintVeil(painter, option, centred(room, Look::px(24)));
  // Orange can't be told from a light ground.
  if (index.column() == waveColumn::pending && !Look::current().isDark)
    paintBox(painter, centred(room, Look::px(18)), Look::px(9), Look::current().plate());
  paintSymbol(painter, symbol, centred(room, symbolSide(index.column())), tintOf(index));
}

void paintTag(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) {
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
  switch (index.column()) {
    case waveColumn::name:
      if (isEditing(option, index)) return;
      painter.setFont(Look::font(TextStyle::body));
      painter.setPen(Look::current().primary);
      return paintRowText(painter, option.direction, option.rect, index.data(Qt::DisplayRole).toString());
    case waveColumn::tag:
      return paintTag(painter, option, index);
    case waveColumn::number:
      painter.setFont(Look::monospaced(TextStyle::caption));
      painter.setPen(Look::current().secondary);
      return paintText(painter, option.direction,
                       QStyle::visualRect(option.direction, option.rect, option.rect.adjusted(0, 0, -Look::px(6), 0)),
                       Qt::AlignRight | Qt::AlignVCenter, index.data(Qt::DisplayRole).toString());
    default:
      return paintSymbolCell(painter, option, index);
  }
}

int WaveRowDelegate::columnWidth(int column) const {
  switch (column) {
    case waveColumn::play:
      return Look::px(36);
    case waveColumn::name:
      return 0;
    case waveColumn::tag:
      return tagWidth();
    case waveColumn::number:
      return Look::px(50);
    case waveColumn::loop:
      return Look::px(symbolSlot + 5);
    default:
      return Look::px(symbolSlot);
  }
}

/// Names are told apart by their ends, tags by their beginnings: where large type makes the row tight, the tag gives
/// way.
int WaveRowDelegate::tagWidth() const {
  const auto* list = qobject_cast<const QAbstractItemView*>(parent());
  int rest = list ? list->viewport()->width() - 2 * inset : 0;
  for (int column = 0; column < waveColumn::count; ++column)
    if (column != waveColumn::tag) rest -= columnWidth(column);
  return std::clamp(rest - Look::px(nameRoom), Look::px(72), Look::px(120));
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
