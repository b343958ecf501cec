#include "views/look/Look.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace tamboro {

namespace {

QColor rgb(unsigned value) {
  return QColor::fromRgb(value);
}

constexpr std::size_t styleCount = static_cast<std::size_t>(TextStyle::padNote) + 1;

struct Fonts {
  QFont body;
  QFont monospaced;
  // Made once: a new font looks its engine up at the first question, which painting would pay for at each text.
  std::array<std::optional<QFont>, styleCount> styles;
  std::array<std::optional<QFont>, styleCount> monospacedStyles;
  double bodyPx = 13;
  double scale = 1;
};

Fonts& fonts() {
  static Fonts all;
  return all;
}

const Look*& currentLook() {
  static const Look* look = &Look::light();
  return look;
}

struct Face {
  double factor;
  QFont::Weight weight;
};

Face face(TextStyle style) {
  switch (style) {
    case TextStyle::title:
      return {1.69, QFont::DemiBold};
    case TextStyle::title2:
      return {1.31, QFont::Bold};
    case TextStyle::headline:
      return {1.0, QFont::DemiBold};
    case TextStyle::body:
      return {1.0, QFont::Normal};
    case TextStyle::button:
      return {1.0, QFont::Medium};
    case TextStyle::prominentButton:
      return {1.0, QFont::DemiBold};
    case TextStyle::subheadline:
      return {0.92, QFont::Normal};
    case TextStyle::boldSubheadline:
      return {0.92, QFont::Bold};
    case TextStyle::padName:
      return {0.92, QFont::Medium};
    case TextStyle::caption:
      return {0.85, QFont::Normal};
    case TextStyle::captionHeadline:
      return {0.85, QFont::DemiBold};
    case TextStyle::caption2:
      return {0.81, QFont::Normal};
    case TextStyle::padNote:
      return {0.77, QFont::Normal};
  }
  return {1.0, QFont::Normal};
}

double pointsPerPx() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return 72.0 / (screen ? screen->logicalDotsPerInchY() : 96.0);
}

/// Half pixels keep the steps of the type scale apart without blurring what ought to be equal.
QFont sized(QFont font, double px, QFont::Weight weight) {
  font.setPointSizeF(std::max(10.0, std::round(px * 2) / 2) * pointsPerPx());
  font.setWeight(weight);
  return font;
}

#if !defined(Q_OS_MACOS) && !defined(Q_OS_WIN)
QString firstPresent(std::initializer_list<const char*> families) {
  const QStringList present = QFontDatabase::families();
  for (const char* family : families) {
    const QString name = QString::fromLatin1(family);
    if (present.contains(name)) return name;
  }
  return {};
}
#endif

}  // namespace

const Look& Look::light() {
  static const Look look{.isDark = false,
                         .window = rgb(0xFAFAFB),
                         .sidebar = rgb(0xF0F1F4),
                         .bar = rgb(0xF5F6F8),
                         .controlBackground = rgb(0xFFFFFF),
                         .base = rgb(0xFFFFFF),
                         .button = rgb(0xFFFFFF),
                         .buttonHover = rgb(0xF3F5F8),
                         .buttonPressed = rgb(0xE4E7EC),
                         .separator = rgb(0xD9DCE2),
                         .buttonOutline = rgb(0xC3C8D0),
                         .fieldOutline = rgb(0x8B919C),
                         .switchOff = rgb(0x818792),
                         .primary = rgb(0x17191D),
                         .secondary = rgb(0x565C67),
                         .tertiary = rgb(0x646A75),
                         .accent = rgb(0x0A66D0),
                         .accentHover = rgb(0x0859B8),
                         .accentPressed = rgb(0x064A9A),
                         .accentText = rgb(0x0A5FC4),
                         .focusRing = rgb(0x0A66D0),
                         .rowSelected = rgb(0xD9E7FB),
                         .rowSelectedUnfocused = rgb(0xE1E4E9),
                         .rowHover = rgb(0xE9EBEF),
                         .disabledText = rgb(0x7A808B),
                         .disabledFill = rgb(0xEEF0F3),
                         .danger = rgb(0xB5001F),
                         .tooltip = rgb(0x24272D),
                         .tooltipText = rgb(0xF3F4F6)};
  return look;
}

const Look& Look::dark() {
  static const Look look{.isDark = true,
                         .window = rgb(0x17181B),
                         .sidebar = rgb(0x1D1F23),
                         .bar = rgb(0x1F2125),
                         .controlBackground = rgb(0x222429),
                         .base = rgb(0x101114),
                         .button = rgb(0x2D3036),
                         .buttonHover = rgb(0x373B42),
                         .buttonPressed = rgb(0x24272C),
                         .separator = rgb(0x33363D),
                         .buttonOutline = rgb(0x484C55),
                         .fieldOutline = rgb(0x626873),
                         .switchOff = rgb(0x6C727E),
                         .primary = rgb(0xECEDF0),
                         .secondary = rgb(0xAEB3BD),
                         .tertiary = rgb(0x969BA6),
                         .accent = rgb(0x1F6BD1),
                         .accentHover = rgb(0x2672DA),
                         .accentPressed = rgb(0x185AB2),
                         .accentText = rgb(0x62AEFF),
                         .focusRing = rgb(0x62AEFF),
                         .rowSelected = rgb(0x1E3554),
                         .rowSelectedUnfocused = rgb(0x30333A),
                         .rowHover = rgb(0x282B31),
                         .disabledText = rgb(0x8A909B),
                         .disabledFill = rgb(0x24262B),
                         .danger = rgb(0xFF7D8A),
                         .tooltip = rgb(0x3A3E46),
                         .tooltipText = rgb(0xF3F4F6)};
  return look;
}

const Look& Look::current() {
  return *currentLook();
}

void Look::setCurrent(const Look& look) {
  currentLook() = &look;
}

QColor Look::plate() const {
  return isDark ? rgb(0xF8F8F9) : rgb(0x2A1E0C);
}

QPalette Look::palette() const {
  using Role = QPalette::ColorRole;
  const std::array<std::pair<Role, QColor>, 20> all{{{Role::Window, window},
                                                     {Role::WindowText, primary},
                                                     {Role::Base, base},
                                                     {Role::AlternateBase, controlBackground},
                                                     {Role::Text, primary},
                                                     {Role::Button, button},
                                                     {Role::ButtonText, primary},
                                                     {Role::BrightText, secondary},
                                                     {Role::PlaceholderText, tertiary},
                                                     {Role::Link, accentText},
                                                     {Role::LinkVisited, danger},
                                                     {Role::Highlight, accent},
                                                     {Role::HighlightedText, rgb(0xFFFFFF)},
                                                     {Role::ToolTipBase, tooltip},
                                                     {Role::ToolTipText, tooltipText},
                                                     {Role::Light, buttonHover},
                                                     {Role::Midlight, buttonPressed},
                                                     {Role::Mid, separator},
                                                     {Role::Dark, buttonOutline},
                                                     {Role::Shadow, fieldOutline}}};
  QPalette made;
  for (const auto& [role, colour] : all)
    made.setColor(role, colour);
  // A colour without a group writes all three groups, so the disabled ones come last.
  for (Role role :
       {Role::WindowText, Role::Text, Role::ButtonText, Role::BrightText, Role::PlaceholderText, Role::Link})
    made.setColor(QPalette::Disabled, role, disabledText);
  made.setColor(QPalette::Disabled, Role::Button, disabledFill);
  made.setColor(QPalette::Disabled, Role::Base, disabledFill);
  made.setColor(QPalette::Disabled, Role::Highlight, switchOff);
  return made;
}

void Look::takeFonts(const QFont& systemFont) {
  Fonts& all = fonts();
  all = Fonts();
  all.body = systemFont;
  all.monospaced = QFontDatabase::systemFont(QFontDatabase::FixedFont);
#if !defined(Q_OS_MACOS) && !defined(Q_OS_WIN)
  // Inter has four real weights in Qt and the signs of the help texts; the desktop's default often has two.
  if (const QString family = firstPresent({"Inter", "Noto Sans"}); !family.isEmpty()) all.body.setFamily(family);
  if (const QString family = firstPresent({"JetBrains Mono", "DejaVu Sans Mono"}); !family.isEmpty())
    all.monospaced.setFamily(family);
#endif
  all.bodyPx = std::max(13, QFontInfo(systemFont).pixelSize());
  all.scale = QFontMetricsF(font(TextStyle::body)).height() / 16.0;
}

QFont Look::font(TextStyle style) {
  std::optional<QFont>& made = fonts().styles[static_cast<std::size_t>(style)];
  const Face look = face(style);
  if (!made) made = sized(fonts().body, fonts().bodyPx * look.factor, look.weight);
  return *made;
}

QFont Look::monospaced(TextStyle style) {
  std::optional<QFont>& made = fonts().monospacedStyles[static_cast<std::size_t>(style)];
  if (!made) made = sized(fonts().monospaced, fonts().bodyPx * face(style).factor, QFont::Normal);
  return *made;
}

int Look::px(double size) {
  return static_cast<int>(std::lround(size * std::max(1.0, fonts().scale)));
}

}  // namespace tamboro
