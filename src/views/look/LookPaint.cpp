#include "views/look/LookPaint.h"

#include <QStyle>
#include <algorithm>
#include <cmath>

#include "views/look/Look.h"

namespace tamboro {

void paintBox(QPainter& painter, const QRectF& rect, double radius, const QColor& fill, const QColor& outline,
              double outlineWidth) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  const double ratio = painter.device() ? painter.device()->devicePixelRatioF() : 1.0;
  const double width = std::max(1.0, std::floor(outlineWidth * ratio)) / ratio;
  const double inset = outline.isValid() ? width / 2 : 0;
  painter.setPen(outline.isValid() ? QPen(outline, width) : QPen(Qt::NoPen));
  painter.setBrush(fill.isValid() ? QBrush(fill) : QBrush(Qt::NoBrush));
  const double corner = std::max(0.0, radius - inset);
  painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), corner, corner);
  painter.restore();
}

void paintFocusRing(QPainter& painter, const QRectF& shape, double radius) {
  const double room = ringRoom;
  paintBox(painter, shape.adjusted(-room, -room, room, room), radius + room, {}, Look::current().focusRing, 2);
}

void paintText(QPainter& painter, Qt::LayoutDirection layout, const QRectF& room, Qt::Alignment side,
               const QString& text, int flags) {
  const Qt::LayoutDirection before = painter.layoutDirection();
  painter.setLayoutDirection(Qt::LayoutDirectionAuto);
  painter.drawText(room, static_cast<int>(QStyle::visualAlignment(layout, side) | Qt::AlignAbsolute) | flags, text);
  painter.setLayoutDirection(before);
}

}  // namespace tamboro
