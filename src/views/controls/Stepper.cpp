#include "views/controls/Stepper.h"

#include <QAccessible>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <algorithm>
#include <cmath>

#include "views/look/Look.h"
#include "views/look/LookPaint.h"
#include "views/look/Symbols.h"

namespace tamboro {

namespace {
constexpr int firstRepeat = 400;
constexpr int laterRepeat = 75;
constexpr int halvesGap = 8;
constexpr int textPadding = 5;
/// The toolkit's own name of a spin box's field: by it assistive tools take both for one thing.
const QString toolkitName = QStringLiteral("qt_spinbox_lineedit");
}  // namespace

Stepper::Stepper(QWidget* parent)
    : QAbstractSpinBox(parent), field_(new NumberField(toolkitName, QStringLiteral("Value"))) {
  setLineEdit(field_);
  setFrame(false);
  setFont(Look::monospaced(TextStyle::caption));
  setAttribute(Qt::WA_Hover);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  connect(field_, &NumberField::edited, this, [this](std::int64_t typed) {
    const std::int64_t taken = std::clamp(typed, lower_, upper_);
    setValue(taken);
    Q_EMIT edited(taken);
  });
}

void Stepper::setRange(std::int64_t lower, std::int64_t upper) {
  lower_ = lower;
  upper_ = upper;
  updateGeometry();
  update();
}

void Stepper::setStep(std::int64_t step) {
  step_ = step;
}

void Stepper::setNotation(NumberField::Notation notation) {
  field_->setNotation(std::move(notation));
  updateGeometry();
}

void Stepper::setValueWidth(int width) {
  valueWidth_ = width;
  updateGeometry();
}

void Stepper::setValue(std::int64_t value) {
  if (value == field_->value()) return;
  field_->setValue(value);
  tellValue();
}

void Stepper::tellValue() {
  update();
  if (!QAccessible::isActive()) return;
  QAccessibleValueChangeEvent told(this, accessibleValue());
  QAccessible::updateAccessibility(&told);
}

// ---- steps

void Stepper::stepBy(int steps) {
  field_->take();  // what was typed is where the step begins
  // Outside the range by any amount: the sum below could overflow.
  change(isOutside() ? value() : value() + steps * step_);
}

void Stepper::change(std::int64_t value) {
  value = std::clamp(value, lower_, upper_);
  if (value == this->value()) return;
  setValue(value);
  Q_EMIT edited(value);
}

void Stepper::takeAccessibleValue(double value) {
  const double inRange = std::clamp(std::round(value), accessibleMinimum(), accessibleMaximum());
  change(static_cast<std::int64_t>(inRange));
}

QAbstractSpinBox::StepEnabled Stepper::stepEnabled() const {
  if (isOutside()) return StepUpEnabled | StepDownEnabled;
  StepEnabled enabled = StepNone;
  enabled.setFlag(StepUpEnabled, value() < upper_);
  enabled.setFlag(StepDownEnabled, value() > lower_);
  return enabled;
}

void Stepper::mousePressEvent(QMouseEvent* event) {
  pressed_ = 0;
  for (const int direction : {1, -1})
    if (event->button() == Qt::LeftButton && half(direction).contains(event->position().toPoint()))
      pressed_ = direction;
  if (pressed_ == 0) return;
  repeat_.start(firstRepeat, this);
  stepBy(pressed_);
  update();
}

void Stepper::mouseMoveEvent(QMouseEvent* event) {
  mouse_ = event->position().toPoint();
  update();
}

void Stepper::mouseReleaseEvent(QMouseEvent*) {
  pressed_ = 0;
  repeat_.stop();
  update();
}

void Stepper::timerEvent(QTimerEvent* event) {
  if (event->timerId() != repeat_.timerId()) return QAbstractSpinBox::timerEvent(event);
  if (pressed_ == 0 || !isEnabled() || !isVisible()) return repeat_.stop();
  repeat_.start(laterRepeat, this);
  if (half(pressed_).contains(mouse_)) stepBy(pressed_);
}

void Stepper::contextMenuEvent(QContextMenuEvent* event) {
  event->ignore();
}

// ---- looks

int Stepper::textWidth() const {
  if (valueWidth_) return *valueWidth_;
  const QFontMetrics metrics(font());
  int widest = 0;
  for (const std::int64_t shown : {lower_, upper_, value()})
    widest = std::max(widest, metrics.horizontalAdvance(field_->written(shown)));
  return widest + 2 * Look::px(textPadding);
}

QRect Stepper::textBox() const {
  const QRect inside = rect().adjusted(0, ringRoom, 0, -ringRoom);
  return QStyle::visualRect(layoutDirection(), rect(), QRect(0, inside.y(), textWidth(), inside.height()));
}

void Stepper::placeField() {
  const auto side = QStyle::visualAlignment(layoutDirection(), valueWidth_ ? Qt::AlignRight : Qt::AlignLeft);
  field_->setAlignment(side | Qt::AlignVCenter | Qt::AlignAbsolute);
  const int beside = std::max(0, Look::px(textPadding) - 2);  // the field itself adds 2
  field_->setGeometry(textBox().adjusted(beside, 0, -beside, 0));
}

void Stepper::resizeEvent(QResizeEvent*) {
  placeField();
}

void Stepper::changeEvent(QEvent* event) {
  QAbstractSpinBox::changeEvent(event);
  if (event->type() == QEvent::FontChange) field_->setFont(font());
  if (event->type() == QEvent::LayoutDirectionChange) placeField();
}

QSize Stepper::sizeHint() const {
  const int height = std::max(Look::px(26), fontMetrics().height());
  return {textWidth() + halvesGap + Look::px(18) + ringRoom, height + 2 * ringRoom};
}

QRect Stepper::halves() const {
  const QSize size(Look::px(18), Look::px(26));
  const QRect place(width() - ringRoom - size.width(), (height() - size.height()) / 2, size.width(), size.height());
  return QStyle::visualRect(layoutDirection(), rect(), place);
}

QRect Stepper::half(int direction) const {
  const QRect both = halves();
  const QRect upper(both.topLeft(), QSize(both.width(), both.height() / 2));
  return direction > 0 ? upper : both.adjusted(0, upper.height(), 0, 0);
}

void Stepper::paintHalf(QPainter& painter, int direction) const {
  const Look& look = Look::current();
  const QRect place = half(direction);
  const bool isLive = isEnabled() && stepEnabled().testFlag(direction > 0 ? StepUpEnabled : StepDownEnabled);
  const bool isUnderMouse = underMouse() && place.contains(mouse_);
  if (isLive && (pressed_ == direction || isUnderMouse)) {
    painter.save();
    painter.setClipRect(place);
    paintBox(painter, halves(), controlRadius - 1, pressed_ == direction ? look.buttonPressed : look.buttonHover,
             look.buttonOutline);
    painter.restore();
  }
  const double side = Look::px(8);
  const QRectF chevron(place.center().x() + 0.5 - side / 2, place.center().y() + 0.5 - side / 2, side, side);
  paintSymbol(painter, direction > 0 ? QStringLiteral("chevron.up") : QStringLiteral("chevron.down"), chevron,
              isLive ? look.secondary : look.disabledText);
}

void Stepper::paintEvent(QPaintEvent*) {
  const Look& look = Look::current();
  QPainter painter(this);
  // Like a plain field, which can be told from a text once it is looked for.
  if (isEnabled() && (hasFocus() || underMouse()))
    paintBox(painter, textBox(), controlRadius - 1, look.base, hasFocus() ? look.focusRing : look.fieldOutline,
             hasFocus() ? 2 : 1);
  paintBox(painter, halves(), controlRadius - 1, isEnabled() ? look.button : look.disabledFill,
           isEnabled() ? look.buttonOutline : look.separator);
  paintHalf(painter, 1);
  paintHalf(painter, -1);
  const double line = std::max(1.0, std::floor(devicePixelRatioF())) / devicePixelRatioF();
  const QRectF lower = half(-1);
  painter.fillRect(QRectF(lower.x(), lower.y(), lower.width(), line), look.separator);
}

}  // namespace tamboro
