#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "card/SpdNode.h"

namespace tamboro {

enum class LineSeparator { lf, crlf };

/// One `.spd` file of the card: a plain value, cheap to copy like its nodes.
struct SpdDocument {
  /// Levels of elements that a file may nest, the root being the first. The instrument uses three.
  static constexpr std::size_t maxDepth = 1024;

  SpdNode root;
  /// The file's first line ending. Only whitespace that the writer has to compute uses it.
  LineSeparator lineSeparator = LineSeparator::lf;
  /// Raw bytes behind the root, never interpreted.
  std::string trailingBytes;

  /// Reads a file's bytes, which need not outlive the call. Throws `SpdParseError`; std::length_error where the tree
  /// would take 4 GiB. Time is linear in the file's size, whatever stands in it.
  static SpdDocument parse(std::string_view bytes);

  /// The file's bytes. Without an edit these are the parsed ones, except that whitespace directly behind the open tag
  /// of an element without child elements is gone and ill-formed UTF-8 has become U+FFFD.
  std::string serialize() const;
};

}  // namespace tamboro
