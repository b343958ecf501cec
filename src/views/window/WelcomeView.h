#pragma once

#include "views/controls/Surface.h"

class QLabel;
class QPushButton;

namespace tamboro {

class RolandLibrary;

/// The window's content while no card is open: how to open one, and why the last opening failed.
class WelcomeView : public Surface {
  Q_OBJECT

 public:
  explicit WelcomeView(RolandLibrary& store, QWidget* parent = nullptr);

 private:
  void refresh();

  RolandLibrary& store_;
  QLabel* error_;
};

}  // namespace tamboro
