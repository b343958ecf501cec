#include "card/Utf8.h"

#include <array>
#include <cstring>

namespace tamboro::utf8 {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

/// What a lead byte asks for: the sequence's length and the range of its second byte, which is what keeps out
/// overlong forms, surrogates and values above U+10FFFF.
struct Lead {
  std::uint32_t length = 0;
  unsigned char low = 0x80;
  unsigned char high = 0xBF;
};

Lead leadOf(unsigned char byte) {
  if (byte < 0xC2 || byte > 0xF4) return {};
  if (byte < 0xE0) return {2};
  if (byte == 0xE0) return {3, 0xA0, 0xBF};
  if (byte == 0xED) return {3, 0x80, 0x9F};
  if (byte < 0xF0) return {3};
  if (byte == 0xF0) return {4, 0x90, 0xBF};
  if (byte == 0xF4) return {4, 0x80, 0x8F};
  return {4};
}

std::size_t asciiPrefix(std::string_view text) {
  // Card files are ASCII nearly throughout: whole words of it are looked at in one step.
  constexpr std::uint64_t high = 0x8080808080808080U;
  std::size_t pos = 0;
  for (std::array<std::uint64_t, 4> words{}; pos + sizeof words <= text.size(); pos += sizeof words) {
    std::memcpy(words.data(), text.data() + pos, sizeof words);
    if (((words[0] | words[1] | words[2] | words[3]) & high) != 0) break;
  }
  for (std::uint64_t word = 0; pos + sizeof word <= text.size(); pos += sizeof word) {
    std::memcpy(&word, text.data() + pos, sizeof word);
    if ((word & high) != 0) break;
  }
  while (pos < text.size() && static_cast<unsigned char>(text[pos]) < 0x80)
    ++pos;
  return pos;
}

}  // namespace

bool isScalarValue(std::int64_t code) {
  return code >= 0 && code <= 0x10FFFF && !(code >= 0xD800 && code <= 0xDFFF);
}

Decoded decode(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  if (byte(0) < 0x80) return {byte(0), 1, true};
  const Lead lead = leadOf(byte(0));
  if (lead.length == 0) return {U'\uFFFD', 1, false};
  char32_t code = byte(0) & (0x7FU >> lead.length);
  for (std::uint32_t i = 1; i < lead.length; ++i) {
    const unsigned char low = i == 1 ? lead.low : 0x80;
    const unsigned char high = i == 1 ? lead.high : 0xBF;
    if (i >= text.size() || byte(i) < low || byte(i) > high) return {U'\uFFFD', i, false};
    code = (code << 6) | (byte(i) & 0x3FU);
  }
  return {code, lead.length, true};
}

bool isWellFormed(std::string_view text) {
  while (true) {
    text.remove_prefix(asciiPrefix(text));
    if (text.empty()) return true;
    const Decoded next = decode(text);
    if (!next.wellFormed) return false;
    text.remove_prefix(next.length);
  }
}

void append(std::string& text, char32_t codePoint) {
  const auto put = [&](char32_t byte) { text.push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
  if (codePoint < 0x80) return put(codePoint);
  if (codePoint < 0x800) {
    put(0xC0 | (codePoint >> 6));
  } else {
    if (codePoint < 0x10000) {
      put(0xE0 | (codePoint >> 12));
    } else {
      put(0xF0 | (codePoint >> 18));
      put(0x80 | ((codePoint >> 12) & 0x3F));
    }
    put(0x80 | ((codePoint >> 6) & 0x3F));
  }
  put(0x80 | (codePoint & 0x3F));
}

std::string repaired(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const Decoded next = decode(text);
    result.append(next.wellFormed ? text.substr(0, next.length) : replacement);
    text.remove_prefix(next.length);
  }
  return result;
}

}  // namespace tamboro::utf8
