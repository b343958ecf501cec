#include "views/controls/Surface.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "views/look/Symbols.h"

namespace tamboro {

void Surface::paintEvent(QPaintEvent*) {
  const Look& look = Look::current();
  QPainter painter(this);
  painter.fillRect(rect(), look.*colour_);
  const double line = std::max(1.0, std::floor(devicePixelRatioF())) / devicePixelRatioF();
  if (separators_ & Qt::TopEdge) painter.fillRect(QRectF(0, 0, width(), line), look.separator);
  if (separators_ & Qt::BottomEdge) painter.fillRect(QRectF(0, height() - line, width(), line), look.separator);
}

SymbolView::SymbolView(const QString& symbol, double side, QPalette::ColorRole role, QWidget* parent)
    : QWidget(parent), symbol_(symbol) {
  setForegroundRole(role);
  setFixedSize(Look::px(side), Look::px(side));
}

void SymbolView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintSymbol(painter, symbol_, rect(), palette().color(foregroundRole()));
}

}  // namespace tamboro
