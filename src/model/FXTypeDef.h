#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <variant>

namespace tamboro {

struct Kit;

/// One numbered parameter of an effect and how its leaf's number is to be read and shown.
struct FXParamDef {
  /// The number shown is the number stored, negative ones too. Bounds are inclusive, the unit may be empty.
  struct Range {
    std::int64_t lower;
    std::int64_t upper;
    std::string_view unit;
    friend bool operator==(const Range&, const Range&) = default;
  };
  /// The number is a position in the list.
  struct Options {
    std::span<const std::string_view> texts;
    friend bool operator==(const Options& a, const Options& b) { return std::ranges::equal(a.texts, b.texts); }
  };
  /// The instrument's own scale, whose steps are not known; the caption tells what its two ends mean.
  struct Raw {
    std::int64_t lower;
    std::int64_t upper;
    std::string_view caption;
    friend bool operator==(const Raw&, const Raw&) = default;
  };
  using Kind = std::variant<Range, Options, Raw>;

  std::string_view name;
  Kind kind;
};

/// An effect: parameter n of the list is the leaf `Fx1Prm` + n or `Fx2Prm` + n.
struct FXTypeDef {
  std::string_view name;
  std::span<const FXParamDef> params;
};

/// The instrument's effects. A position is a value of `Fx1Type` and `Fx2Type`; position 0 is "Thru". A constant of the
/// program, safe on any thread.
extern const std::array<FXTypeDef, 21> fxTypes;

/// The type of unit 1, or of unit 2 for any other number. A value that is no position, or no kit, gives "Thru".
const FXTypeDef& fxTypeDef(const Kit* kit, int unit);

}  // namespace tamboro
