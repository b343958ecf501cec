#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "card/ByteWord.h"
#include "card/SpdParseError.h"

namespace tamboro {

/// The parser's cursor over a file's bytes; it only moves forward. Offsets and lengths are in bytes.
class ByteScanner {
 public:
  explicit ByteScanner(std::string_view bytes)
      : begin_(bytes.data()), next_(bytes.data()), end_(bytes.data() + bytes.size()) {}

  std::size_t pos() const { return static_cast<std::size_t>(next_ - begin_); }
  bool peek(char byte) const { return next_ != end_ && *next_ == byte; }
  bool peekClosingTag(std::string_view name) const { return isClosingTag(next_, name); }

  void expect(char byte) {
    if (!peek(byte)) throw SpdParseError::unexpectedByte({&byte, 1}, pos());
    ++next_;
  }
  /// The `/` of a self-closing element has been seen.
  void expectSelfClosing() {
    if (end_ - next_ < 2 || next_[1] != '>') throw SpdParseError::unexpectedByte("/>", pos());
    next_ += 2;
  }
  void skipClosingTag(std::size_t nameLength) { next_ += nameLength + 3; }

  std::string_view readWhitespace() {
    const char* const start = next_;
    while (next_ != end_ && isWhitespace(*next_))
      ++next_;
    return {start, next_};
  }

  /// Reads up to the `/` or `>` that ends a name.
  std::string_view readName() {
    const char* const start = next_;
    const char* const nameEnd = scan(
        start, [](char byte) { return byte == '/' || byte == '>'; },
        [](ByteWord word) { return word.find('/') | word.find('>'); });
    if (nameEnd == end_) throw SpdParseError::unterminated(">", pos());
    next_ = nameEnd;
    return {start, nameEnd};
  }

  /// Reads up to and behind the next closing tag of that name and returns what stands before it. A name holds no `/`,
  /// so two candidates overlap by no more than a byte, and the search is linear in what it passes whatever the name.
  std::string_view readPastClosingTag(std::string_view name) {
    const char* const start = next_;
    const char* tag = findTag(start);
    while (!isClosingTag(tag, name)) {
      if (tag == end_) throw SpdParseError::unterminated("</" + std::string(name) + ">", pos());
      tag = findTag(tag + 1);
    }
    next_ = tag + name.size() + 3;
    return {start, tag};
  }

 private:
  static bool isWhitespace(char byte) {
    constexpr std::uint64_t set = 1U << '\t' | 1U << '\n' | 1U << '\r' | std::uint64_t{1} << ' ';
    const auto value = static_cast<unsigned char>(byte);
    return value <= ' ' && (set >> value & 1) != 0;
  }

  /// The first place from `at` on where a byte is looked for, or the end.
  template<typename IsWanted, typename WantedIn>
  const char* scan(const char* at, IsWanted isWanted, WantedIn wantedIn) const {
    for (; end_ - at >= ByteWord::size; at += ByteWord::size) {
      const auto mask = wantedIn(ByteWord(at));
      if (mask != 0) return at + ByteWord::firstOf(mask);
    }
    while (at != end_ && !isWanted(*at))
      ++at;
    return at;
  }

  const char* findTag(const char* at) const {
    return scan(
        at, [](char byte) { return byte == '<'; }, [](ByteWord word) { return word.find('<'); });
  }

  bool isClosingTag(const char* at, std::string_view name) const {
    if (static_cast<std::size_t>(end_ - at) < name.size() + 3) return false;
    return at[0] == '<' && at[1] == '/' && at[2 + name.size()] == '>' &&
           std::memcmp(at + 2, name.data(), name.size()) == 0;
  }

  const char* begin_;
  const char* next_;
  const char* end_;
};

}  // namespace tamboro
