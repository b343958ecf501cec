#include <array>
#include <charconv>
#include <utility>

#include "card/NodeBlock.h"
#include "card/SpdNode.h"
#include "card/Utf8.h"

namespace tamboro {

namespace {

/// A number's shortest decimal form, with nothing on the heap.
class Decimal {
 public:
  explicit Decimal(std::int64_t value)
      : size_(static_cast<std::size_t>(std::to_chars(digits_.data(), digits_.data() + digits_.size(), value).ptr -
                                       digits_.data())) {}
  std::string_view text() const { return {digits_.data(), size_}; }

 private:
  std::array<char, 20> digits_{};
  std::size_t size_;
};

/// The names of a stored text's cells: the prefix and the cell's number.
class CellName {
 public:
  explicit CellName(std::string_view prefix) : name_(prefix), prefixSize_(prefix.size()) {}

  std::string_view of(int cell) {
    name_.resize(prefixSize_);
    if (cell >= 10) return name_.append(Decimal(cell).text());
    name_.push_back(static_cast<char>('0' + cell));  // most cells, and names are read by the thousand
    return name_;
  }

 private:
  std::string name_;
  std::size_t prefixSize_;
};

/// Calls `make` with the text itself or with its repaired form.
template<typename Make>
auto withWellFormed(std::string_view text, Make make) {
  return utf8::isWellFormed(text) ? make(text) : make(std::string_view(utf8::repaired(text)));
}

SpdNode makeLeaf(std::optional<std::string_view> leading, std::string_view name, std::string_view text) {
  return withWellFormed(text, [&](std::string_view good) { return NodeBlock::makeLeaf(leading, name, good); });
}

}  // namespace

SpdNode SpdNode::leaf(std::string_view name, std::string_view text) {
  return withWellFormed(name, [&](std::string_view good) { return makeLeaf(std::nullopt, good, text); });
}

SpdNode SpdNode::container(std::string_view name, std::vector<SpdNode> children) {
  SpdNode node = withWellFormed(name, [&](std::string_view good) {
    return NodeBlock::makeContainer(std::nullopt, good, std::nullopt, children.size());
  });
  for (SpdNode& child : children)
    NodeBlock::append(node, std::move(child));
  return node;
}

SpdNode SpdNode::selfClosing(std::string_view name) {
  return withWellFormed(name, [](std::string_view good) { return NodeBlock::makeSelfClosing(good); });
}

/// Makes this node a container whose list nobody else reads, with room for so many more children.
void SpdNode::makeEditable(std::size_t room) {
  const std::size_t count = children().size();
  if (NodeBlock::isEditable(*this, count + room)) return;
  // Room for half as many again keeps a series of appends linear.
  const std::size_t capacity = room == 0 ? count : count + count / 2 + room;
  SpdNode edited = NodeBlock::makeContainer(leadingWhitespace(), name(), closingWhitespace(), capacity);
  NodeBlock::append(edited, children());
  *this = std::move(edited);
}

void SpdNode::setLeaf(std::string_view name, std::string_view value) {
  // The new leaf is made before anything changes: `name` and `value` may be views into this node.
  const std::size_t index = indexOf(name, 0);
  if (index == children().size()) {
    SpdNode added = leaf(name, value);
    makeEditable(1);
    NodeBlock::append(*this, std::move(added));
    return;
  }
  const SpdNode& old = children()[index];
  if (old.content() == Content::leaf && old.text() == value) return;
  SpdNode changed = makeLeaf(old.leadingWhitespace(), old.name(), value);
  makeEditable(0);
  NodeBlock::childAt(*this, index) = std::move(changed);
}

void SpdNode::setLeaf(std::string_view name, std::int64_t value) {
  setLeaf(name, Decimal(value).text());
}

void SpdNode::replaceChild(std::string_view name, std::size_t occurrence, const SpdNode& node) {
  const std::size_t index = indexOf(name, occurrence);
  if (index == children().size()) return;
  SpdNode replacement = node;  // `node` may be a child of this one, or this one itself
  makeEditable(0);
  NodeBlock::childAt(*this, index) = std::move(replacement);
}

void SpdNode::replaceChildren(std::string_view name, const std::map<std::size_t, SpdNode>& byOccurrence) {
  const std::string own(name);  // `name` may be a view into this node
  auto next = byOccurrence.begin();
  if (next == byOccurrence.end() || child(own, next->first) == nullptr) return;
  makeEditable(0);
  std::size_t occurrence = 0;
  for (std::size_t index = 0; index < children().size() && next != byOccurrence.end(); ++index) {
    SpdNode& place = NodeBlock::childAt(*this, index);
    if (place.name() != own || occurrence++ != next->first) continue;
    place = next->second;
    ++next;
  }
}

std::string SpdNode::encodedName(std::string_view prefix, int count) const {
  const std::span<const SpdNode> nodes = children();
  std::string text;
  CellName name(prefix);
  bool isRun = true;  // so far the cells are the first children, and none before a cell can have its name
  for (int cell = 0; cell < count; ++cell) {
    const auto place = static_cast<std::size_t>(cell);
    const std::string_view cellName = name.of(cell);
    isRun = isRun && place < nodes.size() && nodes[place].name() == cellName;
    const std::int64_t code = isRun ? nodes[place].leafValue(0) : intValue(cellName, 0);
    if (code == 0 || !utf8::isScalarValue(code)) break;
    if (code < 0x80) {
      text.push_back(static_cast<char>(code));
    } else {
      utf8::append(text, static_cast<char32_t>(code));
    }
  }
  return text;
}

void SpdNode::setEncodedName(std::string_view text, std::string_view prefix, int count) {
  const std::string own(text);  // `text` may be a view into this node
  std::string_view rest = own;
  CellName name(prefix);
  for (int cell = 0; cell < count; ++cell) {
    char32_t code = 0;
    if (!rest.empty()) {
      const utf8::Decoded next = utf8::decode(rest);
      code = next.codePoint;
      rest.remove_prefix(next.length);
    }
    setLeaf(name.of(cell), static_cast<std::int64_t>(code));
  }
}

}  // namespace tamboro
