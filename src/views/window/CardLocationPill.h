#pragma once

#include "views/controls/CapsulePill.h"

namespace tamboro {

class RolandLibrary;

/// Where the open card is; the tooltip holds the whole path.
class CardLocationPill : public CapsulePill {
  Q_OBJECT

 public:
  explicit CardLocationPill(RolandLibrary& store, QWidget* parent = nullptr);

 private:
  void refresh();

  RolandLibrary& store_;
};

}  // namespace tamboro
