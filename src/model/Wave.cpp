#include "model/Wave.h"

#include <cstdio>

namespace tamboro {

std::string bankFolder(std::int64_t bank) {
  char digits[32];
  const int length = std::snprintf(digits, sizeof digits, "%02lld", static_cast<long long>(bank));
  return {digits, static_cast<std::size_t>(length)};
}

std::string Wave::relativeAudioPath() const {
  if (const SpdNode* path = node.child(elements::wavePath)) {
    return path->content() == SpdNode::Content::leaf ? std::string(path->text()) : std::string();
  }
  return bankFolder(bank) + "/" + name() + ".wav";
}

SpdNode newWaveNode(std::string_view name, std::int64_t tag, std::string_view path) {
  SpdNode node = SpdNode::container(elements::waveRoot, {});
  elements::waveName.write(node, name);
  elements::waveTag.write(node, tag);
  for (const elements::IntegerLeaf& leaf :
       {elements::waveTempo, elements::waveBeat, elements::waveMeasure, elements::waveStart, elements::waveEnd}) {
    leaf.write(node, leaf.fallback);
  }
  node.setLeaf(elements::wavePath, path);
  return node;
}

}  // namespace tamboro
