#include "views/controls/BusyIndicator.h"

#include <QPainter>

#include "views/look/Look.h"

namespace tamboro {

BusyIndicator::BusyIndicator(QWidget* parent) : QWidget(parent) {
  setFixedSize(Look::px(16), Look::px(16));
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void BusyIndicator::showEvent(QShowEvent*) {
  timer_.start(40, this);
}

void BusyIndicator::hideEvent(QHideEvent*) {
  timer_.stop();
}

void BusyIndicator::timerEvent(QTimerEvent*) {
  degrees_ = (degrees_ + 15) % 360;
  update();
}

void BusyIndicator::paintEvent(QPaintEvent*) {
  const Look& look = Look::current();
  const double thickness = width() / 8.0;
  const QRectF circle = QRectF(rect()).adjusted(thickness, thickness, -thickness, -thickness);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(look.separator, thickness));
  painter.drawEllipse(circle);
  painter.setPen(QPen(look.secondary, thickness, Qt::SolidLine, Qt::RoundCap));
  painter.drawArc(circle, (90 - degrees_) * 16, -100 * 16);
}

}  // namespace tamboro
