#include "platform/EventTurns.h"

#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEvent>
#include <QTimer>

#include "platform/UndoManager.h"

namespace tamboro::test {
namespace {

/// Counts up twice for each event it gets.
class Turns : public QObject, public ::testing::Test {
 protected:
  UndoManager undoManager;
  EventTurns turns{undoManager};
  int counted = 0;

  void count() {
    undoManager.registerUndo([this] { --counted; });
    ++counted;
  }
  bool event(QEvent* event) override {
    count();
    count();
    return QObject::event(event);
  }
  int undone() {
    undoManager.undo();
    return counted;
  }
};

TEST_F(Turns, EachQueuedInputEventIsAStepOfItsOwn) {
  for (const QEvent::Type type : {QEvent::KeyPress, QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::Wheel,
                                  QEvent::Drop, QEvent::Shortcut, QEvent::TouchUpdate, QEvent::ContextMenu}) {
    // The one in the middle is no turn: it joins the one before.
    for (const QEvent::Type posted : {type, QEvent::FocusOut, type})
      QCoreApplication::postEvent(this, new QEvent(posted));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(undone(), 4) << "event type " << type;
    EXPECT_EQ(undone(), 0) << "event type " << type;
  }
}

TEST_F(Turns, QueuedCallsAndTicksAreTurns) {
  QObject quiet;  // the counter itself would count the events as well
  for (int call = 0; call < 2; ++call) {
    QMetaObject::invokeMethod(
        &quiet, [&] { count(); }, Qt::QueuedConnection);
  }
  QCoreApplication::sendPostedEvents();
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] { count(); });
  timer.start(0);
  while (counted < 4)
    QCoreApplication::processEvents();
  for (int left = 3; left >= 0; --left)
    EXPECT_EQ(undone(), left);
}

TEST_F(Turns, TheTurnEndsBeforeTheLoopSleeps) {
  count();
  // Nothing that is delivered ends the turn here: the loop only wants to sleep.
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &turns,
                   &QCoreApplication::quit);
  QCoreApplication::exec();
  count();
  EXPECT_EQ(undone(), 1);
}

}  // namespace
}  // namespace tamboro::test
