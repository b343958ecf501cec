#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>

namespace tamboro::fuzz {

/// What each target is: tries one input and ends the program where something doesn't hold.
void tryInput(std::span<const std::uint8_t> input);

inline void require(bool holds, const std::string& what) {
  if (holds) return;
  std::fprintf(stderr, "Doesn't hold: %s\n", what.c_str());
  std::abort();
}

/// Choices out of an input. What has run out reads as 0, so that each input of any length means something.
class Choices {
 public:
  explicit Choices(std::span<const std::uint8_t> bytes) : rest_(bytes) {}

  bool isEmpty() const { return rest_.empty(); }
  std::uint8_t byte() {
    if (rest_.empty()) return 0;
    const std::uint8_t first = rest_.front();
    rest_ = rest_.subspan(1);
    return first;
  }
  int below(int bound) { return byte() % bound; }
  /// The next bytes as choices of their own.
  Choices split(std::size_t count) {
    const auto part = rest_.first(std::min(count, rest_.size()));
    rest_ = rest_.subspan(part.size());
    return Choices(part);
  }
  std::string rest() const { return {rest_.begin(), rest_.end()}; }

 private:
  std::span<const std::uint8_t> rest_;
};

}  // namespace tamboro::fuzz
