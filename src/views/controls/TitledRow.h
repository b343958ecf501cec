#pragma once

#include <QString>

class QBoxLayout;
class QLayout;
class QWidget;

namespace tamboro {

/// A widget clips what stands outside it, and the focus rings of its controls do: leaves `ringRoom` on all sides, which
/// whoever places the widget takes off the space around it.
void leaveRingRoom(QLayout& layout);

/// Lays out `row` as a line of a form: a title as caption in a column of this width, the control behind a gap that
/// gives way first in a narrow place, and the rest of the width empty. More controls go behind the last item but one.
QBoxLayout* layOutTitledRow(QWidget& row, const QString& title, QWidget* control, int titleWidth);
QWidget* makeTitledRow(const QString& title, QWidget* control, int titleWidth);

}  // namespace tamboro
