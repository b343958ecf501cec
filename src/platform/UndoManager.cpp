#include "platform/UndoManager.h"

#include <QScopeGuard>
#include <algorithm>
#include <utility>

namespace tamboro {

UndoManager::UndoManager(QObject* parent) : QObject(parent) {}

void UndoManager::registerUndo(Handler handler) {
  if (collecting_ != nullptr) {
    collecting_->handlers.push_back(std::move(handler));
    return;
  }
  open_.handlers.push_back(std::move(handler));
  redoStack_.clear();
  if (open_.handlers.size() == 1) Q_EMIT changed();
}

void UndoManager::setActionName(const QString& name) {
  if (collecting_ != nullptr) {
    collecting_->name = name;
  } else if (!open_.handlers.empty() && open_.name != name) {
    open_.name = name;
    Q_EMIT changed();
  }
}

void UndoManager::endTurn() {
  if (open_.handlers.empty()) return;
  undoStack_.push_back(std::exchange(open_, {}));
}

void UndoManager::undo() {
  run(undoStack_, redoStack_);
}

void UndoManager::redo() {
  run(redoStack_, undoStack_);
}

void UndoManager::run(std::vector<Group>& from, std::vector<Group>& to) {
  if (collecting_ != nullptr) return;
  endTurn();
  if (from.empty()) return;
  Group group = std::move(from.back());
  from.pop_back();
  Group inverse{group.name, {}};
  {
    collecting_ = &inverse;
    std::reverse(group.handlers.begin(), group.handlers.end());
    const auto restore = qScopeGuard([this] { collecting_ = nullptr; });
    for (const Handler& handler : group.handlers)
      handler();
  }
  if (!inverse.handlers.empty()) to.push_back(std::move(inverse));
  Q_EMIT changed();
}

bool UndoManager::canUndo() const {
  return !open_.handlers.empty() || !undoStack_.empty();
}

bool UndoManager::canRedo() const {
  return !redoStack_.empty();
}

QString UndoManager::undoActionName() const {
  if (!open_.handlers.empty()) return open_.name;
  return undoStack_.empty() ? QString() : undoStack_.back().name;
}

QString UndoManager::redoActionName() const {
  return redoStack_.empty() ? QString() : redoStack_.back().name;
}

}  // namespace tamboro
