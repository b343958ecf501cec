#include <QComboBox>
#include <QPainter>
#include <QSlider>
#include <QStyleOption>
#include <algorithm>

#include "views/look/Look.h"
#include "views/look/LookPaint.h"
#include "views/look/LookStyle.h"
#include "views/look/Symbols.h"

namespace tamboro {

void LookStyle::drawField(const QStyleOption& option, QPainter& painter, const QWidget* widget) const {
  const Look& look = Look::current();
  const bool isEnabled = option.state & State_Enabled;
  const bool hasFocus = option.state & State_HasFocus;
  if (controlLook(widget) == ControlLook::quiet && !hasFocus && !(option.state & State_MouseOver)) return;
  paintBox(painter, option.rect, controlRadius, isEnabled ? look.base : look.disabledFill,
           hasFocus    ? look.focusRing
           : isEnabled ? look.fieldOutline
                       : look.separator,
           hasFocus ? 2 : 1);
}

void LookStyle::drawComboBox(const QStyleOptionComboBox& option, QPainter& painter, const QWidget* widget) const {
  const Look& look = Look::current();
  const QRect shape = option.rect.adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom);
  const bool isEnabled = option.state & State_Enabled;
  const bool isHovered = isEnabled && (option.state & State_MouseOver);
  const bool isOpen = option.state & (State_On | State_Sunken);
  const bool hasFocus = option.state & State_HasFocus;
  const bool isQuiet = controlLook(widget) == ControlLook::quiet && !isHovered && !isOpen && !hasFocus;
  if (!isQuiet)
    paintBox(painter, shape, controlRadius,
             !isEnabled  ? look.disabledFill
             : isOpen    ? look.buttonPressed
             : isHovered ? look.buttonHover
                         : look.button,
             isEnabled ? look.buttonOutline : look.separator);
  if (hasFocus) paintFocusRing(painter, shape, controlRadius);
  const int side = Look::px(12);
  const QRect arrow(shape.right() - side - Look::px(7), shape.y() + (shape.height() - side) / 2, side, side);
  paintSymbol(painter, QStringLiteral("chevron.up.chevron.down"), visualRect(option.direction, shape, arrow),
              isEnabled ? look.secondary : look.disabledText);
}

void LookStyle::drawComboBoxLabel(const QStyleOptionComboBox& option, QPainter& painter, const QWidget* widget) const {
  const Look& look = Look::current();
  const QRect room = subControlRect(CC_ComboBox, &option, SC_ComboBoxEditField, widget);
  painter.setPen(option.state & State_Enabled ? look.primary : look.disabledText);
  paintText(painter, option.direction, room, Qt::AlignLeft | Qt::AlignVCenter,
            painter.fontMetrics().elidedText(option.currentText, Qt::ElideRight, room.width()));
}

QRect LookStyle::sliderPart(const QStyleOptionSlider& option, SubControl part) const {
  const QRect inside = option.rect.adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom);
  if (part != SC_SliderHandle) return inside;
  const int knob = Look::px(16);
  if (option.orientation == Qt::Vertical) {
    const int y = sliderPositionFromValue(option.minimum, option.maximum, option.sliderPosition, inside.height() - knob,
                                          option.upsideDown);
    return QRect(inside.x() + (inside.width() - knob) / 2, inside.y() + y, knob, knob);
  }
  const int x = sliderPositionFromValue(option.minimum, option.maximum, option.sliderPosition, inside.width() - knob,
                                        option.upsideDown);
  return QRect(inside.x() + x, inside.y() + (inside.height() - knob) / 2, knob, knob);
}

void LookStyle::drawSlider(const QStyleOptionSlider& option, QPainter& painter, const QWidget*) const {
  const Look& look = Look::current();
  const QRectF inside = sliderPart(option, SC_SliderGroove);
  const QRectF knob = sliderPart(option, SC_SliderHandle);
  const bool isEnabled = option.state & State_Enabled;
  const double thickness = Look::px(4);
  const QRectF track(inside.x(), inside.center().y() - thickness / 2, inside.width(), thickness);
  QColor rest = look.switchOff;
  rest.setAlphaF(0.55F);
  paintBox(painter, track, thickness / 2, rest);
  QRectF filled = track;
  // `upsideDown` is where the low end is drawn at the right: a mirrored layout.
  option.upsideDown ? filled.setLeft(knob.center().x()) : filled.setRight(knob.center().x());
  if (isEnabled) paintBox(painter, filled, thickness / 2, look.accent);
  const QColor face = look.isDark && !isEnabled ? look.disabledText : QColor(Qt::white);
  paintBox(painter, knob, knob.width() / 2, face, look.fieldOutline);
  if (option.state & State_HasFocus) paintFocusRing(painter, knob, knob.width() / 2);
}

QRect LookStyle::scrollBarPart(const QStyleOptionSlider& option, SubControl part, const QWidget* widget) const {
  const bool isUpright = option.orientation == Qt::Vertical;
  const int length = isUpright ? option.rect.height() : option.rect.width();
  const std::int64_t range = static_cast<std::int64_t>(option.maximum) - option.minimum;
  int handle = length;
  if (range > 0) {
    const std::int64_t shown = static_cast<std::int64_t>(length) * option.pageStep / (range + option.pageStep);
    handle = std::clamp(static_cast<int>(shown), std::min(length, pixelMetric(PM_ScrollBarSliderMin, &option, widget)),
                        length);
  }
  const int start = sliderPositionFromValue(option.minimum, option.maximum, option.sliderPosition, length - handle,
                                            option.upsideDown);
  const auto span = [&](int from, int size) {
    const QRect rect = isUpright ? QRect(option.rect.x(), option.rect.y() + from, option.rect.width(), size)
                                 : QRect(option.rect.x() + from, option.rect.y(), size, option.rect.height());
    return visualRect(option.direction, option.rect, rect);
  };
  switch (part) {
    case SC_ScrollBarSlider:
      return span(start, handle);
    case SC_ScrollBarSubPage:
      return span(0, start);
    case SC_ScrollBarAddPage:
      return span(start + handle, length - start - handle);
    case SC_ScrollBarGroove:
      return option.rect;
    default:
      return {};  // no arrows
  }
}

void LookStyle::drawScrollBar(const QStyleOptionSlider& option, QPainter& painter, const QWidget* widget) const {
  if (option.minimum >= option.maximum) return;
  QColor colour = Look::current().fieldOutline;
  if (!(option.state & (State_MouseOver | State_Sunken))) colour.setAlphaF(0.55F);
  QRectF handle = scrollBarPart(option, SC_ScrollBarSlider, widget);
  const double inset = 2;
  handle.adjust(inset, inset, -inset, -inset);
  paintBox(painter, handle, 3, colour);
}

}  // namespace tamboro
