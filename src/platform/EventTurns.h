#pragma once

#include <QObject>

namespace tamboro {

class UndoManager;

/// Ends the undo manager's turn before each delivered input event, timer tick or queued call and when the event loop
/// is about to sleep. Without it several queued key strokes would melt into one undo step.
class EventTurns : public QObject {
  Q_OBJECT

 public:
  /// Watches the application of the calling thread, which must exist.
  explicit EventTurns(UndoManager& undoManager, QObject* parent = nullptr);
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  UndoManager& undoManager_;
};

}  // namespace tamboro
