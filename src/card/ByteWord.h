#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tamboro {

/// Eight bytes looked at in one step, the first of them lowest on every machine. Elements of the card are short and of
/// changing length, and a loop over single bytes mispredicts at the end of nearly each.
class ByteWord {
 public:
  static constexpr std::ptrdiff_t size = sizeof(std::uint64_t);

  explicit ByteWord(const char* bytes) {
    std::memcpy(&word_, bytes, sizeof word_);
    if constexpr (std::endian::native == std::endian::big) word_ = __builtin_bswap64(word_);
  }

  /// A mask whose lowest set bit stands in the first byte that equals `byte`; empty if there is none.
  std::uint64_t find(char byte) const {
    const std::uint64_t zeros = word_ ^ (ones * static_cast<unsigned char>(byte));
    return (zeros - ones) & ~zeros & (ones << 7);
  }

  /// The index of the first byte in such a mask, or in several combined with |, which must not be empty.
  static std::size_t firstOf(std::uint64_t mask) { return static_cast<std::size_t>(std::countr_zero(mask)) / 8; }

 private:
  static constexpr std::uint64_t ones = 0x0101010101010101U;

  std::uint64_t word_;
};

}  // namespace tamboro
