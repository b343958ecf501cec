#pragma once

#include <QColor>

namespace tamboro {

/// The five constant colours, sRGB, opaque, the same in light and dark. They speak of the card and the pads only; not
/// each can carry text on each ground, so marks in them have plates (see UnsavedMark, SaveButton).
inline const QColor paletteRed = QColor::fromRgbF(0.89F, 0.02F, 0.17F);
inline const QColor paletteOrange = QColor::fromRgbF(1.0F, 0.58F, 0.0F);
inline const QColor paletteBlue = QColor::fromRgbF(0.1F, 0.5F, 0.9F);
inline const QColor palettePurple = QColor::fromRgbF(0.6F, 0.2F, 0.8F);
inline const QColor paletteGreen = QColor::fromRgbF(0.2F, 0.8F, 0.3F);

}  // namespace tamboro
