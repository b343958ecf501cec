#pragma once

#include <QAccessible>
#include <array>
#include <string_view>
#include <type_traits>

#include "views/samples/WaveBrowserView.h"
#include "views/samples/WaveRowDelegate.h"

namespace tamboro {

struct WaveColumn;

/// What the cells of a sample's row are made of.
struct WaveCell {
  const WaveRowValues& wave;
  QString tag;             ///< the tag's title
  const QString& addHelp;  ///< the add button's
  bool hasKit = false;     ///< a kit is selected
  bool isPlaying = false;
  bool isOpen = false;  ///< the loop section stands under the row

  QVariant value(const WaveColumn& column, int role) const;
};

/// A text of a column: the same in every row, or made for the row.
class WaveText {
 public:
  constexpr WaveText() = default;
  constexpr WaveText(const char* utf8) : same_(utf8) {}
  template<class Make>
  requires std::is_invocable_r_v<QString, Make, const WaveCell&>
  constexpr WaveText(Make make) : make_(make) {}

  constexpr bool isGiven() const { return same_ || make_; }
  QString of(const WaveCell& cell) const { return make_ ? make_(cell) : QString::fromUtf8(same_); }

 private:
  const char* same_ = nullptr;
  QString (*make_)(const WaveCell&) = nullptr;
};

/// How a cell is painted.
enum class WavePaint { symbol, name, picker, number };

/// One column of the sample list: all that the program knows of it. Lengths are those at the usual type size.
struct WaveColumn {
  std::string_view name;  ///< what the code calls it
  WavePaint paint = WavePaint::symbol;
  int width = 28;      ///< 0 for the one column that takes what the others leave
  int leastWidth = 0;  ///< for one that gives way where large type makes the row tight
  WaveText text = {};

  WaveText symbol = {};
  int symbolSide = 14;
  int symbolRoom = 0;     ///< for the symbol, at the leading edge; 0 is the whole width
  bool hasPlate = false;  ///< behind a symbol that can't be told from a light ground
  WaveTint (*tint)(const WaveCell&) = [](const WaveCell&) { return WaveTint::quiet; };

  QAccessible::Role role = QAccessible::Button;
  WaveText spoken = {};  ///< its name for assistive tools; without one the help
  WaveText help = {};

  /// A cell that isn't shown is an empty slot. It has a name, too.
  bool (*isShown)(const WaveRowValues&) = [](const WaveRowValues&) { return true; };
  WaveText spokenEmpty = {};

  /// What a press on the cell does; a cell that is pressed is a control of its own.
  void (WaveBrowserView::*press)(const RowKey& row) = nullptr;
  bool (*isChecked)(const WaveCell&) = nullptr;  ///< for a control that opens and closes
};

/// The columns from the leading edge on.
inline constexpr auto waveColumns = std::to_array<WaveColumn>({
    {.name = "play",
     .width = 36,
     .symbol =
         [](const WaveCell& cell) {
           return cell.isPlaying ? QStringLiteral("stop.fill") : QStringLiteral("play.fill");
         },
     .symbolSide = 12,
     .tint = [](const WaveCell& cell) { return cell.isPlaying ? WaveTint::accent : WaveTint::quiet; },
     .spoken = [](const WaveCell& cell) { return cell.isPlaying ? QStringLiteral("Stop") : QStringLiteral("Play"); },
     .press = &WaveBrowserView::togglePlaying},
    {.name = "name",
     .paint = WavePaint::name,
     .width = 0,
     .text = [](const WaveCell& cell) { return cell.wave.name(); },
     .role = QAccessible::ListItem,
     .spoken = [](const WaveCell& cell) { return waveSpokenText(cell.wave, cell.tag); },
     .help = "Double-click to rename. Drag to assign to a pad."},
    {.name = "tag",
     .paint = WavePaint::picker,
     .width = 120,
     .leastWidth = 72,
     .text = [](const WaveCell& cell) { return cell.tag; },
     .role = QAccessible::ButtonMenu,
     .spoken = [](const WaveCell& cell) { return QStringLiteral("Tag: ") + cell.tag; },
     .press = &WaveBrowserView::openTagMenu},
    {.name = "number",
     .paint = WavePaint::number,
     .width = 50,
     .text = [](const WaveCell& cell) { return waveNumberText(cell.wave.id); },
     .role = QAccessible::StaticText,
     .spoken = [](const WaveCell& cell) { return QString::number(cell.wave.id); }},
    {.name = "pending",
     .symbol = "arrow.up.circle",
     .symbolSide = 12,
     .hasPlate = true,
     .tint = [](const WaveCell&) { return WaveTint::orange; },
     .role = QAccessible::Graphic,
     .help = "Not saved to the card yet",
     .isShown = [](const WaveRowValues& wave) { return wave.isPending; },
     .spokenEmpty = "Saved on the card"},
    {.name = "add",
     .symbol = "plus.circle.fill",
     .tint = [](const WaveCell& cell) { return cell.hasKit ? WaveTint::red : WaveTint::faint; },
     .help = [](const WaveCell& cell) { return cell.addHelp; },
     .press = &WaveBrowserView::addToPad},
    {.name = "remove",
     .symbol = "trash",
     .spoken = "Delete",
     .isShown = [](const WaveRowValues& wave) { return !wave.isFactory; },
     .spokenEmpty = "Factory sound",
     .press = &WaveBrowserView::confirmDelete},
    // Wider than its symbol: the scroll bar lies over its end.
    {.name = "loop",
     .width = 33,
     .symbol = "waveform",
     .symbolSide = 16,
     .symbolRoom = 28,
     .tint = [](const WaveCell& cell) { return cell.isOpen ? WaveTint::accent : WaveTint::quiet; },
     .spoken = "Loop settings",
     .help = "Show/hide loop and tempo sync settings",
     .isShown = [](const WaveRowValues& wave) { return wave.hasMeasure; },
     .spokenEmpty = "No loop settings",
     .press = &WaveBrowserView::toggleLoopSettings,
     .isChecked = [](const WaveCell& cell) { return cell.isOpen; }},
});

inline constexpr int waveColumnCount = static_cast<int>(waveColumns.size());

/// The place of the column of that name. A name that none has doesn't compile.
consteval int waveColumn(std::string_view name) {
  for (int place = 0; const WaveColumn& column : waveColumns) {
    if (column.name == name) return place;
    ++place;
  }
  throw "no column has this name";
}

}  // namespace tamboro
