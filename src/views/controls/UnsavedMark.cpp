#include "views/controls/UnsavedMark.h"

#include <QPainter>
#include <QStyle>

#include "views/look/Look.h"
#include "views/look/LookPaint.h"
#include "views/look/Palette.h"

namespace tamboro {

namespace {
constexpr int dot = 6;
constexpr int gap = 6;

int sidePadding() {
  return Look::current().isDark ? 0 : Look::px(9);
}
}  // namespace

UnsavedMark::UnsavedMark(QWidget* parent) : QLabel(QStringLiteral("Unsaved changes"), parent) {
  QFont font = Look::font(TextStyle::caption);
  font.setWeight(QFont::Medium);
  setFont(font);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize UnsavedMark::sizeHint() const {
  const QFontMetrics metrics(font());
  return QSize(2 * sidePadding() + Look::px(dot) + Look::px(gap) + metrics.horizontalAdvance(text()) + 1,
               metrics.height() + 4);
}

void UnsavedMark::paintEvent(QPaintEvent*) {
  const Look& look = Look::current();
  QPainter painter(this);
  if (!look.isDark) paintBox(painter, rect(), height() / 2.0, look.plate());
  const int side = Look::px(dot);
  const QRect place(sidePadding(), (height() - side) / 2, side, side);
  paintBox(painter, QStyle::visualRect(layoutDirection(), rect(), place), side / 2.0, paletteOrange);
  painter.setPen(paletteOrange);
  const QRect words = rect().adjusted(place.right() + 1 + Look::px(gap), 0, -sidePadding(), 0);
  paintText(painter, layoutDirection(), QStyle::visualRect(layoutDirection(), rect(), words), Qt::AlignCenter, text());
}

}  // namespace tamboro
