#include <vector>

#include "card/SpdDocument.h"

namespace tamboro {

namespace {

/// Puts a tree out as bytes. What is open is held on the heap instead of the stack: a tree may be deeper.
class SpdWriter {
 public:
  SpdWriter(LineSeparator separator, std::string& output)
      : separator_(separator == LineSeparator::crlf ? "\r\n" : "\n"), output_(output) {}

  void write(const SpdNode& root) {
    begin(root);
    while (!open_.empty()) {
      Frame& frame = open_.back();
      if (frame.rest.empty()) {
        const SpdNode& node = *frame.node;
        open_.pop_back();
        putGap(node.closingWhitespace());
        putClosingTag(node);
      } else {
        const SpdNode& child = frame.rest.front();
        frame.rest = frame.rest.subspan(1);
        putGap(child.leadingWhitespace());
        begin(child);
      }
    }
  }

 private:
  struct Frame {
    const SpdNode* node;
    std::span<const SpdNode> rest;
  };

  /// Puts a whole element out, or of a container the open tag.
  void begin(const SpdNode& node) {
    output_.append(1, '<').append(node.name());
    switch (node.content()) {
      case SpdNode::Content::selfClosing:
        output_.append("/>");
        break;
      case SpdNode::Content::leaf:
        output_.append(1, '>').append(node.text());
        putClosingTag(node);
        break;
      case SpdNode::Content::container:
        output_.append(1, '>');
        open_.push_back({&node, node.children()});
        break;
    }
  }

  void putClosingTag(const SpdNode& node) { output_.append("</").append(node.name()).append(1, '>'); }

  void putGap(std::optional<std::string_view> gap) {
    if (gap) {
      output_.append(*gap);
    } else {
      output_.append(separator_).append(open_.size(), '\t');
    }
  }

  std::string_view separator_;
  std::string& output_;
  std::vector<Frame> open_;
};

}  // namespace

std::string SpdDocument::serialize() const {
  std::string bytes;
  SpdWriter(lineSeparator, bytes).write(root);
  return bytes.append(trailingBytes);
}

}  // namespace tamboro
