#include <algorithm>
#include <array>
#include <memory_resource>
#include <stdexcept>
#include <utility>
#include <vector>

#include "card/ByteScanner.h"
#include "card/NodeBlock.h"
#include "card/SpdDocument.h"
#include "card/SpdParseError.h"
#include "card/Utf8.h"

namespace tamboro {

namespace {

using Content = SpdNode::Content;
using Fields = NodeBlock::Fields;
using ChildList = NodeBlock::ChildList;

/// What an element of the instrument's files takes, gap included; it only spares the lists most of their growing.
constexpr std::size_t typicalElement = 22;

/// In bytes, on the stack: a sample's file needs no more, and what doesn't fit goes to the heap.
constexpr std::size_t scratchSize = 12'288;

std::uint32_t narrow(std::size_t value) {
  return static_cast<std::uint32_t>(value);
}

LineSeparator firstLineSeparator(std::string_view bytes) {
  const std::size_t end = bytes.find('\n');
  const bool crlf = end != std::string_view::npos && end > 0 && bytes[end - 1] == '\r';
  return crlf ? LineSeparator::crlf : LineSeparator::lf;
}

/// One parse. It collects the nodes in lists of its own, in the form that `NodeBlock::makeFile` takes.
class SpdParser {
 public:
  explicit SpdParser(std::string_view bytes);

  SpdDocument parse();

 private:
  /// A part of the text that the block will hold, from the text's start.
  struct Slice {
    std::size_t offset;
    std::size_t length;
  };
  struct OpenContainer {
    Slice name;
    std::size_t leading;
    std::size_t firstChild;  // in finished_
  };

  bool parseElement(ByteScanner& scanner);
  void finishContainer(std::size_t end);
  void finish(Content content, Slice name, std::size_t leading, Slice body);
  std::string_view textOf(Slice slice) const;
  std::size_t offsetOf(std::string_view part) const { return static_cast<std::size_t>(part.data() - bytes_.data()); }
  Slice keep(std::string_view part, std::size_t before = 0);
  Slice repair(std::string_view part, std::size_t before);

  std::array<std::byte, scratchSize> scratch_;
  std::pmr::monotonic_buffer_resource memory_;
  std::string_view bytes_;
  bool wellFormed_;       // the file as a whole
  std::size_t gap_ = 0;   // the length of the whitespace in front of the cursor
  std::string repaired_;  // stands behind the file's bytes in the block
  std::pmr::vector<OpenContainer> open_{&memory_};
  std::pmr::vector<Fields> finished_{&memory_};  // children of the open containers
  std::pmr::vector<Fields> nodes_{&memory_};     // children of the finished ones
  std::pmr::vector<ChildList> lists_{&memory_};
};

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): to fill scratch_ would cost as much as a small parse
SpdParser::SpdParser(std::string_view bytes)
    : memory_(scratch_.data(), scratch_.size()), bytes_(bytes), wellFormed_(utf8::isWellFormed(bytes)) {
  open_.reserve(4);
  finished_.reserve(64);
  nodes_.reserve(std::clamp<std::size_t>(bytes.size() / typicalElement, 64, 1U << 16U));
  lists_.reserve(16);
}

SpdDocument SpdParser::parse() {
  // A local that only inlined functions see: its cursor stays in a register, which makes a third of the speed.
  ByteScanner scanner(bytes_);
  do {
    if (!open_.empty() && scanner.peekClosingTag(textOf(open_.back().name))) {
      scanner.skipClosingTag(open_.back().name.length);
      finishContainer(scanner.pos());
    } else if (!parseElement(scanner)) {
      continue;
    }
    // What follows the root is not the tree's.
    if (!open_.empty()) gap_ = scanner.readWhitespace().size();
  } while (!open_.empty());
  // Only a name or text that was repaired stands behind the whole of the file.
  const std::string_view text = repaired_.empty() ? bytes_.substr(0, scanner.pos()) : bytes_;
  return {NodeBlock::makeFile({text, repaired_}, lists_, nodes_, finished_.front()), firstLineSeparator(bytes_),
          std::string(bytes_.substr(scanner.pos()))};
}

/// Reads an element without child elements and returns true, or of a container the open tag.
inline bool SpdParser::parseElement(ByteScanner& scanner) {
  const std::size_t leading = gap_;
  const std::size_t start = scanner.pos();
  scanner.expect('<');
  if (open_.size() == SpdDocument::maxDepth) throw SpdParseError::tooDeep(start);
  // A node's leading whitespace stands before its name: where the name moves, it moves along.
  const Slice name = keep(scanner.readName(), leading + 1);
  if (scanner.peek('/')) {
    scanner.expectSelfClosing();
    finish(Content::selfClosing, name, leading, {});
    return true;
  }
  scanner.expect('>');
  const std::size_t first = scanner.readWhitespace().size();
  if (scanner.peek('<') && !scanner.peekClosingTag(textOf(name))) {
    open_.push_back({name, leading, finished_.size()});
    gap_ = first;
    return false;
  }
  finish(Content::leaf, name, leading, keep(scanner.readPastClosingTag(textOf(name))));
  return true;
}

void SpdParser::finishContainer(std::size_t end) {
  const OpenContainer container = open_.back();
  open_.pop_back();
  ChildList& list = lists_.emplace_back();
  list.nodes = narrow(nodes_.size());
  list.count = list.capacity = narrow(finished_.size() - container.firstChild);
  list.closing = narrow(end - container.name.length - 3 - gap_);
  list.closingLength = narrow(gap_);
  nodes_.insert(nodes_.end(), finished_.begin() + static_cast<std::ptrdiff_t>(container.firstChild), finished_.end());
  finished_.resize(container.firstChild);
  finish(Content::container, container.name, container.leading, {lists_.size() - 1, 0});
}

inline void SpdParser::finish(Content content, Slice name, std::size_t leading, Slice body) {
  // Filled in its place: a copy of fields that have just been written one by one stalls the processor.
  Fields& fields = finished_.emplace_back();
  fields.name = narrow(name.offset);
  fields.nameLength = narrow(name.length);
  fields.leadingLength = narrow(leading);
  fields.body = narrow(body.offset);
  fields.textLength = narrow(body.length);
  fields.content = content;
}

std::string_view SpdParser::textOf(Slice slice) const {
  if (slice.offset < bytes_.size()) return {bytes_.data() + slice.offset, slice.length};
  return {repaired_.data() + (slice.offset - bytes_.size()), slice.length};
}

/// Where a part of the file will stand as text; the `before` bytes in front of it stay there.
SpdParser::Slice SpdParser::keep(std::string_view part, std::size_t before) {
  if (wellFormed_ || utf8::isWellFormed(part)) return {offsetOf(part), part.size()};
  return repair(part, before);
}

SpdParser::Slice SpdParser::repair(std::string_view part, std::size_t before) {
  const std::string text = utf8::repaired(part);
  repaired_.append(bytes_.substr(offsetOf(part) - before, before));
  const std::size_t offset = bytes_.size() + repaired_.size();
  repaired_.append(text);
  if (offset + text.size() >= NodeBlock::absent) throw std::length_error("An element of 4 GiB");
  return {offset, text.size()};
}

}  // namespace

SpdDocument SpdDocument::parse(std::string_view bytes) {
  if (bytes.empty()) throw SpdParseError::empty();
  if (bytes.size() >= NodeBlock::absent) throw std::length_error("A file of 4 GiB");
  return SpdParser(bytes).parse();
}

}  // namespace tamboro
