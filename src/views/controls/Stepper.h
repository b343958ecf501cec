#pragma once

#include <QAbstractSpinBox>
#include <QBasicTimer>
#include <cstdint>
#include <optional>

#include "views/controls/NumberField.h"

namespace tamboro {

/// A value as a text that can be typed over, before two small halves that step it. It shows any stored value; a step
/// from outside the range goes to the nearer bound, as a number does that is typed beyond one. Up and Down step, Page
/// Up and Page Down take ten steps, a held half repeats.
class Stepper : public QAbstractSpinBox {
  Q_OBJECT
  Q_PROPERTY(double value READ accessibleValue WRITE takeAccessibleValue)
  Q_PROPERTY(double minimum READ accessibleMinimum)
  Q_PROPERTY(double maximum READ accessibleMaximum)
  Q_PROPERTY(double singleStep READ accessibleStep)

 public:
  explicit Stepper(QWidget* parent = nullptr);

  /// 0 to 100 in steps of 1 without these.
  void setRange(std::int64_t lower, std::int64_t upper);
  void setStep(std::int64_t step);
  /// Plain digits without this.
  void setNotation(NumberField::Notation notation);
  /// A fixed box with the text at its far end; without it the text stands at the near end of the room that the longer
  /// of the bounds needs.
  void setValueWidth(int width);
  /// Shows the stored value and reports nothing.
  void setValue(std::int64_t value);
  std::int64_t value() const { return field_->value(); }

  void stepBy(int steps) override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 Q_SIGNALS:
  /// The user stepped to this value or typed it.
  void edited(std::int64_t value);

 protected:
  StepEnabled stepEnabled() const override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  // Assistive tools read and write the value through properties of these names.
  double accessibleValue() const { return static_cast<double>(value()); }
  void takeAccessibleValue(double value);
  double accessibleMinimum() const { return static_cast<double>(lower_); }
  double accessibleMaximum() const { return static_cast<double>(upper_); }
  double accessibleStep() const { return static_cast<double>(step_); }
  void change(std::int64_t value);
  void tellValue();
  void placeField();
  bool isOutside() const { return value() < lower_ || value() > upper_; }
  int textWidth() const;
  QRect textBox() const;
  QRect halves() const;
  QRect half(int direction) const;
  void paintHalf(QPainter& painter, int direction) const;

  std::int64_t lower_ = 0;
  std::int64_t upper_ = 100;
  std::int64_t step_ = 1;
  NumberField* field_;
  std::optional<int> valueWidth_;
  int pressed_ = 0;  ///< 1 upper half, -1 lower half
  QPoint mouse_;
  QBasicTimer repeat_;
};

}  // namespace tamboro
