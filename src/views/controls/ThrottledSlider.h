#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "views/controls/ValueSlider.h"

namespace tamboro {

class ElidedLabel;

/// A titled slider with its value as text. It reports one value a drag, when the user lets go, and one a step of the
/// keyboard or the wheel. A stored value outside the range is shown as text, stands at the nearer end and is left as it
/// is. The slider takes the wheel only with the focus. Leaves room for the knob's focus ring on all sides.
class ThrottledSlider : public QWidget {
  Q_OBJECT

 public:
  struct Setup {
    QString title;
    ValueSlider::Scale scale = {};
    std::function<QString(double)> format;
    std::function<void(double)> commit;
  };
  /// `objectName` names the whole; the slider within it is called so with "Slider" behind.
  ThrottledSlider(const QString& objectName, Setup setup, QWidget* parent = nullptr);

  double value() const { return value_; }
  /// The stored value. During a drag the slider and its text stay with the hand.
  void setValue(double value);
  /// Drops a drag under way: the value belongs to another record now.
  void cancelDrag();
  /// The value while dragging.
  std::optional<double> liveValue() const { return liveValue_; }

 private:
  class Track;
  void moved(int ticks);
  void released();
  void refresh();

  Setup setup_;
  double value_ = 0;
  std::optional<double> liveValue_;
  Track* track_;
  ElidedLabel* text_;
};

}  // namespace tamboro
