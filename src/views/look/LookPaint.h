#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>

namespace tamboro {

/// What a focus ring takes outside a control: a gap of 1 and a ring of 2.
constexpr int ringRoom = 3;
constexpr double controlRadius = 6;

/// A rounded box whose outline, of whole device pixels, lies inside the shape. An invalid colour leaves its part out.
void paintBox(QPainter& painter, const QRectF& rect, double radius, const QColor& fill, const QColor& outline = {},
              double outlineWidth = 1);
/// The focus ring around a shape of that rectangle and radius.
void paintFocusRing(QPainter& painter, const QRectF& shape, double radius);
/// A line of text in its own direction: in that of a mirrored layout "808 Trap" would read "Trap 808". `side` is meant
/// for a layout from left to right.
void paintText(QPainter& painter, Qt::LayoutDirection layout, const QRectF& room, Qt::Alignment side,
               const QString& text, int flags = Qt::TextSingleLine);

}  // namespace tamboro
