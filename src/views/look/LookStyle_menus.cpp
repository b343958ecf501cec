#include <QMenu>
#include <QPainter>
#include <QStyleOption>

#include "views/look/Look.h"
#include "views/look/LookPaint.h"
#include "views/look/LookStyle.h"
#include "views/look/Symbols.h"

namespace tamboro {

namespace {

/// The option of a menu row doesn't tell whose row it is.
bool isDestructive(const QWidget* widget, const QRect& row) {
  const auto* menu = qobject_cast<const QMenu*>(widget);
  const QAction* action = menu ? menu->actionAt(row.center()) : nullptr;
  return action && action->property("look").toInt() == static_cast<int>(ControlLook::destructive);
}

}  // namespace

void setControlLook(QAction& row, ControlLook look) {
  row.setProperty("look", static_cast<int>(look));
}

void LookStyle::drawMenuBarItem(const QStyleOptionMenuItem& option, QPainter& painter) const {
  const Look& look = Look::current();
  painter.fillRect(option.rect, look.bar);
  if (option.state & (State_Selected | State_Sunken) && option.state & State_Enabled)
    paintBox(painter, option.rect.adjusted(1, 2, -1, -2), controlRadius,
             option.state & State_Sunken ? look.rowSelected : look.rowHover);
  painter.setPen(option.state & State_Enabled ? look.primary : look.disabledText);
  const bool underlines = styleHint(SH_UnderlineShortcut, &option, nullptr, nullptr);
  paintText(painter, option.direction, option.rect, Qt::AlignCenter, option.text,
            Qt::TextSingleLine | (underlines ? Qt::TextShowMnemonic : Qt::TextHideMnemonic));
}

/// A picker's list marks its chosen row without saying that it holds rows to check.
int LookStyle::markWidth(const QStyleOptionMenuItem& option) {
  const bool isMarked = option.menuHasCheckableItems || option.checkType != QStyleOptionMenuItem::NotCheckable;
  return isMarked ? Look::px(20) : 0;
}

void LookStyle::drawMenuItem(const QStyleOptionMenuItem& option, QPainter& painter, const QWidget* widget) const {
  const Look& look = Look::current();
  painter.save();
  const QRect row = option.rect.adjusted(4, 0, -4, 0);
  if (option.menuItemType == QStyleOptionMenuItem::Separator) {
    painter.fillRect(row.x() + 6, row.center().y(), row.width() - 12, 1, look.separator);
    painter.restore();
    return;
  }
  const bool isEnabled = option.state & State_Enabled;
  if (isEnabled && option.state & State_Selected) paintBox(painter, row, controlRadius, look.rowSelected);
  const int mark = markWidth(option);
  const QRect inside = row.adjusted(Look::px(10), 0, -Look::px(10), 0);
  const QColor text = !isEnabled ? look.disabledText : isDestructive(widget, option.rect) ? look.danger : look.primary;
  if (option.checked) {
    const QRect box(inside.x() - Look::px(2), inside.center().y() - Look::px(6), Look::px(13), Look::px(13));
    paintSymbol(painter, QStringLiteral("checkmark"), visualRect(option.direction, row, box), text);
  }
  const bool underlines = styleHint(SH_UnderlineShortcut, &option, nullptr, nullptr);
  const int flags = Qt::TextSingleLine | (underlines ? Qt::TextShowMnemonic : Qt::TextHideMnemonic);
  const auto paintPart = [&](const QRect& room, Qt::Alignment side, const QString& part) {
    paintText(painter, option.direction, visualRect(option.direction, row, room), side | Qt::AlignVCenter, part, flags);
  };
  painter.setFont(option.font);
  painter.setPen(text);
  const QStringList parts = option.text.split(QLatin1Char('\t'));
  paintPart(inside.adjusted(mark, 0, 0, 0), Qt::AlignLeft, parts.first());
  if (parts.size() > 1) {
    painter.setPen(isEnabled ? look.secondary : look.disabledText);
    paintPart(inside, Qt::AlignRight, parts.last());
  }
  if (option.menuItemType == QStyleOptionMenuItem::SubMenu) {
    const QRect arrow(inside.right() - Look::px(10), inside.center().y() - Look::px(5), Look::px(11), Look::px(11));
    const bool isMirrored = option.direction == Qt::RightToLeft;
    paintSymbol(painter, isMirrored ? QStringLiteral("chevron.left") : QStringLiteral("chevron.right"),
                visualRect(option.direction, row, arrow), text);
  }
  painter.restore();
}

}  // namespace tamboro
