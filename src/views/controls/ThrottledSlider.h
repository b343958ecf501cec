#pragma once

#include <QSlider>
#include <QWidget>
#include <functional>
#include <optional>

class QLabel;

namespace tamboro {

/// A titled slider with its value as text. It reports one value a drag, when the user lets go, and one a step of the
/// keyboard or the wheel. A stored value outside the range is shown as text, stands at the nearer end and is left as it
/// is. The slider takes the wheel only with the focus.
class ThrottledSlider : public QWidget {
  Q_OBJECT

 public:
  struct Setup {
    QString title;
    double lower = 0;
    double upper = 100;
    double step = 1;
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
  double valueAt(int ticks) const { return setup_.lower + ticks * setup_.step; }

  Setup setup_;
  double value_ = 0;
  std::optional<double> liveValue_;
  Track* track_;
  QLabel* text_;
};

}  // namespace tamboro
