#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

namespace tamboro {

/// What a text is for; its size and weight follow from that.
enum class TextStyle {
  title,
  title2,
  headline,
  body,
  button,
  prominentButton,
  subheadline,
  boldSubheadline,
  padName,
  caption,
  captionHeadline,
  caption2,
  padNote
};

/// Text colours as palette roles, so that labels follow a change of palette: three that QPalette has no name for stand
/// in roles that nothing else here uses.
namespace textRole {
constexpr QPalette::ColorRole primary = QPalette::WindowText;
constexpr QPalette::ColorRole secondary = QPalette::BrightText;
constexpr QPalette::ColorRole tertiary = QPalette::PlaceholderText;
constexpr QPalette::ColorRole accent = QPalette::Link;
constexpr QPalette::ColorRole danger = QPalette::LinkVisited;
}  // namespace textRole

/// The neutral colours and the one accent, in a light and a dark set. What is painted by hand reads `current`; widgets
/// read the palette made of it.
struct Look {
  bool isDark;
  QColor window, sidebar, bar, controlBackground, base, button, buttonHover, buttonPressed;
  QColor separator, buttonOutline, fieldOutline, switchOff;
  QColor primary, secondary, tertiary;
  QColor accent, accentHover, accentPressed, accentText, focusRing;
  QColor rowSelected, rowSelectedUnfocused, rowHover;
  QColor disabledText, disabledFill, danger, tooltip, tooltipText;

  static const Look& light();
  static const Look& dark();
  static const Look& current();
  static void setCurrent(const Look& look);

  QPalette palette() const;

  /// The ground that carries a constant colour where the window's own can't: near white in dark, ink in light.
  QColor plate() const;

  /// Takes the families and the body size from the application's font: bodies below 13 px are raised to it, no text
  /// goes below 10. Call once, before the first window.
  static void takeFonts(const QFont& systemFont);
  static QFont font(TextStyle style);
  static QFont monospaced(TextStyle style);

  /// A fixed size in the body font's scale, never below the stated one.
  static int px(double size);
};

}  // namespace tamboro
