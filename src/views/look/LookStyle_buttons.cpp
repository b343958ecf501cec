#include <QCheckBox>
#include <QPainter>
#include <QPushButton>
#include <QStyleOption>
#include <algorithm>

#include "views/look/Look.h"
#include "views/look/LookPaint.h"
#include "views/look/LookStyle.h"
#include "views/look/Palette.h"
#include "views/look/Symbols.h"

namespace tamboro {

namespace {

struct ButtonPaint {
  QColor fill, outline, text;
  double outlineWidth = 1;
};

ButtonPaint buttonPaint(ControlLook kind, QStyle::State state) {
  const Look& look = Look::current();
  const bool isPressed = state & (QStyle::State_Sunken | QStyle::State_On);
  const bool isHovered = state & QStyle::State_MouseOver;
  if (!(state & QStyle::State_Enabled)) return {look.disabledFill, look.separator, look.disabledText};
  if (kind == ControlLook::prominent)
    return {isPressed ? look.accentPressed : isHovered ? look.accentHover : look.accent, {}, Qt::white};
  const QColor fill = isPressed ? look.buttonPressed : isHovered ? look.buttonHover : look.button;
  // Red fails on every dark ground, so there the button is a white plate, which no state darkens.
  if (kind == ControlLook::unsaved)
    return {look.isDark ? look.plate() : look.button, paletteRed, paletteRed, isHovered || isPressed ? 2.0 : 1.0};
  return {fill, look.buttonOutline, kind == ControlLook::destructive ? look.danger : look.primary};
}

QFont labelFont(const QWidget* widget) {
  QFont font = widget ? widget->font() : Look::font(TextStyle::button);
  if (controlLook(widget) == ControlLook::unsaved) font.setWeight(QFont::DemiBold);
  return font;
}

int iconGap(const QStyleOptionButton& option) {
  return option.icon.isNull() || option.text.isEmpty() ? 0 : Look::px(6);
}

}  // namespace

QSize LookStyle::pushButtonSize(const QStyleOptionButton& option, const QWidget* widget) const {
  const bool isSmall = controlLook(widget) == ControlLook::small;
  const QFontMetrics metrics(labelFont(widget));
  const int text = option.text.isEmpty() ? 0 : metrics.size(Qt::TextShowMnemonic, option.text).width();
  const int icon = option.icon.isNull() ? 0 : Look::px(14);
  const int height = std::max(Look::px(isSmall ? 24 : 28), metrics.height() + 6);
  return QSize(text + icon + iconGap(option) + 2 * Look::px(isSmall ? 10 : 12) + 2 * ringRoom, height + 2 * ringRoom);
}

void LookStyle::drawPushButton(const QStyleOptionButton& option, QPainter& painter, const QWidget* widget) const {
  const QRect shape = subElementRect(SE_PushButtonBevel, &option, widget);
  const ButtonPaint paint = buttonPaint(controlLook(widget), option.state);
  paintBox(painter, shape, controlRadius, paint.fill, paint.outline, paint.outlineWidth);
  if (option.state & State_HasFocus) paintFocusRing(painter, shape, controlRadius);

  painter.save();
  painter.setFont(labelFont(widget));
  painter.setPen(paint.text);
  const int iconSide = option.icon.isNull() ? 0 : Look::px(14);
  const int gap = iconGap(option);
  const int room = shape.width() - iconSide - gap - 12;
  const QFontMetrics metrics(painter.font());
  const QString text = metrics.elidedText(option.text, Qt::ElideRight, room, Qt::TextShowMnemonic);
  const int width = iconSide + gap + metrics.size(Qt::TextShowMnemonic, text).width();
  const QRect label(shape.x() + (shape.width() - width) / 2, shape.y(), width, shape.height());
  if (iconSide > 0) {
    const QRect icon(label.x(), shape.y() + (shape.height() - iconSide) / 2, iconSide, iconSide);
    option.icon.paint(&painter, visualRect(option.direction, label, icon), Qt::AlignCenter,
                      option.state & State_Enabled ? QIcon::Normal : QIcon::Disabled);
  }
  const int flags =
      Qt::TextSingleLine |
      (styleHint(SH_UnderlineShortcut, &option, widget, nullptr) ? Qt::TextShowMnemonic : Qt::TextHideMnemonic);
  const QRect words = label.adjusted(iconSide + gap, 0, 0, 0);
  paintText(painter, Qt::LeftToRight, visualRect(option.direction, label, words).adjusted(0, 0, 2, 0),
            Qt::AlignVCenter | Qt::AlignLeft, text, flags);
  painter.restore();
}

void LookStyle::drawCheckBox(const QStyleOptionButton& option, QPainter& painter, const QWidget* widget) const {
  const Look& look = Look::current();
  const QRect box = subElementRect(SE_CheckBoxIndicator, &option, widget);
  const bool isEnabled = option.state & State_Enabled;
  const bool isOn = option.state & (State_On | State_NoChange);
  if (!isEnabled) {
    paintBox(painter, box, 4, look.disabledFill, look.separator);
  } else if (isOn) {
    const bool isHovered = option.state & State_MouseOver;
    paintBox(painter, box, 4,
             option.state & State_Sunken ? look.accentPressed
             : isHovered                 ? look.accentHover
                                         : look.accent);
  } else {
    paintBox(painter, box, 4, option.state & State_Sunken ? look.buttonPressed : look.base, look.fieldOutline);
  }
  if (isOn)
    paintSymbol(painter, QStringLiteral("checkmark"), box.adjusted(2, 2, -2, -2),
                isEnabled ? Qt::white : look.disabledText);
  if (option.state & State_HasFocus) paintFocusRing(painter, box, 4);
  painter.setPen(isEnabled ? look.primary : look.disabledText);
  paintText(painter, option.direction, subElementRect(SE_CheckBoxContents, &option, widget),
            Qt::AlignLeft | Qt::AlignVCenter, option.text, Qt::TextShowMnemonic);
}

}  // namespace tamboro
