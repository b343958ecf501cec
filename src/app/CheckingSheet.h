#pragma once

#include "views/controls/Sheet.h"

namespace tamboro {

/// Stands while a check for updates that was asked for runs. Cancel and Escape give the answer up.
class CheckingSheet : public Sheet {
  Q_OBJECT

 public:
  explicit CheckingSheet(QWidget* parent);
};

}  // namespace tamboro
