#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

#include "model/Keys.h"

namespace tamboro {

enum class PadMove { up, down, left, right };

/// Where an arrow key leads from a pad: within the three by three main pads, without wrap-around, so that at an edge it
/// leads to the same pad, as it does where the kit hasn't got the next one. Nothing for trigger inputs and
/// footswitches.
std::optional<int> padAfterMove(int padIndex, PadMove move, int padCount);

/// A dropped text as a wave id: an optional sign, then digits, nothing else. Nothing where it is no such number or
/// leaves the 64-bit range.
std::optional<WaveId> droppedWaveId(const QString& text);

/// A sound's name on at most two lines of that width. Breaks where text may be broken if both parts fit then, else
/// between any two characters, and so that the lines are about as long. What still doesn't fit is cut by who paints.
QStringList padNameLines(const QString& name, double width, const std::function<double(const QString&)>& widthOf);

}  // namespace tamboro
