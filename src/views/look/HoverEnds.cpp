#include "views/look/HoverEnds.h"

#include <QApplication>
#include <QCursor>
#include <QHoverEvent>
#include <QWidget>

namespace tamboro {

namespace {

void endHover(QWidget& widget) {
  const QPointF outside(-1, -1);
  QHoverEvent hover(QEvent::HoverLeave, outside, widget.mapToGlobal(outside), widget.mapFromGlobal(QCursor::pos()));
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(&widget, &leave);
  QApplication::sendEvent(&widget, &hover);
}

template<class Wanted>
void endHoverWhere(const Wanted& isWanted) {
  for (QWidget* widget : QApplication::allWidgets())
    if (widget->testAttribute(Qt::WA_UnderMouse) && isWanted(*widget)) endHover(*widget);
}

}  // namespace

HoverEnds::HoverEnds(QObject* parent) : QObject(parent) {
  qApp->installEventFilter(this);
}

bool HoverEnds::eventFilter(QObject* watched, QEvent* event) {
  const bool comesOrGoes = event->type() == QEvent::Show || event->type() == QEvent::Hide;
  if ((!comesOrGoes && event->type() != QEvent::WindowBlocked) || !watched->isWidgetType()) return false;
  const auto* window = static_cast<QWidget*>(watched);
  if (!window->isWindow()) return false;
  if (event->type() == QEvent::WindowBlocked)
    endHoverWhere([window](const QWidget& widget) { return widget.window() == window; });
  else if (!std::exchange(isLooking_, true))
    QMetaObject::invokeMethod(this, &HoverEnds::look, Qt::QueuedConnection);  // once it is gone
  return false;
}

void HoverEnds::look() {
  isLooking_ = false;
  const QWidget* under = QApplication::widgetAt(QCursor::pos());
  endHoverWhere([under](const QWidget& widget) { return !under || (&widget != under && !widget.isAncestorOf(under)); });
}

}  // namespace tamboro
