#pragma once

#include <string>
#include <string_view>

#include "card/SpdDocument.h"
#include "model/Wave.h"

namespace tamboro {

inline SpdNode tree(std::string_view bytes) {
  return SpdDocument::parse(bytes).root;
}

inline std::string bytesOf(const SpdNode& node) {
  return SpdDocument{node, LineSeparator::lf, {}}.serialize();
}

inline Wave wave(std::int64_t bank, std::int64_t fileNumber, std::string_view name, std::int64_t tag = 0) {
  return {bank, fileNumber, newWaveNode(name, tag, "")};
}

}  // namespace tamboro
