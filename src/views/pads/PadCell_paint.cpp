#include <QPainter>
#include <algorithm>
#include <array>

#include "views/look/Look.h"
#include "views/look/LookPaint.h"
#include "views/look/Palette.h"
#include "views/pads/PadCell.h"
#include "views/pads/PadGridMoves.h"

namespace tamboro {

namespace {

constexpr double radius = 8;
constexpr int padding = 6;
constexpr int betweenLines = 4;

QColor veil(QColor colour, double opacity) {
  colour.setAlphaF(static_cast<float>(opacity));
  return colour;
}

int lineHeight(TextStyle style) {
  return QFontMetrics(Look::font(style)).height();
}

int contentHeight(qsizetype nameLines) {
  return lineHeight(TextStyle::caption2) + lineHeight(TextStyle::padNote) + 2 * betweenLines +
         static_cast<int>(nameLines) * lineHeight(TextStyle::padName);
}

/// One centred line, cut at its end; gives the place of the next.
double drawLine(QPainter& painter, const QRectF& room, double top, const QString& text, TextStyle style,
                const QColor& colour) {
  painter.setFont(Look::font(style));
  painter.setPen(colour);
  const QFontMetricsF metrics(painter.font());
  const QRectF line(room.x(), top, room.width(), lineHeight(style));
  paintText(painter, Qt::LeftToRight, line, Qt::AlignCenter, metrics.elidedText(text, Qt::ElideRight, room.width()));
  return line.bottom();
}

}  // namespace

const QStringList& PadCell::nameLines(int width) const {
  if (width != brokenAt_) {
    const QFontMetricsF metrics(Look::font(TextStyle::padName));
    lines_ = padNameLines(soundName_.value_or(QStringLiteral("—")), width - 2 * padding,
                          [&](const QString& text) { return metrics.horizontalAdvance(text); });
    brokenAt_ = width;
  }
  return lines_;
}

int PadCell::heightForWidth(int width) const {
  return std::max(Look::px(66), contentHeight(nameLines(width).size()) + 2 * padding);
}

QSize PadCell::minimumSizeHint() const {
  return {Look::px(64), Look::px(64)};
}

QColor PadCell::fill() const {
  struct Ground {
    QColor colour;
    double opacity;
  };
  static const std::array<Ground, 5> grounds{
      {{paletteOrange, 0.1}, {paletteBlue, 0.1}, {palettePurple, 0.1}, {paletteGreen, 0.1}, {paletteRed, 0.08}}};
  if (isSelected()) return veil(paletteRed, 0.2);
  if (isDropTarget_) return veil(paletteGreen, 0.14);
  if (!soundName_) return veil(Qt::black, 0.05);
  const Ground& ground = grounds.at(static_cast<std::size_t>(padIndex_) % grounds.size());
  return veil(ground.colour, ground.opacity);
}

void PadCell::paintEvent(QPaintEvent*) {
  const Look& look = Look::current();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF shape(rect());
  if (isSelected()) {
    paintBox(painter, shape, radius, fill(), paletteRed, 2.5);
  } else if (isDropTarget_) {
    paintBox(painter, shape, radius, fill(), paletteGreen, 2);
  } else {
    const bool isHovered = underMouse();
    paintBox(painter, shape, radius, fill());
    if (isDown() || isHovered) paintBox(painter, shape, radius, veil(look.primary, isDown() ? 0.1 : 0.05));
    paintBox(painter, shape, radius, {}, isHovered ? look.fieldOutline : veil(Qt::gray, 0.3));
  }
  const QRectF room = shape.adjusted(padding, 0, -padding, 0);
  const QStringList lines = nameLines(width());
  double top = shape.y() + (shape.height() - contentHeight(lines.size())) / 2;
  top = drawLine(painter, room, top, label(), TextStyle::caption2, look.secondary) + betweenLines;
  for (const QString& line : lines)
    top = drawLine(painter, room, top, line, TextStyle::padName, look.primary);
  drawLine(painter, room, top + betweenLines, note_, TextStyle::padNote, look.secondary);
}

}  // namespace tamboro
