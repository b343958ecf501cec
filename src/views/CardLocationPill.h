#pragma once

#include "views/controls/CapsulePill.h"

namespace tamboro {

class RolandLibrary;

/// Where the open card is. The tooltip holds the whole path and, under it, why the last opening failed: with a card
/// open no welcome screen tells.
class CardLocationPill : public CapsulePill {
  Q_OBJECT

 public:
  explicit CardLocationPill(RolandLibrary& store, QWidget* parent = nullptr);

 private:
  void refresh();

  RolandLibrary& store_;
};

}  // namespace tamboro
