#pragma once

#include <cstdint>

namespace tamboro {

/// Real values of controls as stored integers. Both saturate at the 64-bit range and give 0 for NaN.
std::int64_t truncated(double value);
std::int64_t rounded(double value);  // halves away from zero

}  // namespace tamboro
