#pragma once

#include <string>
#include <vector>

#include "card/SpdDocument.h"

namespace tamboro::naive {

/// The format once more, written for plainness: recursive, with strings of its own. Failures are thrown as the error's
/// text in a std::string.
struct Element {
  std::string name;
  SpdNode::Content content = SpdNode::Content::leaf;
  std::string leading;
  std::string text;
  std::string closing;
  std::vector<Element> children;
};

struct Document {
  Element root;
  std::string trailing;

  static Document parse(const std::string& bytes);
  std::string serialize() const;
};

std::string decoded(const std::string& bytes);
/// Whether the two trees are the same, whitespace included.
bool equal(const Element& element, const SpdNode& node);

}  // namespace tamboro::naive
