#include "platform/UndoManager.h"

#include <gmock/gmock.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <map>

#include "platform/EventTurns.h"

namespace tamboro::test {
namespace {

/// A store of two numbers whose edits register undo the way every record's does.
class Undo : public ::testing::Test {
 protected:
  UndoManager undoManager;
  std::map<char, int> values{{'a', 0}, {'b', 0}};

  void set(char key, int value) {
    const int before = std::exchange(values[key], value);
    undoManager.registerUndo([this, key, before] { set(key, before); });
    undoManager.setActionName(QString(QChar::fromLatin1(key)));
  }
  /// Both values, then the names of what can be undone and redone.
  std::string told() const {
    const auto name = [](bool can, const QString& text) { return can ? text.toStdString() : "-"; };
    return std::to_string(values.at('a')) + std::to_string(values.at('b')) + " " +
           name(undoManager.canUndo(), undoManager.undoActionName()) +
           name(undoManager.canRedo(), undoManager.redoActionName());
  }
};

TEST_F(Undo, TakesATurnBackAsAWholeAndRedoesIt) {
  set('a', 1);
  undoManager.endTurn();
  undoManager.endTurn();  // an empty turn leaves nothing
  set('b', 2);
  set('b', 3);
  set('a', 4);
  EXPECT_EQ(told(), "43 a-");
  undoManager.undo();          // and ends the turn
  EXPECT_EQ(told(), "10 ab");  // named by the handler that ran last
  undoManager.undo();
  EXPECT_EQ(told(), "00 -a");
  undoManager.undo();
  undoManager.redo();
  undoManager.redo();
  EXPECT_EQ(told(), "43 a-");
  undoManager.undo();
  set('b', 5);
  EXPECT_EQ(told(), "15 b-");
  undoManager.redo();  // nothing to redo, but the turn is over
  set('b', 6);
  undoManager.undo();
  EXPECT_EQ(told(), "15 bb");
}

TEST_F(Undo, HandlersThatRegisterNothingOrUndoThemselvesSpendTheirStepOnly) {
  set('a', 1);
  undoManager.endTurn();
  undoManager.registerUndo([this] {
    undoManager.undo();
    undoManager.redo();
    undoManager.endTurn();
  });
  undoManager.undo();
  EXPECT_EQ(told(), "10 a-");
}

TEST_F(Undo, TellsItsMenuOfEveryChange) {
  std::string seen;
  QObject::connect(&undoManager, &UndoManager::changed, [&] { seen = told(); });
  set('b', 1);
  set('a', 1);
  EXPECT_EQ(seen, told());
  undoManager.undo();
  EXPECT_EQ(seen, told());
  undoManager.redo();
  EXPECT_EQ(seen, told());
}

/// Counts up twice for each event it gets.
class Turns : public Undo {
 protected:
  struct Counter : QObject {
    Turns* test;
    bool event(QEvent* event) override {
      test->count();
      test->count();
      return QObject::event(event);
    }
  } counter;
  EventTurns turns{undoManager};

  Turns() { counter.test = this; }
  void count() { set('a', values['a'] + 1); }
  void post(QEvent::Type type) { QCoreApplication::postEvent(&counter, new QEvent(type)); }
  int undone() {
    undoManager.undo();
    return values['a'];
  }
};

TEST_F(Turns, EachQueuedInputEventIsAStepOfItsOwn) {
  for (const QEvent::Type type : {QEvent::KeyPress, QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::Wheel,
                                  QEvent::Drop, QEvent::Shortcut, QEvent::TouchUpdate, QEvent::ContextMenu}) {
    post(type);
    post(QEvent::FocusOut);  // no turn: it joins the one before
    post(type);
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
  while (values['a'] < 4)
    QCoreApplication::processEvents();
  for (int left = 3; left >= 0; --left)
    EXPECT_EQ(undone(), left);
}

TEST_F(Turns, TheTurnEndsBeforeTheLoopSleeps) {
  count();
  // Nothing that is delivered ends the turn here: the loop only wants to sleep.
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &counter,
                   &QCoreApplication::quit);
  QCoreApplication::exec();
  count();
  EXPECT_EQ(undone(), 1);
}

}  // namespace
}  // namespace tamboro::test
