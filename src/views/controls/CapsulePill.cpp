#include "views/controls/CapsulePill.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

#include "views/look/Look.h"
#include "views/look/LookPaint.h"
#include "views/look/Symbols.h"

namespace tamboro {

namespace {
constexpr int sidePadding = 14;
constexpr int symbolSide = 14;
constexpr int gap = 8;
}  // namespace

CapsulePill::CapsulePill(const QString& symbol, QWidget* parent) : ElidedLabel(Qt::ElideLeft, parent), symbol_(symbol) {
  setFont(Look::font(TextStyle::caption));
  setForegroundRole(textRole::secondary);
  const int before = Look::px(sidePadding) + Look::px(symbolSide) + Look::px(gap);
  placeText();
  setMaximumTextWidth(Look::px(300) - before - Look::px(sidePadding));
  setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

void CapsulePill::placeText() {
  const int before = Look::px(sidePadding) + Look::px(symbolSide) + Look::px(gap);
  const bool isMirrored = layoutDirection() == Qt::RightToLeft;
  const int left = isMirrored ? Look::px(sidePadding) : before;
  const int right = isMirrored ? before : Look::px(sidePadding);
  setContentsMargins(left, Look::px(4), right, Look::px(4));
}

void CapsulePill::changeEvent(QEvent* event) {
  ElidedLabel::changeEvent(event);
  if (event->type() == QEvent::LayoutDirectionChange) placeText();
}

void CapsulePill::paintEvent(QPaintEvent* event) {
  const QColor text = palette().color(foregroundRole());
  QColor ground(128, 128, 128);
  ground.setAlphaF(0.15F);
  {
    QPainter painter(this);
    paintBox(painter, rect(), height() / 2.0, ground);
    const int side = Look::px(symbolSide);
    const QRect place(Look::px(sidePadding), (height() - side) / 2, side, side);
    paintSymbol(painter, symbol_, QStyle::visualRect(layoutDirection(), rect(), place), text);
  }
  ElidedLabel::paintEvent(event);
}

}  // namespace tamboro
