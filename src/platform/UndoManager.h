#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <vector>

namespace tamboro {

/// An unlimited undo stack of handlers, grouped by turn: all that is registered between two ends of a turn is one
/// step. What a handler registers while an undo runs goes to the redo stack, and the other way round. Main thread
/// only.
class UndoManager : public QObject {
  Q_OBJECT

 public:
  using Handler = std::function<void()>;

  explicit UndoManager(QObject* parent = nullptr);

  /// Adds a handler to the open group. A new edit empties the redo stack.
  void registerUndo(Handler handler);
  /// Names the open group, or the group that a running undo or redo is making. Without one this does nothing.
  void setActionName(const QString& name);
  /// Closes the open group. Empty groups are never kept.
  void endTurn();

  /// Close the open group and run the handlers of the last one in reverse order. Nothing to run: nothing happens.
  void undo();
  void redo();
  bool canUndo() const;
  bool canRedo() const;
  /// Of the step that `undo` or `redo` would run; empty without one.
  QString undoActionName() const;
  QString redoActionName() const;

 Q_SIGNALS:
  /// `canUndo`, `canRedo` or a name may have changed.
  void changed();

 private:
  struct Group {
    QString name;
    std::vector<Handler> handlers;
  };
  void run(std::vector<Group>& from, std::vector<Group>& to);

  std::vector<Group> undoStack_;
  std::vector<Group> redoStack_;
  Group open_;
  Group* collecting_ = nullptr;  ///< the group a running undo or redo fills
};

}  // namespace tamboro
