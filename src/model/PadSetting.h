#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <string_view>

#include "model/Elements.h"

namespace tamboro {

/// What shows a setting and, but for the sounds, sets it.
enum class PadControl {
  sound,     ///< the name of the sample
  subSound,  ///< the same, or the number where no sample has it
  level,     ///< a slider with the number
  pan,       ///< a slider with the side, counted from the leaf's default
  note,      ///< two menus
  onOff,     ///< a switch
  menu,      ///< the rows; a value that has none is kept and none is chosen
  openMenu,  ///< the rows, and one more for a value that has none
};

/// Where in the column of a pad's settings. In the grid the settings fill rows of two.
enum class PadPlace { lines, grid, sub };

/// One setting of a pad: all that the program knows of it.
struct PadSetting {
  struct Row {
    std::int64_t value = 0;
    std::string_view text;
  };

  std::string_view name;   ///< its control's, and what the code calls it
  std::string_view title;  ///< what the interface calls it
  elements::IntegerLeaf leaf;
  PadControl control;
  PadPlace place;
  bool isReset;                    ///< "Reset Pad" writes the leaf's default
  bool isForAll;                   ///< "Apply to All Pads" can copy it
  std::array<Row, 5> namedRows{};  ///< of a menu, as many as have a text
  int lastNumber = 0;              ///< rows "1" to this follow
};

consteval auto makePadSettings() {
  using enum PadControl;
  using enum PadPlace;
  using elements::flag;
  constexpr bool reset = true;
  constexpr bool kept = false;
  constexpr bool forAll = true;
  constexpr bool own = false;
  // clang-format off
  return std::to_array<PadSetting>({
      // name         title           leaf, default, range          control   place  reset  apply   rows of a menu
      {"padSound",    "Sound",        {"Wv", -1},                   sound,    lines, reset, own},
      {"subSound",    "Sub Sound",    {"SubWv", -1},                subSound, sub,   reset, own},
      {"padVolume",   "Pad Volume",   {"WvLevel", 100, 0, 100},     level,    lines, reset, forAll},
      {"padPan",      "Pan",          {"WvPan", 15, 0, 30},         pan,      lines, reset, forAll},
      {"muteGroup",   "Mute Group",   {"MuteGrp", 0, 0, 8},         menu,     lines, reset, forAll, {{{0, "Off"}}}, 8},
      {"note",        "Note",         {"NoteNum", 60, 0, 127},      note,     lines, kept,  own},
      {"loop",        "Loop",         flag("Loop", 0),              onOff,    grid,  reset, forAll},
      {"tempoSync",   "TempoSync",    flag("TempoSync", 0),         onOff,    grid,  reset, forAll},
      {"dynamics",    "Dynamics",     flag("Dynamics", 0),          onOff,    grid,  reset, forAll},
      {"reverse",     "Reverse",      flag("Reverse", 0),           onOff,    grid,  reset, forAll},
      {"poly",        "Poly/Mono",    flag("VoiceAsgn", 1),         menu,     grid,  reset, forAll, {{{1, "POLY"}, {0, "MONO"}}}},
      {"triggerType", "Trigger Type", {"TrigType", 0},              openMenu, grid,  reset, forAll, {{{0, "SHOT"}, {1, "GATE"}}}},
      {"output",      "Output",       {"OutAsgn", 0},               openMenu, grid,  reset, forAll,
       {{{0, "Master Out"}, {1, "Kit FX1"}, {2, "Kit FX2"}, {3, "Sub Out"}, {4, "Phones Only"}}}},
      {"midiChannel", "MIDI Channel", {"PadMidiCh", -1},            menu,     grid,  reset, forAll, {{{-1, "Global"}}}, 16},
      {"subVolume",   "Sub Volume",   {"SubWvLevel", 100, 0, 100},  level,    sub,   reset, own},
      {"subPan",      "Sub Pan",      {"SubWvPan", 15, 0, 30},      pan,      sub,   reset, own},
  });
  // clang-format on
}

/// The settings of a pad. Their order is that of their place on the screen, of "Apply to All Pads", and of the leaves
/// that a reset or an application adds to a pad that lacks them.
inline constexpr auto padSettings = makePadSettings();

constexpr bool suitsItsLeaf(const PadSetting& setting) {
  switch (setting.control) {
    case PadControl::level:
    case PadControl::pan:
      return setting.leaf.lower > std::numeric_limits<int>::min() &&
             setting.leaf.upper < std::numeric_limits<int>::max();
    case PadControl::onOff:
      return setting.leaf.isFlag;
    case PadControl::menu:
    case PadControl::openMenu:
      return !setting.namedRows.front().text.empty() || setting.lastNumber > 0;
    default:
      return true;
  }
}
static_assert(std::ranges::all_of(padSettings, suitsItsLeaf),
              "a slider needs a range, a switch a flag and a menu its rows");

/// The setting of that name. A name that none has doesn't compile.
consteval const PadSetting& padSetting(std::string_view name) {
  std::size_t found = padSettings.size();  // by place: sanitizers leave no address constant
  for (std::size_t place = 0; place < padSettings.size(); ++place) {
    if (padSettings[place].name != name) continue;
    if (found != padSettings.size()) throw "two settings have this name";
    found = place;
  }
  if (found == padSettings.size()) throw "no setting has this name";
  return padSettings[found];
}

}  // namespace tamboro
