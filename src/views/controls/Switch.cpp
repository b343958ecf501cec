#include "views/controls/Switch.h"

#include <QPainter>

#include "views/look/Look.h"
#include "views/look/LookPaint.h"

namespace tamboro {

Switch::Switch(QWidget* parent) : QCheckBox(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize Switch::sizeHint() const {
  return QSize(Look::px(32) + 2 * ringRoom, Look::px(18) + 2 * ringRoom);
}

void Switch::paintEvent(QPaintEvent*) {
  const Look& look = Look::current();
  const QSize size = sizeHint() - QSize(2 * ringRoom, 2 * ringRoom);
  const QRectF track(QPointF(ringRoom, (height() - size.height()) / 2.0), QSizeF(size));
  const double radius = track.height() / 2;
  QColor fill = isChecked() ? (underMouse() ? look.accentHover : look.accent) : look.switchOff;
  if (!isEnabled()) fill.setAlphaF(0.45F);
  QPainter painter(this);
  paintBox(painter, track, radius, fill);
  const double knob = track.height() - 4;
  const bool isRight = isChecked() != (layoutDirection() == Qt::RightToLeft);
  const QRectF place(isRight ? track.right() - knob - 2 : track.x() + 2, track.y() + 2, knob, knob);
  paintBox(painter, place, knob / 2, !isEnabled() && look.isDark ? look.disabledText : QColor(Qt::white));
  if (hasFocus()) paintFocusRing(painter, track, radius);
}

}  // namespace tamboro
