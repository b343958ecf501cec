#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/Elements.h"

namespace tamboro {

enum class LineEnds : std::uint8_t { lf, crlf, mixed };

/// Writes a parameter file as the instrument lays it out: one element a line, indented by tabs. Deliberately not the
/// program's own writer, so that a made card can show what that one would change.
class SpdText {
 public:
  explicit SpdText(LineEnds lineEnds) : lineEnds_(lineEnds) {}

  void open(std::string_view name);
  void close();
  void leaf(std::string_view name, std::string_view text);
  void leaf(std::string_view name, std::int64_t value);
  void leaf(const elements::IntegerLeaf& leaf, std::int64_t value) { this->leaf(leaf.name, value); }
  void selfClosing(std::string_view name);
  /// An ASCII text as one code per element; what doesn't fit is cut.
  void name(const elements::NameCells& cells, std::string_view text);

  const std::string& text() const { return text_; }

 private:
  void indent();
  void endLine();

  LineEnds lineEnds_;
  std::size_t lines_ = 0;
  std::vector<std::string> open_;
  std::string text_;
};

}  // namespace tamboro
