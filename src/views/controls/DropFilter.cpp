#include "views/controls/DropFilter.h"

#include <QApplication>
#include <QDropEvent>
#include <QWidget>

namespace tamboro {

DropFilter::DropFilter(QWidget& place) : QObject(&place), place_(place) {
  place.setAcceptDrops(true);
  qApp->installEventFilter(this);
}

bool DropFilter::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::DragLeave:
    case QEvent::Drop:
      break;
    default:
      return false;
  }
  const auto* over = qobject_cast<QWidget*>(watched);
  if (!over || !(over == &place_ || place_.isAncestorOf(over))) return false;
  if (event->type() != QEvent::DragLeave) return answer(*static_cast<QDropEvent*>(event), *over);
  leave();
  return false;
}

void DropFilter::take(QDropEvent& event) {
  event.setDropAction(Qt::CopyAction);
  event.accept();
}

void DropFilter::afterwards(const std::function<void()>& work) {
  QMetaObject::invokeMethod(this, work, Qt::QueuedConnection);
}

}  // namespace tamboro
