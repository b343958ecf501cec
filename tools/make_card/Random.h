#pragma once

#include <cstdint>

namespace tamboro {

/// SplitMix64. The standard's distributions differ between libraries, and a seed must give the same card everywhere.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t next() {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
    return mixed ^ (mixed >> 31U);
  }
  /// Both bounds included.
  std::int64_t between(std::int64_t lower, std::int64_t upper) {
    const auto span = static_cast<std::uint64_t>(upper - lower) + 1;
    return lower + static_cast<std::int64_t>(next() % span);
  }
  /// True once in `n` draws on average.
  bool oneIn(std::int64_t n) { return between(1, n) == 1; }
  /// White noise in -1...1.
  double noise() { return static_cast<double>(next() >> 11U) * 0x1p-52 - 1.0; }

 private:
  std::uint64_t state_;
};

}  // namespace tamboro
