#pragma once

#include <QApplication>

#include "views/look/LookStyle.h"

namespace tamboro::test {

/// An application in the program's own look.
class LookApplication : public QApplication {
 public:
  LookApplication(int& argc, char** argv) : QApplication(argc, argv) { LookStyle::install(*this); }
};

}  // namespace tamboro::test
