#pragma once

#include <QSlider>

namespace tamboro {

/// A horizontal slider over numbers, several ticks to a unit where needed. Assistive tools are told those numbers,
/// counted from `zero`, and set them; they never see the ticks. A press on the knob doesn't move it.
class ValueSlider : public QSlider {
  Q_OBJECT

 public:
  struct Scale {
    double lower = 0;
    double upper = 100;
    int ticksPerUnit = 1;
    double zero = 0;
  };
  explicit ValueSlider(const Scale& scale, QWidget* parent = nullptr);

  const Scale& scale() const { return scale_; }
  double valueAt(int tick) const { return static_cast<double>(tick) / scale_.ticksPerUnit; }
  /// The nearest tick; of a value outside the range the nearer end.
  int tickOf(double value) const;

 protected:
  void mousePressEvent(QMouseEvent* event) override;

 private:
  Scale scale_;
};

}  // namespace tamboro
