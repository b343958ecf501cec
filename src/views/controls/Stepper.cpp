#include "views/controls/Stepper.h"

#include <QAccessible>
#include <QLineEdit>
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
}  // namespace

Stepper::Stepper(QWidget* parent)
    : QAbstractSpinBox(parent), format_([](std::int64_t value) { return QString::number(value); }) {
  // The base's field only tells assistive tools the text: nothing can be typed here.
  lineEdit()->setReadOnly(true);
  lineEdit()->hide();
  setFrame(false);
  setFont(Look::monospaced(TextStyle::caption));
  setAttribute(Qt::WA_Hover);
  setAttribute(Qt::WA_InputMethodEnabled, false);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::ArrowCursor);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  refreshText();
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

void Stepper::setFormat(std::function<QString(std::int64_t)> format) {
  format_ = std::move(format);
  refreshText();
  updateGeometry();
}

void Stepper::setValueWidth(int width) {
  valueWidth_ = width;
  updateGeometry();
}

void Stepper::setValue(std::int64_t value) {
  if (value == value_) return;
  value_ = value;
  refreshText();
}

void Stepper::refreshText() {
  lineEdit()->setText(format_(value_));
  update();
  if (!QAccessible::isActive()) return;
  QAccessibleValueChangeEvent told(this, accessibleValue());
  QAccessible::updateAccessibility(&told);
}

// ---- steps

void Stepper::stepBy(int steps) {
  // Outside the range by any amount: the sum below could overflow.
  change(isOutside() ? value_ : value_ + steps * step_);
}

void Stepper::change(std::int64_t value) {
  value = std::clamp(value, lower_, upper_);
  if (value == value_) return;
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
  enabled.setFlag(StepUpEnabled, value_ < upper_);
  enabled.setFlag(StepDownEnabled, value_ > lower_);
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
  return std::max({metrics.horizontalAdvance(format_(lower_)), metrics.horizontalAdvance(format_(upper_)),
                   metrics.horizontalAdvance(format_(value_))});
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
  const QRect text = QStyle::visualRect(layoutDirection(), rect(), QRect(0, 0, textWidth(), height()));
  painter.setPen(isEnabled() ? look.primary : look.disabledText);
  paintText(painter, layoutDirection(), text, (valueWidth_ ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter,
            QFontMetrics(painter.font()).elidedText(lineEdit()->text(), Qt::ElideRight, text.width()));
  paintBox(painter, halves(), controlRadius - 1, isEnabled() ? look.button : look.disabledFill,
           isEnabled() ? look.buttonOutline : look.separator);
  paintHalf(painter, 1);
  paintHalf(painter, -1);
  const double line = std::max(1.0, std::floor(devicePixelRatioF())) / devicePixelRatioF();
  const QRectF lower = half(-1);
  painter.fillRect(QRectF(lower.x(), lower.y(), lower.width(), line), look.separator);
  if (hasFocus()) paintFocusRing(painter, halves(), controlRadius - 1);
}

}  // namespace tamboro
