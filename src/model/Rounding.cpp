#include "model/Rounding.h"

#include <cmath>
#include <limits>

namespace tamboro {

std::int64_t truncated(double value) {
  constexpr double bound = 0x1p63;  // the first value above the range; -2^63 itself is in it
  if (std::isnan(value)) return 0;
  if (value >= bound) return std::numeric_limits<std::int64_t>::max();
  if (value < -bound) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(value);
}

std::int64_t rounded(double value) {
  return truncated(std::round(value));
}

}  // namespace tamboro
