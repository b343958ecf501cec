#pragma once

#include <unicode/unistr.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "card/SpdDocument.h"

/// The format once more, written for plainness: recursive, with strings of its own. Failures are thrown as the error's
/// text in a std::string.
namespace tamboro::naive {

using Content = SpdNode::Content;

struct Element {
  std::string name;
  Content content = Content::leaf;
  std::string leading, text, closing;
  std::vector<Element> children;
};

/// By maximal subparts, which is how ICU replaces what is ill-formed.
inline std::string decoded(const std::string& bytes) {
  std::string result;
  return icu::UnicodeString::fromUTF8(bytes).toUTF8String(result);
}

struct Parser {
  const std::string& bytes;
  std::size_t pos = 0;

  bool at(const std::string& text) const { return bytes.compare(pos, text.size(), text) == 0; }
  void expect(const std::string& text) {
    if (!at(text)) throw "Expected '" + text + "' at byte offset " + std::to_string(pos);
    pos += text.size();
  }
  std::string upTo(std::size_t end) {
    const std::size_t start = std::exchange(pos, end);
    return bytes.substr(start, end - start);
  }
  std::string whitespace() { return upTo(std::min(bytes.find_first_not_of("\t\n\r ", pos), bytes.size())); }
  std::string until(std::size_t end, const std::string& terminator) {
    if (end == std::string::npos)
      throw "Unterminated element, expected '" + terminator + "' starting at byte offset " + std::to_string(pos);
    return decoded(upTo(end));
  }

  Element element(const std::string& leading, std::size_t depth) {
    const std::size_t start = pos;
    expect("<");
    if (depth > SpdDocument::maxDepth)
      throw "Elements nested more than 1024 deep at byte offset " + std::to_string(start);
    Element result{until(bytes.find_first_of("/>", pos), ">"), Content::selfClosing, leading, {}, {}, {}};
    if (at("/")) return expect("/>"), result;
    expect(">");
    const std::string tag = "</" + result.name + ">";
    std::string gap = whitespace();
    if (at(tag) || !at("<")) {
      result.content = Content::leaf;
      result.text = until(bytes.find(tag, pos), tag);
      return expect(tag), result;
    }
    result.content = Content::container;
    for (; !at(tag); gap = whitespace())
      result.children.push_back(element(gap, depth + 1));
    result.closing = gap;
    return expect(tag), result;
  }
};

inline std::string write(const Element& element) {
  if (element.content == Content::selfClosing) return "<" + element.name + "/>";
  std::string inner = element.text;
  for (const Element& child : element.children)
    inner += child.leading + write(child);
  return "<" + element.name + ">" + inner + element.closing + "</" + element.name + ">";
}

struct Document {
  Element root;
  std::string trailing;

  static Document parse(const std::string& bytes) {
    if (bytes.empty()) throw std::string("Empty document");
    Parser parser{bytes};
    Element root = parser.element("", 1);
    return {std::move(root), bytes.substr(parser.pos)};
  }
  std::string serialize() const { return write(root) + trailing; }
};

inline bool equal(const Element& element, const SpdNode& node) {
  const bool container = element.content == Content::container;
  return element.name == node.name() && element.content == node.content() && element.text == node.text() &&
         node.leadingWhitespace() == element.leading && node.closingWhitespace().has_value() == container &&
         node.closingWhitespace().value_or("") == element.closing &&
         std::equal(element.children.begin(), element.children.end(), node.children().begin(), node.children().end(),
                    equal);
}

}  // namespace tamboro::naive
