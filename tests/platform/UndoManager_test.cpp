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

using ::testing::Pair;
using ::testing::UnorderedElementsAre;

QString text(const char* latin) {
  return QString::fromLatin1(latin);
}

/// A store of numbers whose edits register undo the way every record's does.
struct Numbers {
  UndoManager undoManager;
  std::map<char, int> values;

  void set(char key, int value) {
    const int before = std::exchange(values[key], value);
    undoManager.registerUndo([this, key, before] { set(key, before); });
    undoManager.setActionName(text(key == 'a' ? "Change A" : "Change B"));
  }
};

TEST(UndoManager, UndoesATurnAsAWholeAndRedoesIt) {
  Numbers numbers;
  UndoManager& undoManager = numbers.undoManager;
  numbers.set('a', 1);
  undoManager.endTurn();
  numbers.set('b', 2);
  numbers.set('a', 3);
  numbers.set('a', 4);
  undoManager.endTurn();
  EXPECT_EQ(undoManager.undoActionName(), text("Change A"));

  undoManager.undo();
  EXPECT_THAT(numbers.values, UnorderedElementsAre(Pair('a', 1), Pair('b', 0)));
  EXPECT_TRUE(undoManager.canRedo());
  undoManager.undo();
  EXPECT_THAT(numbers.values, UnorderedElementsAre(Pair('a', 0), Pair('b', 0)));
  EXPECT_FALSE(undoManager.canUndo());
  undoManager.undo();
  undoManager.redo();
  undoManager.redo();
  EXPECT_THAT(numbers.values, UnorderedElementsAre(Pair('a', 4), Pair('b', 2)));
  EXPECT_FALSE(undoManager.canRedo());
  undoManager.undo();
  EXPECT_EQ(numbers.values['a'], 1);
}

TEST(UndoManager, UndoAndRedoCloseTheOpenGroup) {
  Numbers numbers;
  numbers.set('a', 1);
  numbers.undoManager.undo();
  EXPECT_EQ(numbers.values['a'], 0);
  numbers.undoManager.redo();
  EXPECT_EQ(numbers.values['a'], 1);
  numbers.set('a', 2);
  numbers.undoManager.redo();  // nothing to redo, but the group is closed
  numbers.set('a', 3);
  numbers.undoManager.undo();
  EXPECT_EQ(numbers.values['a'], 2);
}

TEST(UndoManager, ANewEditEmptiesTheRedoStackAndEmptyTurnsLeaveNothing) {
  Numbers numbers;
  UndoManager& undoManager = numbers.undoManager;
  undoManager.endTurn();
  undoManager.setActionName(text("nothing to name"));
  undoManager.endTurn();
  EXPECT_FALSE(undoManager.canUndo());
  numbers.set('a', 1);
  undoManager.undo();
  undoManager.endTurn();
  EXPECT_TRUE(undoManager.canRedo());
  EXPECT_EQ(undoManager.redoActionName(), text("Change A"));
  numbers.set('b', 1);
  EXPECT_FALSE(undoManager.canRedo());
  EXPECT_EQ(undoManager.redoActionName(), QString());
  undoManager.undo();
  EXPECT_FALSE(undoManager.canUndo());
}

TEST(UndoManager, TheLastNameOfATurnNamesIt) {
  Numbers numbers;
  numbers.set('a', 1);
  numbers.set('b', 1);
  EXPECT_EQ(numbers.undoManager.undoActionName(), text("Change B"));
  numbers.undoManager.endTurn();
  numbers.undoManager.undo();
  // The handlers ran in reverse order, and the last of them named the step.
  EXPECT_EQ(numbers.undoManager.redoActionName(), text("Change A"));
}

TEST(UndoManager, AHandlerThatRegistersNothingSpendsItsStep) {
  UndoManager undoManager;
  undoManager.registerUndo([] {});
  undoManager.undo();
  EXPECT_FALSE(undoManager.canUndo());
  EXPECT_FALSE(undoManager.canRedo());
}

TEST(UndoManager, HandlersThatEndTurnsOrUndoThemselvesChangeNothing) {
  Numbers numbers;
  UndoManager& undoManager = numbers.undoManager;
  numbers.set('a', 1);
  undoManager.endTurn();
  undoManager.registerUndo([&] {
    undoManager.undo();
    undoManager.redo();
    undoManager.endTurn();
    undoManager.registerUndo([] {});
  });
  undoManager.undo();
  EXPECT_EQ(numbers.values['a'], 1);
  EXPECT_TRUE(undoManager.canUndo());
  EXPECT_TRUE(undoManager.canRedo());
}

TEST(UndoManager, TellsItsMenuOfEveryChange) {
  Numbers numbers;
  UndoManager& undoManager = numbers.undoManager;
  QString undoName = text("-");
  QString redoName = text("-");
  QObject::connect(&undoManager, &UndoManager::changed, [&] {
    undoName = undoManager.undoActionName();
    redoName = undoManager.redoActionName();
  });
  numbers.set('b', 1);
  numbers.set('a', 1);
  EXPECT_EQ(undoName, text("Change A"));
  undoManager.undo();
  EXPECT_EQ(undoName, QString());
  EXPECT_EQ(redoName, text("Change B"));
  undoManager.redo();
  EXPECT_EQ(redoName, QString());
}

/// Counts up once or more for each event it gets.
class Counter : public QObject {
 public:
  Numbers numbers;
  EventTurns turns{numbers.undoManager};
  int editsPerEvent = 1;

  void count() {
    for (int edit = 0; edit < editsPerEvent; ++edit)
      numbers.set('a', numbers.values['a'] + 1);
  }
  void post(QEvent::Type type) { QCoreApplication::postEvent(this, new QEvent(type)); }
  bool event(QEvent* event) override {
    count();
    return QObject::event(event);
  }
};

TEST(EventTurns, EachQueuedInputEventIsAStepOfItsOwn) {
  for (const QEvent::Type type : {QEvent::KeyPress, QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::Wheel,
                                  QEvent::Drop, QEvent::Shortcut, QEvent::TouchUpdate, QEvent::ContextMenu}) {
    Counter counter;
    counter.editsPerEvent = 2;
    counter.post(type);
    counter.post(type);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(counter.numbers.values['a'], 4);
    counter.numbers.undoManager.undo();
    EXPECT_EQ(counter.numbers.values['a'], 2) << "event type " << type;
    counter.numbers.undoManager.undo();
    EXPECT_EQ(counter.numbers.values['a'], 0) << "event type " << type;
  }
}

TEST(EventTurns, EventsThatAreNoTurnJoinTheOneBefore) {
  Counter counter;
  counter.post(QEvent::KeyPress);
  counter.post(QEvent::FocusOut);
  QCoreApplication::sendPostedEvents();
  counter.numbers.undoManager.undo();
  EXPECT_EQ(counter.numbers.values['a'], 0);
}

TEST(EventTurns, QueuedCallsAndTicksAreTurns) {
  Counter counter;
  QObject quiet;  // the counter itself would count the events as well
  for (int call = 0; call < 2; ++call) {
    QMetaObject::invokeMethod(
        &quiet, [&] { counter.count(); }, Qt::QueuedConnection);
  }
  QCoreApplication::sendPostedEvents();
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] { counter.count(); });
  timer.start(0);
  while (counter.numbers.values['a'] < 4)
    QCoreApplication::processEvents();
  for (int left = 3; left >= 0; --left) {
    counter.numbers.undoManager.undo();
    EXPECT_EQ(counter.numbers.values['a'], left);
  }
}

TEST(EventTurns, TheTurnEndsBeforeTheLoopSleeps) {
  Counter counter;
  counter.count();
  // Nothing that is delivered ends the turn here: the loop only wants to sleep.
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &counter,
                   &QCoreApplication::quit);
  QCoreApplication::exec();
  counter.count();
  counter.numbers.undoManager.undo();
  EXPECT_EQ(counter.numbers.values['a'], 1);
}

TEST(EventTurns, AnEventSentOnWhileItIsHandledLosesNoEdit) {
  Counter counter;
  Counter parent;
  counter.post(QEvent::KeyPress);
  struct Passing : QObject {
    QObject* to;
    bool eventFilter(QObject*, QEvent* event) override {
      QCoreApplication::sendEvent(to, event);
      return false;
    }
  } passing;
  passing.to = &parent;
  counter.installEventFilter(&passing);
  QCoreApplication::sendPostedEvents();
  for (Counter* each : {&counter, &parent}) {
    EXPECT_EQ(each->numbers.values['a'], 1);
    each->numbers.undoManager.undo();
    EXPECT_EQ(each->numbers.values['a'], 0);
  }
}

}  // namespace
}  // namespace tamboro::test
