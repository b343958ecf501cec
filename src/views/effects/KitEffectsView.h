#pragma once

#include <QWidget>

#include "library/store/RolandLibrary.h"

namespace tamboro {

class DisclosureGroup;
class FXUnitView;

/// A kit's two effect units in a folding section, closed at first and after a change of kit.
class KitEffectsView : public QWidget {
  Q_OBJECT

 public:
  explicit KitEffectsView(RolandLibrary& store, QWidget* parent = nullptr);

  void setKit(Slot slot);

 private:
  Slot kitSlot_ = 0;
  FXUnitView* first_;
  FXUnitView* second_;
  DisclosureGroup* group_;
};

}  // namespace tamboro
