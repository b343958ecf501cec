#pragma once

#include <QWidget>

#include "model/Keys.h"

class QGridLayout;

namespace tamboro {

class NumberField;
class RolandLibrary;
class Stepper;

/// Loop and tempo of one sample, under its row in the browser.
class WaveLoopSection : public QWidget {
  Q_OBJECT

 public:
  WaveLoopSection(RolandLibrary& store, WaveId id, QWidget* parent = nullptr);

  /// The same for every sample.
  static int neededHeight();
  void refresh();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  Stepper* makeStepper(const QString& name, const QString& title, std::int64_t lower, std::int64_t upper);
  NumberField* makeField(const QString& name, const QString& title);
  void addControl(QGridLayout& grid, int row, int column, const QString& title, QWidget* control);

  RolandLibrary& store_;
  WaveId id_;

  Stepper* tempo_;
  Stepper* beat_;
  NumberField* start_;
  NumberField* end_;
};

}  // namespace tamboro
