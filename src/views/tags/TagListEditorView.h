#pragma once

#include "library/store/RolandLibrary.h"
#include "views/controls/Sheet.h"

namespace tamboro {

/// The sheet in which the card's tags are renamed. There is nothing to cancel: each change goes to the store as it is
/// typed.
class TagListEditorView : public Sheet {
  Q_OBJECT

 public:
  TagListEditorView(RolandLibrary& store, QWidget* parent);
};

}  // namespace tamboro
