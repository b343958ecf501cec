#include "views/controls/ThrottledSlider.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

#include "views/controls/ElidedLabel.h"
#include "views/controls/Labels.h"
#include "views/controls/TitledRow.h"

namespace tamboro {

/// Tells a hand's movements from steps: the press on the groove moves the knob before the slider counts as down.
class ThrottledSlider::Track : public ValueSlider {
 public:
  using ValueSlider::ValueSlider;

  bool isHeld = false;
  std::function<void()> letGo;

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    isHeld = isHeld || event->button() == Qt::LeftButton;
    ValueSlider::mousePressEvent(event);
  }
  void mouseMoveEvent(QMouseEvent* event) override {
    if (isHeld) ValueSlider::mouseMoveEvent(event);  // else the drag was dropped, the button is only still down
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    ValueSlider::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && std::exchange(isHeld, false)) letGo();
  }
};

ThrottledSlider::ThrottledSlider(const QString& objectName, Setup setup, QWidget* parent)
    : QWidget(parent), setup_(std::move(setup)), track_(new Track(setup_.scale)) {
  setObjectName(objectName);
  track_->setObjectName(objectName + QStringLiteral("Slider"));
  track_->setAccessibleName(setup_.title);
  track_->setSingleStep(1);
  track_->setPageStep(10);
  track_->letGo = [this] { released(); };
  connect(track_, &QSlider::valueChanged, this, &ThrottledSlider::moved);

  auto* title = makeLabel(objectName + QStringLiteral("Title"), setup_.title, TextStyle::caption, textRole::secondary);
  title->setBuddy(track_);
  text_ = new ElidedLabel(Qt::ElideRight);
  text_->setObjectName(objectName + QStringLiteral("Value"));
  text_->setFont(Look::monospaced(TextStyle::caption));
  // Fixed both ways: else each new number would lay out anew what the slider stands in.
  text_->setFixedSize(std::max(Look::px(70), text_->fontMetrics().horizontalAdvance(QStringLiteral("CENTER"))),
                      text_->fontMetrics().height());
  auto* column = new QVBoxLayout(this);
  leaveRingRoom(*column);
  column->setSpacing(2);
  column->addWidget(title);
  auto* row = new QHBoxLayout;
  row->setSpacing(Look::px(8));
  row->addWidget(track_, 1);
  row->addWidget(text_);
  column->addLayout(row);
  refresh();
}

void ThrottledSlider::setValue(double value) {
  value_ = value;
  refresh();
}

void ThrottledSlider::cancelDrag() {
  track_->isHeld = false;
  track_->setSliderDown(false);
  liveValue_.reset();
  refresh();
}

void ThrottledSlider::moved(int ticks) {
  liveValue_ = track_->valueAt(ticks);
  if (track_->isHeld) {
    refresh();
  } else {
    released();
  }
}

void ThrottledSlider::released() {
  if (const auto value = std::exchange(liveValue_, std::nullopt)) {
    value_ = *value;
    setup_.commit(*value);
  }
  refresh();
}

void ThrottledSlider::refresh() {
  const QString text = setup_.format(liveValue_.value_or(value_));
  text_->setText(text);
  track_->setAccessibleDescription(text);
  if (track_->isHeld) return;
  const QSignalBlocker blocker(track_);
  track_->setValue(track_->tickOf(value_));
}

}  // namespace tamboro
