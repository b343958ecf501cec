#include "library/store/RolandLibrary_edit.h"

namespace tamboro {

/// A tag's undo rewrites only its name: the other tags may have been renamed since.
void RolandLibrary::setTagName(int tag, const std::string& name) {
  const auto before = change<TagListRecord>({}, [&](TagList& list) { list.setTagName(tag, name); });
  if (!before) return;
  undoManager_.registerUndo([this, tag, name = before->tagName(tag).value_or(std::string()), card = lives_.card()] {
    if (lives_.card() == card) setTagName(tag, name);
  });
  undoManager_.setActionName(QStringLiteral("Tag Change"));
  Q_EMIT published(Property::tagList);
}

}  // namespace tamboro
