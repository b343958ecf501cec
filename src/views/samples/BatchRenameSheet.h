#pragma once

#include <functional>
#include <set>

#include "library/store/RolandLibrary.h"
#include "views/controls/Sheet.h"
#include "views/samples/BatchRename.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace tamboro {

class RenamePreview;
class Stepper;

/// Gives several samples a common name with a running number and shows beforehand what comes of it.
class BatchRenameSheet : public Sheet {
  Q_OBJECT

 public:
  /// `onDone` gets the selection to go on with, an empty one.
  BatchRenameSheet(RolandLibrary& store, std::vector<WaveId> globalIndices,
                   std::function<void(std::set<WaveId>)> onDone, QWidget* parent);

 private:
  void refresh();
  void setPattern(RenamePattern pattern);
  void rename();

  RolandLibrary& store_;
  std::vector<WaveId> globalIndices_;
  std::function<void(std::set<WaveId>)> onDone_;
  RenamePattern pattern_;

  QLabel* title_;
  QLineEdit* field_;
  Stepper* start_;
  RenamePreview* preview_;
  QPushButton* rename_;
};

}  // namespace tamboro
