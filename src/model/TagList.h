#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "card/SpdNode.h"
#include "model/Elements.h"

namespace tamboro {

/// A copy of the `TagPrm` element at position `index` of the tag list.
struct Tag {
  int index;
  SpdNode node;

  std::string name() const { return elements::tagName.read(node); }

  friend bool operator==(const Tag&, const Tag&) = default;
};

/// The card's fixed list of tags, a typed view over `SYSTEM/tag_list.spd`. Samples refer to a tag by its position.
struct TagList {
  SpdNode node;
  bool isDirty = false;  // `node` holds changes that are not on the card

  std::vector<Tag> tags() const;
  int tagCount() const;
  std::optional<std::string> tagName(std::int64_t index) const;

  /// Both leave `isDirty` alone and skip positions that don't exist.
  void setTagName(std::int64_t index, std::string_view text);
  void applyTags(const std::vector<Tag>& tags);

  friend bool operator==(const TagList&, const TagList&) = default;
};

}  // namespace tamboro
