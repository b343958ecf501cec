#include "platform/UndoManager.h"

#include <gmock/gmock.h>

#include <map>

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

}  // namespace
}  // namespace tamboro::test
