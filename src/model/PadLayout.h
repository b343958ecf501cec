#pragma once

#include <string>

namespace tamboro {

inline constexpr int mainPadCount = 9;
inline constexpr int triggerCount = 4;
inline constexpr int footswitchCount = 2;
inline constexpr int standardPadCount = mainPadCount + triggerCount + footswitchCount;

/// Pads `first` ... `first + count - 1`; an empty range stands for a group that isn't shown.
struct PadRange {
  int first = 0;
  int count = 0;

  int end() const { return first + count; }
  bool contains(int index) const { return index >= first && index < end(); }
  friend bool operator==(const PadRange&, const PadRange&) = default;
};

struct PadLayout {
  PadRange main;
  PadRange triggers;
  PadRange footswitches;

  friend bool operator==(const PadLayout&, const PadLayout&) = default;
};

/// The groups of a kit that holds `padCount` pads. Pads beyond the fifteenth have no place in any group.
PadLayout padLayout(int padCount);

/// "Pad 1" ... "Pad 9", "Trig 1" ... "Trig 4", "FS 1", "FS 2" for indexes 0 to 14; empty for any other.
std::string padLabel(int index);

}  // namespace tamboro
