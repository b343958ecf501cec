#include "card/SpdNode.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "card/NodeBlock.h"

namespace tamboro {

SpdNode::SpdNode(const SpdNode& other) noexcept : fields_(other.fields_) {
  NodeBlock::retain(fields_.block);
}

SpdNode::SpdNode(SpdNode&& other) noexcept : fields_(std::exchange(other.fields_, Fields())) {}

SpdNode& SpdNode::operator=(const SpdNode& other) noexcept {
  SpdNode copy(other);
  std::swap(fields_, copy.fields_);
  return *this;
}

SpdNode& SpdNode::operator=(SpdNode&& other) noexcept {
  SpdNode taken(std::move(other));
  std::swap(fields_, taken.fields_);
  return *this;
}

SpdNode::~SpdNode() {
  if (fields_.block != nullptr) NodeBlock::release(fields_.block);
}

std::string_view SpdNode::name() const {
  if (fields_.block == nullptr) return {};
  return {fields_.block->bytesAt(fields_.name), fields_.nameLength};
}

SpdNode::Content SpdNode::content() const {
  return fields_.content;
}

std::string_view SpdNode::text() const {
  if (fields_.block == nullptr || fields_.content != Content::leaf) return {};
  return {fields_.block->bytesAt(fields_.body), fields_.textLength};
}

std::span<const SpdNode> SpdNode::children() const {
  if (fields_.content != Content::container) return {};
  const NodeBlock& block = *fields_.block;
  const NodeBlock::ChildList& list = block.listAt(fields_.body);
  return {block.nodesAt(list.nodes), list.count};
}

std::optional<std::string_view> SpdNode::leadingWhitespace() const {
  if (fields_.leadingLength == absent) return std::nullopt;
  return std::string_view(fields_.block->bytesAt(fields_.name - 1 - fields_.leadingLength), fields_.leadingLength);
}

std::optional<std::string_view> SpdNode::closingWhitespace() const {
  if (fields_.content != Content::container) return std::nullopt;
  const NodeBlock::ChildList& list = fields_.block->listAt(fields_.body);
  if (list.closingLength == absent) return std::nullopt;
  return std::string_view(fields_.block->bytesAt(list.closing), list.closingLength);
}

std::size_t SpdNode::indexOf(std::string_view name, std::size_t occurrence) const {
  const std::span<const SpdNode> nodes = children();
  std::size_t index = 0;
  for (; index < nodes.size(); ++index) {
    // Most names differ in length or first byte already, which spares a call for each.
    const std::string_view other = nodes[index].name();
    if (other.size() != name.size() || (!name.empty() && other.front() != name.front())) continue;
    if (other == name && occurrence-- == 0) break;
  }
  return index;
}

const SpdNode* SpdNode::child(std::string_view name) const {
  return child(name, 0);
}

const SpdNode* SpdNode::child(std::string_view name, std::size_t occurrence) const {
  const std::size_t index = indexOf(name, occurrence);
  return index < children().size() ? &children()[index] : nullptr;
}

std::vector<SpdNode> SpdNode::children(std::string_view name) const {
  std::vector<SpdNode> found;
  for (const SpdNode& node : children()) {
    if (node.name() == name) found.push_back(node);
  }
  return found;
}

std::size_t SpdNode::childCount(std::string_view name) const {
  const auto nodes = children();
  return static_cast<std::size_t>(
      std::count_if(nodes.begin(), nodes.end(), [&](const SpdNode& node) { return node.name() == name; }));
}

std::int64_t SpdNode::intValue(std::string_view name, std::int64_t fallback) const {
  const SpdNode* const node = child(name);
  return node == nullptr ? fallback : node->leafValue(fallback);
}

std::int64_t SpdNode::leafValue(std::int64_t fallback) const {
  if (content() != Content::leaf) return fallback;
  std::string_view digits = text();
  if (digits.starts_with('+')) {
    digits.remove_prefix(1);
    if (digits.starts_with('-')) return fallback;
  }
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return error == std::errc() && end == digits.data() + digits.size() ? value : fallback;
}

bool SpdNode::equalsBesidesChildren(const SpdNode& other) const {
  return content() == other.content() && children().size() == other.children().size() && text() == other.text() &&
         name() == other.name() && leadingWhitespace() == other.leadingWhitespace() &&
         closingWhitespace() == other.closingWhitespace();
}

bool operator==(const SpdNode& a, const SpdNode& b) {
  // Equal fields mean one storage. A heap-held list of what is left instead of recursion: a tree may be deeper than
  // the stack.
  if (a.fields_ == b.fields_) return true;
  if (!a.equalsBesidesChildren(b)) return false;
  std::vector<std::pair<const SpdNode*, const SpdNode*>> open{{&a, &b}};
  while (!open.empty()) {
    const auto left = open.back().first->children();
    const auto right = open.back().second->children();
    open.pop_back();
    for (std::size_t i = 0; i < left.size(); ++i) {
      if (left[i].fields_ == right[i].fields_) continue;
      if (!left[i].equalsBesidesChildren(right[i])) return false;
      if (!left[i].children().empty()) open.emplace_back(&left[i], &right[i]);
    }
  }
  return true;
}

}  // namespace tamboro
