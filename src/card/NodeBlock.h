#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "card/SpdNode.h"

namespace tamboro {

/// The storage behind nodes: one counted allocation that they point into. There are two kinds.
///
/// A file's block holds the text and every node of a parsed file, and never changes. Its nodes point into the block
/// that they stand in and are not counted, so the block goes with the last node outside and needs no walk. One node
/// outside keeps all of it.
///
/// An element's block holds one element that the program made or changed. Its children are counted like nodes anywhere
/// else, and it changes in place while one node alone points to it.
class NodeBlock {
 public:
  using Fields = SpdNode::Fields;
  static constexpr std::uint32_t absent = SpdNode::absent;

  /// A container's children. Offsets are from the block's start.
  struct ChildList {
    std::uint32_t nodes = 0;
    std::uint32_t count = 0;
    std::uint32_t capacity = 0;
    std::uint32_t closing = 0;
    std::uint32_t closingLength = absent;
  };

  NodeBlock(const NodeBlock&) = delete;
  NodeBlock& operator=(const NodeBlock&) = delete;

  static void retain(NodeBlock* block, std::size_t count = 1) noexcept;
  static void release(NodeBlock* block) noexcept;

  const char* bytesAt(std::uint32_t offset) const { return reinterpret_cast<const char*>(this) + offset; }
  char* bytesAt(std::uint32_t offset) { return reinterpret_cast<char*>(this) + offset; }
  const ChildList& listAt(std::uint32_t offset) const { return *reinterpret_cast<const ChildList*>(bytesAt(offset)); }
  const SpdNode* nodesAt(std::uint32_t offset) const { return reinterpret_cast<const SpdNode*>(bytesAt(offset)); }

  /// A file's block. Here offsets of text count from the start of the texts, which stand one behind the other; a
  /// container's `body` is the index of its list, and a list's `nodes` the index of its first child.
  static SpdNode makeFile(std::array<std::string_view, 2> texts, std::span<const ChildList> lists,
                          std::span<const Fields> nodes, const Fields& root);
  /// These three make element's blocks; their texts must be well-formed.
  static SpdNode makeLeaf(std::optional<std::string_view> leading, std::string_view name, std::string_view text);
  static SpdNode makeSelfClosing(std::string_view name);
  static SpdNode makeContainer(std::optional<std::string_view> leading, std::string_view name,
                               std::optional<std::string_view> closing, std::size_t capacity);

  /// Whether `node` is a container that alone points to its own element's block with room for `count` children.
  static bool isEditable(const SpdNode& node, std::size_t count) noexcept;
  /// These want an editable node with room.
  static SpdNode& childAt(SpdNode& node, std::size_t index) noexcept;
  static void append(SpdNode& node, SpdNode child) noexcept;
  static void append(SpdNode& node, std::span<const SpdNode> children) noexcept;

 private:
  NodeBlock() noexcept = default;
  ~NodeBlock() = default;

  /// A block of `size` bytes, this header included, counted once.
  static NodeBlock* allocate(std::size_t size);
  static void drop(NodeBlock* block, std::size_t count, NodeBlock*& dead) noexcept;
  void dropChildren(NodeBlock*& dead) const noexcept;
  ChildList& ownList() { return *reinterpret_cast<ChildList*>(bytesAt(ownList_)); }
  SpdNode* nodesAt(std::uint32_t offset) { return reinterpret_cast<SpdNode*>(bytesAt(offset)); }

  std::atomic<std::size_t> references_{1};
  NodeBlock* nextDead_ = nullptr;
  std::uint32_t ownList_ = 0;  // an element's list of counted children; 0 in a file's block and in a leaf's
};

}  // namespace tamboro
