#pragma once

#include <QColor>
#include <QIcon>
#include <QPainter>
#include <QString>
#include <QStringList>

namespace tamboro {

/// Our own drawings on a grid of 16 units, the files of `symbols/`, named like the symbols they stand for
/// ("square.grid.3x3.fill", "tag"). Paints one into the rectangle at the device's size; an unknown name paints nothing.
void paintSymbol(QPainter& painter, const QString& name, const QRectF& rect, const QColor& colour);

/// An icon that paints itself in the given colour or, without one, in the painter's pen where a control of LookStyle
/// draws it and in the palette's text elsewhere.
QIcon symbolIcon(const QString& name, const QColor& colour = {});

/// All names there are.
QStringList symbolNames();

}  // namespace tamboro
