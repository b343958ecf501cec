#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tamboro {

/// Why a file's bytes are no document. `text()` is what the user sees.
class SpdParseError : public std::runtime_error {
 public:
  enum class Kind { unexpectedByte, unterminated, empty, tooDeep };

  /// `expected` doesn't stand at byte offset `at`.
  static SpdParseError unexpectedByte(std::string_view expected, std::size_t at);
  /// `terminator` stands nowhere from byte offset `at` on.
  static SpdParseError unterminated(std::string_view terminator, std::size_t at);
  /// The file has no bytes at all.
  static SpdParseError empty();
  /// The element that begins at byte offset `at` lies deeper than `SpdDocument::maxDepth`.
  static SpdParseError tooDeep(std::size_t at);

  Kind kind() const noexcept { return kind_; }
  /// The whole of it: `what()` ends at a NUL, which an element's name can hold.
  const std::string& text() const noexcept { return text_; }
  /// The text that was looked for, UTF-8; nothing for `empty` and `tooDeep`.
  const std::string& expected() const noexcept { return expected_; }
  /// In bytes from the start of the file; 0 for `empty`.
  std::size_t offset() const noexcept { return offset_; }

 private:
  SpdParseError(Kind kind, std::string_view expected, std::size_t offset, const std::string& message);

  Kind kind_;
  std::string text_;
  std::string expected_;
  std::size_t offset_;
};

}  // namespace tamboro
