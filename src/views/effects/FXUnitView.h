#pragma once

#include <QWidget>
#include <vector>

#include "library/store/RolandLibrary.h"
#include "model/FXTypeDef.h"

class QVBoxLayout;

namespace tamboro {

class FXParamRow;
class MenuPicker;
class Switch;

/// One of a kit's two effect units: its switch, its type and, while it is on, a row for each parameter of the type.
/// A stored type that isn't in the catalogue selects nothing and has no rows.
class FXUnitView : public QWidget {
  Q_OBJECT

 public:
  FXUnitView(RolandLibrary& store, int unit, QWidget* parent = nullptr);

  void setKit(Slot slot);
  void refresh();

 private:
  class Badge;
  QString named(const char* part) const;
  QWidget* makeHeader();
  void showRows(const FXTypeDef* type);
  void alignRows();

  RolandLibrary& store_;
  int unit_;

  Slot kitSlot_ = 0;
  const FXTypeDef* shownType_ = nullptr;  ///< whose rows are there

  QVBoxLayout* column_;
  Switch* switch_ = nullptr;
  Badge* badge_ = nullptr;
  MenuPicker* type_ = nullptr;
  QWidget* params_ = nullptr;
  std::vector<FXParamRow*> rows_;
};

}  // namespace tamboro
