#pragma once

#include <functional>

#include "library/store/RolandLibrary.h"
#include "views/controls/Sheet.h"

class QComboBox;

namespace tamboro {

/// Asks what a new kit is made of: nothing, or a copy of one of the card's kits. Starts at "Blank Kit".
class NewKitSheet : public Sheet {
  Q_OBJECT

 public:
  /// `onCreated` gets the new kit's slot; where no slot is free the sheet just closes.
  NewKitSheet(RolandLibrary& store, std::function<void(Slot)> onCreated, QWidget* parent);

  std::optional<Slot> templateSlot() const;

 private:
  void create();

  RolandLibrary& store_;
  std::function<void(Slot)> onCreated_;
  QComboBox* basedOn_;
};

}  // namespace tamboro
