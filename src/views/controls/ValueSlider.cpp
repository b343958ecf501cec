#include "views/controls/ValueSlider.h"

#include <QAccessibleWidget>
#include <QMouseEvent>
#include <QStyleOptionSlider>
#include <algorithm>
#include <cmath>

namespace tamboro {

namespace {

class ValueSliderAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit ValueSliderAccessible(ValueSlider& slider)
      : QAccessibleWidget(&slider, QAccessible::Slider), slider_(slider) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                               : QAccessibleWidget::interface_cast(type);
  }
  QVariant currentValue() const override { return spoken(slider_.valueAt(slider_.sliderPosition())); }
  QVariant minimumValue() const override { return spoken(slider_.scale().lower); }
  QVariant maximumValue() const override { return spoken(slider_.scale().upper); }
  QVariant minimumStepSize() const override { return 1.0 / slider_.scale().ticksPerUnit; }
  void setCurrentValue(const QVariant& value) override {
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    if (isNumber && std::isfinite(number)) slider_.setValue(slider_.tickOf(number + slider_.scale().zero));
  }

 private:
  QVariant spoken(double value) const { return value - slider_.scale().zero; }

  ValueSlider& slider_;
};

QAccessibleInterface* makeAccessible(const QString& className, QObject* object) {
  auto* slider = qobject_cast<ValueSlider*>(object);
  return slider && className == QLatin1String(ValueSlider::staticMetaObject.className())
             ? new ValueSliderAccessible(*slider)
             : nullptr;
}

}  // namespace

ValueSlider::ValueSlider(const Scale& scale, QWidget* parent) : QSlider(Qt::Horizontal, parent), scale_(scale) {
  [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(makeAccessible), true);
  setRange(tickOf(scale.lower), tickOf(scale.upper));
}

int ValueSlider::tickOf(double value) const {
  return static_cast<int>(std::lround(std::clamp(value, scale_.lower, scale_.upper) * scale_.ticksPerUnit));
}

void ValueSlider::mousePressEvent(QMouseEvent* event) {
  QStyleOptionSlider option;
  initStyleOption(&option);
  const QRect knob = style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
  if (event->button() != Qt::LeftButton || !knob.contains(event->position().toPoint()))
    return QSlider::mousePressEvent(event);
  // The left button's press would bring the knob's middle under the pointer; the middle one's takes it as it stands.
  QMouseEvent taken(event->type(), event->position(), event->globalPosition(), Qt::MiddleButton, Qt::MiddleButton,
                    event->modifiers());
  QSlider::mousePressEvent(&taken);
  event->setAccepted(taken.isAccepted());
}

}  // namespace tamboro
