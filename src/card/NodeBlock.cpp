#include "card/NodeBlock.h"

#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>

namespace tamboro {

namespace {

constexpr std::size_t listOffset = sizeof(NodeBlock);

constexpr std::size_t aligned(std::size_t offset) {
  return (offset + alignof(SpdNode) - 1) / alignof(SpdNode) * alignof(SpdNode);
}

std::uint32_t narrow(std::size_t offset) {
  return static_cast<std::uint32_t>(offset);
}

std::size_t sizeOf(std::optional<std::string_view> text) {
  return text ? text->size() : 0;
}

std::uint32_t lengthOf(std::optional<std::string_view> text) {
  return text ? narrow(text->size()) : NodeBlock::absent;
}

/// Copies texts one behind the other into a block.
class TextCursor {
 public:
  TextCursor(NodeBlock* block, std::size_t offset) : block_(block), offset_(narrow(offset)) {}

  std::uint32_t put(std::string_view text) {
    const std::uint32_t start = offset_;
    if (!text.empty()) std::memcpy(block_->bytesAt(start), text.data(), text.size());
    offset_ += narrow(text.size());
    return start;
  }

  NodeBlock::Fields putElement(std::optional<std::string_view> leading, std::string_view name) {
    if (leading) put(*leading);
    put("<");
    NodeBlock::Fields fields;
    fields.block = block_;
    fields.name = put(name);
    fields.nameLength = narrow(name.size());
    fields.leadingLength = lengthOf(leading);
    return fields;
  }

 private:
  NodeBlock* block_;
  std::uint32_t offset_;
};

}  // namespace

NodeBlock* NodeBlock::allocate(std::size_t size) {
  // The largest offset stands for "absent".
  if (size >= absent) throw std::length_error("An element of 4 GiB");
  return new (::operator new(size)) NodeBlock;
}

void NodeBlock::retain(NodeBlock* block, std::size_t count) noexcept {
  if (block != nullptr) block->references_.fetch_add(count, std::memory_order_relaxed);
}

void NodeBlock::drop(NodeBlock* block, std::size_t count, NodeBlock*& dead) noexcept {
  if (block == nullptr || block->references_.fetch_sub(count, std::memory_order_acq_rel) != count) return;
  block->nextDead_ = dead;
  dead = block;
}

void NodeBlock::dropChildren(NodeBlock*& dead) const noexcept {
  if (ownList_ == 0) return;
  const ChildList& list = listAt(ownList_);
  const SpdNode* const nodes = nodesAt(list.nodes);
  // Neighbours mostly come from one block, and one subtraction then serves them all.
  for (std::uint32_t first = 0, last = 0; first < list.count; first = last) {
    NodeBlock* const block = nodes[first].fields_.block;
    while (last < list.count && nodes[last].fields_.block == block)
      ++last;
    drop(block, last - first, dead);
  }
}

void NodeBlock::release(NodeBlock* block) noexcept {
  // A chain instead of recursion: a tree may be deeper than the stack.
  NodeBlock* dead = nullptr;
  drop(block, 1, dead);
  while (dead != nullptr) {
    NodeBlock* const next = dead;
    dead = next->nextDead_;
    next->dropChildren(dead);
    next->~NodeBlock();
    ::operator delete(next);
  }
}

SpdNode NodeBlock::makeFile(std::array<std::string_view, 2> texts, std::span<const ChildList> lists,
                            std::span<const Fields> nodes, const Fields& root) {
  const std::size_t nodesOffset = aligned(listOffset + lists.size_bytes());
  const std::size_t textOffset = nodesOffset + nodes.size() * sizeof(SpdNode);
  NodeBlock* const block = allocate(textOffset + texts[0].size() + texts[1].size());
  TextCursor cursor(block, textOffset);
  for (const std::string_view text : texts)
    cursor.put(text);

  auto* list = reinterpret_cast<ChildList*>(block->bytesAt(narrow(listOffset)));
  for (const ChildList& from : lists) {
    new (list) ChildList(from);
    list->nodes = narrow(nodesOffset + from.nodes * sizeof(SpdNode));
    list->closing += narrow(textOffset);
    ++list;
  }
  const auto settle = [&](Fields& fields) {
    const bool container = fields.content == SpdNode::Content::container;
    fields.block = block;
    fields.name += narrow(textOffset);
    fields.body = narrow(container ? listOffset + fields.body * sizeof(ChildList) : textOffset + fields.body);
  };
  SpdNode* node = block->nodesAt(narrow(nodesOffset));
  for (const Fields& from : nodes)
    settle((new (node++) SpdNode(from))->fields_);
  Fields top = root;
  settle(top);
  return SpdNode(top);
}

SpdNode NodeBlock::makeLeaf(std::optional<std::string_view> leading, std::string_view name, std::string_view text) {
  NodeBlock* const block = allocate(sizeof(NodeBlock) + sizeOf(leading) + 1 + name.size() + text.size());
  TextCursor cursor(block, sizeof(NodeBlock));
  Fields fields = cursor.putElement(leading, name);
  fields.body = cursor.put(text);
  fields.textLength = narrow(text.size());
  return SpdNode(fields);
}

SpdNode NodeBlock::makeSelfClosing(std::string_view name) {
  SpdNode node = makeLeaf(std::nullopt, name, {});
  node.fields_.content = SpdNode::Content::selfClosing;
  return node;
}

SpdNode NodeBlock::makeContainer(std::optional<std::string_view> leading, std::string_view name,
                                 std::optional<std::string_view> closing, std::size_t capacity) {
  constexpr std::size_t nodesOffset = aligned(listOffset + sizeof(ChildList));
  const std::size_t textOffset = nodesOffset + capacity * sizeof(SpdNode);
  NodeBlock* const block = allocate(textOffset + sizeOf(leading) + 1 + name.size() + sizeOf(closing));
  TextCursor cursor(block, textOffset);
  Fields fields = cursor.putElement(leading, name);
  fields.content = SpdNode::Content::container;
  fields.body = narrow(listOffset);
  auto* const list = new (block->bytesAt(fields.body)) ChildList;
  list->nodes = narrow(nodesOffset);
  list->capacity = narrow(capacity);
  list->closing = cursor.put(closing.value_or(std::string_view()));
  list->closingLength = lengthOf(closing);
  block->ownList_ = fields.body;
  return SpdNode(fields);
}

bool NodeBlock::isEditable(const SpdNode& node, std::size_t count) noexcept {
  const Fields& fields = node.fields_;
  if (fields.content != SpdNode::Content::container || fields.block->ownList_ == 0) return false;
  // Acquire: what another thread's copy read before it went has to lie before what is written now.
  return fields.block->references_.load(std::memory_order_acquire) == 1 && fields.block->ownList().capacity >= count;
}

SpdNode& NodeBlock::childAt(SpdNode& node, std::size_t index) noexcept {
  NodeBlock* const block = node.fields_.block;
  return block->nodesAt(block->ownList().nodes)[index];
}

void NodeBlock::append(SpdNode& node, SpdNode child) noexcept {
  ChildList& list = node.fields_.block->ownList();
  new (&childAt(node, list.count)) SpdNode(std::move(child));
  ++list.count;
}

void NodeBlock::append(SpdNode& node, std::span<const SpdNode> children) noexcept {
  ChildList& list = node.fields_.block->ownList();
  SpdNode* place = &childAt(node, list.count);
  for (auto first = children.begin(), last = first; first != children.end(); first = last) {
    NodeBlock* const block = first->fields_.block;
    for (; last != children.end() && last->fields_.block == block; ++last)
      new (place++) SpdNode(last->fields_);
    retain(block, static_cast<std::size_t>(last - first));
  }
  list.count += narrow(children.size());
}

}  // namespace tamboro
