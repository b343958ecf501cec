#pragma once

#include <set>

#include "library/store/RolandLibrary.h"
#include "views/controls/Sheet.h"

class QPushButton;

namespace tamboro {

/// Copies chosen settings of one pad to all other pads of its kit. Nothing is chosen at first.
class SetAllPadSheet : public Sheet {
  Q_OBJECT

 public:
  SetAllPadSheet(RolandLibrary& store, Slot slot, int sourcePad, QWidget* parent);

 private:
  QLayout* makeFields();
  void choose(const PadSetting& setting, bool on);
  void apply();

  RolandLibrary& store_;
  Slot kitSlot_;
  int sourcePadIndex_;
  std::set<const PadSetting*> selected_;
  QPushButton* apply_ = nullptr;
};

}  // namespace tamboro
