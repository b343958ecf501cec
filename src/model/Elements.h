#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "card/SpdNode.h"

/// The card's element vocabulary: every name, read default and written range stands here and nowhere else, but for the
/// settings of a pad, whose table is PadSetting.h.
namespace tamboro::elements {

/// A leaf that holds a decimal integer. Values are written as given unless the leaf has bounds or is a flag; values
/// read are never checked.
struct IntegerLeaf {
  std::string_view name;
  std::int64_t fallback;  // what a missing or unreadable leaf reads as
  std::int64_t lower = std::numeric_limits<std::int64_t>::min();
  std::int64_t upper = std::numeric_limits<std::int64_t>::max();
  bool isFlag = false;  // anything but 0 is on, and is written as 1

  std::int64_t read(const SpdNode& parent) const { return parent.intValue(name, fallback); }
  bool isOn(const SpdNode& parent) const { return read(parent) != 0; }

  /// The value as a write would store it.
  constexpr std::int64_t stored(std::int64_t value) const {
    return isFlag ? (value != 0 ? 1 : 0) : std::clamp(value, lower, upper);
  }
  void write(SpdNode& parent, std::int64_t value) const { parent.setLeaf(name, stored(value)); }
};

constexpr IntegerLeaf flag(std::string_view name, std::int64_t fallback) {
  return {name, fallback, 0, 1, true};
}

/// A text stored as one code point per leaf: `Nm0`, `Nm1`, ... Writing cuts what doesn't fit.
struct NameCells {
  std::string_view prefix;
  int count;

  std::string read(const SpdNode& parent) const { return parent.encodedName(prefix, count); }
  void write(SpdNode& parent, std::string_view text) const { parent.setEncodedName(text, prefix, count); }
};

// Kit file.
inline constexpr NameCells kitName{"Nm", 8};
inline constexpr NameCells kitSubName{"SubNm", 16};
inline constexpr IntegerLeaf kitLevel{"Level", 100, 0, 100};
inline constexpr IntegerLeaf kitTempo{"Tempo", 1200};  // tenths of a beat per minute
inline constexpr std::string_view pad = "PadPrm";

/// The two effect units of a kit: unit 1, and any other number means unit 2.
constexpr IntegerLeaf fxType(int unit) {
  return {unit == 1 ? "Fx1Type" : "Fx2Type", 0};
}
constexpr IntegerLeaf fxSwitch(int unit) {
  return flag(unit == 1 ? "Fx1Sw" : "Fx2Sw", 0);
}
std::string fxParam(int unit, int position);  // its read default is 0

// Sample file.
inline constexpr std::string_view waveRoot = "WvPrm";
inline constexpr NameCells waveName{"Nm", 12};
inline constexpr IntegerLeaf waveTag{"Tag", 0};
inline constexpr IntegerLeaf waveTempo{"Tempo", 1200};  // tenths of a beat per minute
inline constexpr IntegerLeaf waveBeat{"Beat", 4};
inline constexpr IntegerLeaf waveMeasure{"Measure", 0};
inline constexpr IntegerLeaf waveStart{"Start", 0};
inline constexpr IntegerLeaf waveEnd{"End", 0};
inline constexpr std::string_view wavePath = "Path";  // text, relative to WAVE/DATA

// Tag list.
inline constexpr std::string_view tag = "TagPrm";
inline constexpr NameCells tagName{"Nm", 12};

}  // namespace tamboro::elements
