#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tamboro::utf8 {

/// A decoded code point and the bytes that it took; an ill-formed maximal subpart decodes to U+FFFD.
struct Decoded {
  char32_t codePoint;
  std::uint32_t length;
  bool wellFormed;
};

bool isScalarValue(std::int64_t code);
bool isWellFormed(std::string_view text);

/// Decodes at the front of `text`, which must not be empty.
Decoded decode(std::string_view text);
/// `codePoint` must be a scalar value.
void append(std::string& text, char32_t codePoint);
/// `text` with every maximal subpart of an ill-formed sequence replaced by U+FFFD.
std::string repaired(std::string_view text);

}  // namespace tamboro::utf8
