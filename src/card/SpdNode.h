#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tamboro {

class NodeBlock;

/// One element of an `.spd` document: a plain value. A copy takes a few nanoseconds whatever hangs below it, and no
/// change to it reaches the original, also when the two live on different threads.
///
/// Names, texts and whitespace are well-formed UTF-8; what comes in ill-formed becomes U+FFFD. Names are compared code
/// point by code point. Views, spans and pointers that a node gives out stay valid until that node is changed,
/// assigned to or destroyed. An element of 4 GiB throws std::length_error; beyond that and want of memory nothing
/// here fails.
class SpdNode {
 public:
  enum class Content : std::uint8_t { leaf, container, selfClosing };

  /// A leaf without name and text; what was moved from is one, too.
  SpdNode() noexcept = default;
  SpdNode(const SpdNode& other) noexcept;
  SpdNode(SpdNode&& other) noexcept;
  SpdNode& operator=(const SpdNode& other) noexcept;
  SpdNode& operator=(SpdNode&& other) noexcept;
  ~SpdNode();

  /// Nodes made here have no whitespace of their own: the writer lays them out. A name holds neither `/` nor `>`.
  static SpdNode leaf(std::string_view name, std::string_view text);
  static SpdNode container(std::string_view name, std::vector<SpdNode> children);
  static SpdNode selfClosing(std::string_view name);

  std::string_view name() const;
  Content content() const;
  /// Empty unless the node is a leaf.
  std::string_view text() const;
  /// In document order; empty unless the node is a container.
  std::span<const SpdNode> children() const;
  /// What stands in the file before this element's `<`; nothing if the writer computes it.
  std::optional<std::string_view> leadingWhitespace() const;
  /// What stands in the file before a container's closing tag; nothing if the writer computes it.
  std::optional<std::string_view> closingWhitespace() const;

  /// The first child of that name, or null.
  const SpdNode* child(std::string_view name) const;
  /// The `occurrence`-th child of that name, from 0, or null.
  const SpdNode* child(std::string_view name, std::size_t occurrence) const;
  std::vector<SpdNode> children(std::string_view name) const;
  std::size_t childCount(std::string_view name) const;
  /// The first child of that name as a decimal integer: a sign or none, then digits and nothing else. Everything else,
  /// also a value outside 64 bits, reads as `fallback`.
  std::int64_t intValue(std::string_view name, std::int64_t fallback) const;
  /// The text, UTF-8, stored as one code point a child in `prefix`0 ... `prefix`(count - 1). It ends at the first
  /// code that is 0 or no scalar value.
  std::string encodedName(std::string_view prefix, int count) const;

  /// Makes the first child of that name a leaf with that text, in its place, or appends one. A node that was no
  /// container becomes one and loses its text.
  void setLeaf(std::string_view name, std::string_view value);
  void setLeaf(std::string_view name, std::int64_t value);
  /// Puts `node`, with its own leading whitespace, in the place of the `occurrence`-th child of that name, from 0.
  /// Without such a child nothing changes.
  void replaceChild(std::string_view name, std::size_t occurrence, const SpdNode& node);
  /// The same for many at once, by occurrence, in one walk: one by one each would be counted from the first child.
  void replaceChildren(std::string_view name, const std::map<std::size_t, SpdNode>& byOccurrence);
  /// Stores the first `count` code points of `text`, then zeros: always `count` leaves.
  void setEncodedName(std::string_view text, std::string_view prefix, int count);

  /// By value, whitespace included; absent whitespace equals only absent. Quick where the two share their storage.
  friend bool operator==(const SpdNode& a, const SpdNode& b);

 private:
  friend class NodeBlock;
  static constexpr std::uint32_t absent = UINT32_MAX;

  /// Where in its block the node's bytes stand: offsets from the block's start, lengths in bytes. The leading
  /// whitespace, if there is any, ends one byte before the name: in a parsed file that byte is the `<`.
  struct Fields {
    NodeBlock* block = nullptr;
    std::uint32_t name = 0;
    std::uint32_t nameLength = 0;
    std::uint32_t leadingLength = absent;
    std::uint32_t body = 0;  // a leaf's text, a container's list of children
    std::uint32_t textLength = 0;
    Content content = Content::leaf;

    bool operator==(const Fields&) const = default;
  };

  explicit SpdNode(const Fields& fields) noexcept : fields_(fields) {}

  std::int64_t leafValue(std::int64_t fallback) const;
  std::size_t indexOf(std::string_view name, std::size_t occurrence) const;
  bool equalsBesidesChildren(const SpdNode& other) const;
  void makeEditable(std::size_t room);

  Fields fields_;
};

}  // namespace tamboro
