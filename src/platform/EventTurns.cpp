#include "platform/EventTurns.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEvent>

#include "platform/UndoManager.h"

namespace tamboro {

namespace {

bool beginsTurn(QEvent::Type type) {
  switch (type) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::Drop:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::NativeGesture:
    case QEvent::Close:
    case QEvent::Timer:
    case QEvent::SockAct:
    case QEvent::MetaCall:
      return true;
    default:
      return false;
  }
}

}  // namespace

EventTurns::EventTurns(UndoManager& undoManager, QObject* parent) : QObject(parent), undoManager_(undoManager) {
  QCoreApplication::instance()->installEventFilter(this);
  connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &undoManager_,
          &UndoManager::endTurn);
}

bool EventTurns::eventFilter(QObject* receiver, QEvent* event) {
  // An event that is passed on to a parent, or makes another one, comes by again while it is handled. That can only
  // part what its own handling did so far from the rest, and a running undo takes no notice.
  if (beginsTurn(event->type())) undoManager_.endTurn();
  return QObject::eventFilter(receiver, event);
}

}  // namespace tamboro
