#include "views/controls/ElidedLabel.h"

#include <QPainter>
#include <QStyle>
#include <algorithm>

namespace tamboro {

ElidedLabel::ElidedLabel(Qt::TextElideMode mode, QWidget* parent) : QLabel(parent), mode_(mode) {
  setTextFormat(Qt::PlainText);
  setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

QString ElidedLabel::shownText() const {
  return fontMetrics().elidedText(text(), mode_, contentsRect().width());
}

QSize ElidedLabel::sizeHint() const {
  // One more than the text: a width that fits to the pixel would be elided by the next rounding.
  const QMargins margins = contentsMargins();
  const int width = std::min(fontMetrics().horizontalAdvance(text()) + 1, maximumTextWidth_);
  return QSize(width + margins.left() + margins.right(), fontMetrics().height() + margins.top() + margins.bottom());
}

QSize ElidedLabel::minimumSizeHint() const {
  const QMargins margins = contentsMargins();
  return QSize(fontMetrics().averageCharWidth() * 4 + margins.left() + margins.right(), sizeHint().height());
}

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  // What isn't cut at its end is a path, and that runs from left to right in a mirrored layout too.
  painter.setLayoutDirection(mode_ == Qt::ElideRight ? Qt::LayoutDirectionAuto : Qt::LeftToRight);
  const Qt::Alignment side = QStyle::visualAlignment(layoutDirection(), alignment());
  style()->drawItemText(&painter, contentsRect(), static_cast<int>(side | Qt::AlignAbsolute) | Qt::TextSingleLine,
                        palette(), isEnabled(), shownText(), foregroundRole());
}

}  // namespace tamboro
