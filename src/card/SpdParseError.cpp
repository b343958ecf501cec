#include "card/SpdParseError.h"

#include "card/SpdDocument.h"

namespace tamboro {

SpdParseError::SpdParseError(Kind kind, std::string_view expected, std::size_t offset, const std::string& message)
    : std::runtime_error(message), kind_(kind), text_(message), expected_(expected), offset_(offset) {}

SpdParseError SpdParseError::unexpectedByte(std::string_view expected, std::size_t at) {
  return {Kind::unexpectedByte, expected, at,
          "Expected '" + std::string(expected) + "' at byte offset " + std::to_string(at)};
}

SpdParseError SpdParseError::unterminated(std::string_view terminator, std::size_t at) {
  return {
      Kind::unterminated, terminator, at,
      "Unterminated element, expected '" + std::string(terminator) + "' starting at byte offset " + std::to_string(at)};
}

SpdParseError SpdParseError::empty() {
  return {Kind::empty, {}, 0, "Empty document"};
}

SpdParseError SpdParseError::tooDeep(std::size_t at) {
  return {Kind::tooDeep,
          {},
          at,
          "Elements nested more than " + std::to_string(SpdDocument::maxDepth) + " deep at byte offset " +
              std::to_string(at)};
}

}  // namespace tamboro
