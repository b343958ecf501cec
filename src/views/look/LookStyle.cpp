#include "views/look/LookStyle.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainterPath>
#include <QPushButton>
#include <QScrollBar>
#include <QSlider>
#include <QStyleFactory>
#include <QStyleOption>
#include <QToolTip>

#include "views/look/HoverEnds.h"
#include "views/look/Look.h"
#include "views/look/LookPaint.h"

namespace tamboro {

namespace {

constexpr const char* lookProperty = "look";

/// Qt's own dialogs are laid out for margins of their style; ours set their own.
bool isToolkitDialog(const QWidget* widget) {
  return widget &&
         (widget->inherits("QFileDialog") || widget->inherits("QMessageBox") || widget->inherits("QInputDialog"));
}

bool takesWheelOnlyFocused(const QWidget* widget) {
  return qobject_cast<const QComboBox*>(widget) || qobject_cast<const QSlider*>(widget) ||
         qobject_cast<const QAbstractSpinBox*>(widget);
}

/// The toolkit's own parts have no names.
void nameForTools(QWidget& widget) {
  if (!widget.accessibleName().isEmpty()) return;
  if (const auto* bar = qobject_cast<QScrollBar*>(&widget))
    widget.setAccessibleName(bar->orientation() == Qt::Vertical ? QStringLiteral("Vertical scroll bar")
                                                                : QStringLiteral("Horizontal scroll bar"));
  if (qobject_cast<QMenu*>(&widget)) widget.setAccessibleName(QStringLiteral("Menu"));
}

}  // namespace

void setControlLook(QWidget& control, ControlLook look) {
  control.setProperty(lookProperty, static_cast<int>(look));
  control.update();
}

ControlLook controlLook(const QWidget* control) {
  return control ? static_cast<ControlLook>(control->property(lookProperty).toInt()) : ControlLook::ordinary;
}

LookStyle::LookStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void LookStyle::install(QApplication& application) {
  const Look& look = systemLook();
  Look::takeFonts(application.font());
  application.setFont(Look::font(TextStyle::body));
  application.setStyle(new LookStyle);
  new HoverEnds(&application);
  QToolTip::setFont(Look::font(TextStyle::caption));
  apply(look);
}

void LookStyle::apply(const Look& look) {
  Look::setCurrent(look);
  QApplication::setPalette(look.palette());
  QToolTip::setPalette(look.palette());
  for (QWidget* widget : QApplication::allWidgets())
    widget->update();
}

const Look& LookStyle::systemLook() {
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
  if (QGuiApplication::styleHints()->colorScheme() != Qt::ColorScheme::Unknown)
    return QGuiApplication::styleHints()->colorScheme() == Qt::ColorScheme::Dark ? Look::dark() : Look::light();
#endif
  // An empty palette gives the system's back where ours had been set.
  const QPalette own = QApplication::palette();
  QApplication::setPalette(QPalette());
  const bool isDark = QApplication::palette().color(QPalette::Window).lightness() < 128;
  QApplication::setPalette(own);
  return isDark ? Look::dark() : Look::light();
}

void LookStyle::polish(QWidget* widget) {
  QProxyStyle::polish(widget);
  if (qobject_cast<QPushButton*>(widget) && !widget->testAttribute(Qt::WA_SetFont)) {
    const ControlLook look = controlLook(widget);
    const bool isHeavy = look == ControlLook::prominent || look == ControlLook::destructive;
    widget->setFont(Look::font(look == ControlLook::small ? TextStyle::caption
                               : isHeavy                  ? TextStyle::prominentButton
                                                          : TextStyle::button));
  }
  if (qobject_cast<QAbstractButton*>(widget) || qobject_cast<QComboBox*>(widget) || qobject_cast<QLineEdit*>(widget) ||
      qobject_cast<QSlider*>(widget) || qobject_cast<QScrollBar*>(widget))
    widget->setAttribute(Qt::WA_Hover);
  nameForTools(*widget);
  // Overlaid on the content, the bar must let it through.
  if (qobject_cast<QScrollBar*>(widget)) widget->setAttribute(Qt::WA_OpaquePaintEvent, false);
  // The toolkit's label of tooltips, whose class is not public: names in them are no markup.
  if (widget->inherits("QTipLabel")) static_cast<QLabel*>(widget)->setTextFormat(Qt::PlainText);
  if (takesWheelOnlyFocused(widget)) {
    if (widget->focusPolicy() == Qt::WheelFocus) widget->setFocusPolicy(Qt::StrongFocus);
    widget->installEventFilter(this);
  }
}

bool LookStyle::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Wheel && !static_cast<QWidget*>(watched)->hasFocus()) {
    event->ignore();
    return true;
  }
  return QProxyStyle::eventFilter(watched, event);
}

int LookStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  switch (metric) {
    case PM_LayoutLeftMargin:
    case PM_LayoutTopMargin:
    case PM_LayoutRightMargin:
    case PM_LayoutBottomMargin:
      return isToolkitDialog(widget) ? 12 : 0;
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing:
      return Look::px(8);
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
    case PM_ButtonDefaultIndicator:
    case PM_MenuHMargin:
    case PM_MenuBarVMargin:
    case PM_MenuBarPanelWidth:
    case PM_MenuBarItemSpacing:
      return 0;
    case PM_MenuPanelWidth:
      return 1;
    case PM_MenuVMargin:
      return 4;
    case PM_MenuBarHMargin:
      return 6;
    case PM_ButtonIconSize:
      return Look::px(14);
    case PM_SmallIconSize:
      return Look::px(16);
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
      return Look::px(16);
    case PM_CheckBoxLabelSpacing:
      return Look::px(8);
    case PM_SliderThickness:
    case PM_SliderControlThickness:
      return Look::px(16) + 2 * ringRoom;
    case PM_SliderLength:
      return Look::px(16);
    case PM_ScrollBarExtent:
    case PM_ScrollView_ScrollBarOverlap:
      return 10;
    case PM_ScrollBarSliderMin:
      return 28;
    case PM_ScrollView_ScrollBarSpacing:
      return 0;
    case PM_SplitterWidth:
      return 1;
    case PM_ToolTipLabelFrameWidth:
      return 4;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int LookStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* returned) const {
  switch (hint) {
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
    case SH_Widget_Animate:
    case SH_Widget_Animation_Duration:
    case SH_UnderlineShortcut:
    case SH_ScrollBar_Transient:
      return 0;
    case SH_Menu_Scrollable:  // a long list of tags stays one column
      return 1;
    case SH_ComboBox_PopupFrameStyle:
      return QFrame::Box | QFrame::Plain;
    case SH_Slider_AbsoluteSetButtons:
      return Qt::LeftButton;
    case SH_Slider_PageSetButtons:
      return Qt::MiddleButton;
    case SH_ToolTip_Mask:
      if (auto* mask = qstyleoption_cast<QStyleHintReturnMask*>(returned); mask && option) {
        QPainterPath path;
        path.addRoundedRect(option->rect, controlRadius, controlRadius);
        mask->region = QRegion(path.toFillPolygon().toPolygon());
      }
      return 1;
    default:
      return QProxyStyle::styleHint(hint, option, widget, returned);
  }
}

QSize LookStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                  const QWidget* widget) const {
  switch (type) {
    case CT_PushButton:
      if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option))
        return pushButtonSize(*button, widget);
      break;
    case CT_ComboBox:
      return QSize(contents.width() + Look::px(11) * 2 + Look::px(18), Look::px(26)) + QSize(ringRoom, ringRoom) * 2;
    case CT_CheckBox:
      return QProxyStyle::sizeFromContents(type, option, contents, widget) + QSize(2 * ringRoom, 2 * ringRoom);
    case CT_LineEdit:
      return QSize(contents.width() + Look::px(16), std::max(contents.height(), Look::px(28)));
    case CT_MenuBarItem:
      return QSize(contents.width() + Look::px(20), Look::px(26));
    case CT_MenuItem: {
      const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
      if (!item) break;
      if (item->menuItemType == QStyleOptionMenuItem::Separator) return QSize(10, 9);
      const int mark = markWidth(*item);
      const int arrow = item->menuItemType == QStyleOptionMenuItem::SubMenu ? Look::px(24) : 0;
      const int behind = item->text.contains(QLatin1Char('\t')) || item->reservedShortcutWidth > 0 ? Look::px(24) : 0;
      return QSize(contents.width() + mark + behind + arrow + Look::px(28), Look::px(26));
    }
    default:
      break;
  }
  return QProxyStyle::sizeFromContents(type, option, contents, widget);
}

QRect LookStyle::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const {
  const QRect inside = option->rect.adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom);
  switch (element) {
    case SE_PushButtonBevel:
    case SE_PushButtonLayoutItem:
    case SE_ComboBoxLayoutItem:
    case SE_CheckBoxLayoutItem:
    case SE_SliderLayoutItem:
      return inside;
    case SE_CheckBoxIndicator: {
      const QSize size(Look::px(16), Look::px(16));
      return alignedRect(option->direction, Qt::AlignLeft | Qt::AlignVCenter, size, inside);
    }
    case SE_CheckBoxContents: {
      const QRect text = inside.adjusted(Look::px(24), 0, 0, 0);
      return visualRect(option->direction, inside, text);
    }
    case SE_CheckBoxClickRect:
      return option->rect;
    case SE_LineEditContents: {
      const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
      if (frame && frame->lineWidth == 0) return option->rect;  // part of another control, which keeps the distance
      const int side = Look::px(8) - 2;                         // the field itself adds 2
      return option->rect.adjusted(side, 0, -side, 0);
    }
    default:
      return QProxyStyle::subElementRect(element, option, widget);
  }
}

/// An open row has its mark, which the closed picker hasn't: wide enough for the longest.
QRect LookStyle::comboBoxPopup(const QRect& shape, const QWidget* widget) {
  const auto* box = qobject_cast<const QComboBox*>(widget);
  int widest = 0;
  for (int row = 0; box && row < box->count(); ++row)
    widest = std::max(widest, box->fontMetrics().horizontalAdvance(box->itemText(row)));
  const int around = Look::px(20) + 2 * (Look::px(10) + 4) + 3;
  return {shape.topLeft(), QSize(std::max(shape.width(), widest + around), shape.height())};
}

QRect LookStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                const QWidget* widget) const {
  if (control == CC_Slider)
    if (const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option)) return sliderPart(*slider, part);
  if (control == CC_ScrollBar)
    if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option))
      return scrollBarPart(*bar, part, widget);
  if (control == CC_ComboBox) {
    const QRect inside = option->rect.adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom);
    const int arrow = Look::px(26);
    switch (part) {
      case SC_ComboBoxArrow:
        return visualRect(option->direction, inside,
                          QRect(inside.right() - arrow + 1, inside.y(), arrow, inside.height()));
      case SC_ComboBoxEditField:
        return visualRect(option->direction, inside, inside.adjusted(Look::px(11), 0, -arrow, 0));
      case SC_ComboBoxListBoxPopup:
        return visualRect(option->direction, inside, comboBoxPopup(inside, widget));
      default:
        break;
    }
  }
  return QProxyStyle::subControlRect(control, option, part, widget);
}

void LookStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
  switch (element) {
    case CE_PushButton:
      if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option))
        return drawPushButton(*button, *painter, widget);
      break;
    case CE_CheckBox:
      if (const auto* box = qstyleoption_cast<const QStyleOptionButton*>(option))
        return drawCheckBox(*box, *painter, widget);
      break;
    case CE_ComboBoxLabel:
      if (const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option))
        return drawComboBoxLabel(*box, *painter, widget);
      break;
    case CE_MenuItem:
      if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option))
        return drawMenuItem(*item, *painter, widget);
      break;
    case CE_MenuBarItem:
      if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option))
        return drawMenuBarItem(*item, *painter);
      break;
    case CE_MenuBarEmptyArea:
      return painter->fillRect(option->rect, Look::current().bar);
    case CE_MenuEmptyArea:
      return;
    case CE_ShapedFrame:
      if (widget && widget->inherits("QComboBoxPrivateContainer"))
        return drawPrimitive(PE_FrameMenu, option, painter, widget);
      break;
    case CE_Splitter:
      return painter->fillRect(option->rect, Look::current().separator);
    default:
      break;
  }
  QProxyStyle::drawControl(element, option, painter, widget);
}

void LookStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
  const Look& look = Look::current();
  switch (element) {
    case PE_PanelLineEdit:
      if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option); frame && frame->lineWidth > 0)
        return drawField(*option, *painter, widget);
      return;
    case PE_FrameFocusRect:
      return paintBox(*painter, option->rect, controlRadius, {}, look.focusRing, 2);
    case PE_PanelMenu:
      return painter->fillRect(option->rect, look.controlBackground);
    case PE_FrameMenu:
      return paintBox(*painter, option->rect, 0, {}, look.buttonOutline);
    case PE_PanelMenuBar:
      return;
    case PE_PanelTipLabel:
      return painter->fillRect(option->rect, look.tooltip);
    default:
      return QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

void LookStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                   const QWidget* widget) const {
  if (control == CC_ComboBox)
    if (const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option); box && !box->editable)
      return drawComboBox(*box, *painter, widget);
  if (const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option)) {
    if (control == CC_Slider && slider->orientation == Qt::Horizontal) return drawSlider(*slider, *painter, widget);
    if (control == CC_ScrollBar) return drawScrollBar(*slider, *painter, widget);
  }
  QProxyStyle::drawComplexControl(control, option, painter, widget);
}

}  // namespace tamboro
