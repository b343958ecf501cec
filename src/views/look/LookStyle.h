#pragma once

#include <QProxyStyle>

class QAction;
class QApplication;
class QStyleOptionButton;
class QStyleOptionComboBox;
class QStyleOptionMenuItem;
class QStyleOptionSlider;

namespace tamboro {

struct Look;

/// How a control departs from its class's ordinary look. Set before the control is first shown.
enum class ControlLook {
  ordinary,
  prominent,    ///< push button: accent fill, one a sheet
  destructive,  ///< push button, menu row: danger text
  unsaved,      ///< push button: red text and outline on a ground that carries them
  small,        ///< push button: 24 high, caption text
  quiet         ///< combo box, line edit: fill and outline only under the pointer or with the focus
};
void setControlLook(QWidget& control, ControlLook look);
ControlLook controlLook(const QWidget* control);
void setControlLook(QAction& row, ControlLook look);

/// Fusion with our metrics, buttons, pickers, fields, check boxes, sliders, menus, scroll bars and focus ring. Colours
/// come from `Look::current`, sizes from its scale. Rings stand 3 px outside a control: those pixels belong to the
/// widget but not to its place in a layout.
class LookStyle : public QProxyStyle {
  Q_OBJECT

 public:
  LookStyle();

  /// Takes fonts and palette from the system, then sets our own; call before the first window.
  static void install(QApplication& application);
  /// The palette of one look, for a running application.
  static void apply(const Look& look);
  /// Light or dark, whichever the system's palette is now.
  static const Look& systemLook();

  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                         const QWidget* widget) const override;
  QRect subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override;
  void polish(QWidget* widget) override;
  using QProxyStyle::polish;
  /// Wheels over pickers and sliders scroll what they stand in unless the control has the focus.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void drawPushButton(const QStyleOptionButton& option, QPainter& painter, const QWidget* widget) const;
  void drawCheckBox(const QStyleOptionButton& option, QPainter& painter, const QWidget* widget) const;
  void drawComboBox(const QStyleOptionComboBox& option, QPainter& painter, const QWidget* widget) const;
  void drawComboBoxLabel(const QStyleOptionComboBox& option, QPainter& painter, const QWidget* widget) const;
  void drawSlider(const QStyleOptionSlider& option, QPainter& painter, const QWidget* widget) const;
  void drawScrollBar(const QStyleOptionSlider& option, QPainter& painter, const QWidget* widget) const;
  void drawField(const QStyleOption& option, QPainter& painter, const QWidget* widget) const;
  static QRect comboBoxPopup(const QRect& shape, const QWidget* widget);
  static int markWidth(const QStyleOptionMenuItem& option);
  void drawMenuItem(const QStyleOptionMenuItem& option, QPainter& painter, const QWidget* widget) const;
  void drawMenuBarItem(const QStyleOptionMenuItem& option, QPainter& painter) const;
  QSize pushButtonSize(const QStyleOptionButton& option, const QWidget* widget) const;
  QRect sliderPart(const QStyleOptionSlider& option, SubControl part) const;
  QRect scrollBarPart(const QStyleOptionSlider& option, SubControl part, const QWidget* widget) const;
};

}  // namespace tamboro
