#include "model/TagList.h"

#include <utility>

namespace tamboro {
namespace {

const SpdNode* tagElement(const SpdNode& list, std::int64_t index) {
  return index < 0 ? nullptr : list.child(elements::tag, static_cast<std::size_t>(index));
}

}  // namespace

std::vector<Tag> TagList::tags() const {
  std::vector<Tag> result;
  int index = 0;
  for (SpdNode& tag : node.children(elements::tag))
    result.push_back({index++, std::move(tag)});
  return result;
}

int TagList::tagCount() const {
  return static_cast<int>(node.childCount(elements::tag));
}

std::optional<std::string> TagList::tagName(std::int64_t index) const {
  const SpdNode* tag = tagElement(node, index);
  if (tag == nullptr) return std::nullopt;
  return elements::tagName.read(*tag);
}

void TagList::setTagName(std::int64_t index, std::string_view text) {
  const SpdNode* tag = tagElement(node, index);
  if (tag == nullptr) return;
  SpdNode renamed = *tag;
  elements::tagName.write(renamed, text);
  node.replaceChild(elements::tag, static_cast<std::size_t>(index), renamed);
}

void TagList::applyTags(const std::vector<Tag>& tags) {
  std::map<std::size_t, SpdNode> byIndex;
  for (const Tag& tag : tags) {
    if (tag.index >= 0) byIndex.insert_or_assign(static_cast<std::size_t>(tag.index), tag.node);
  }
  node.replaceChildren(elements::tag, byIndex);
}

}  // namespace tamboro
