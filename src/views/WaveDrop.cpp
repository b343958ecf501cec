#include "views/WaveDrop.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QDropEvent>

#include "views/UriList.h"

namespace tamboro {

std::vector<std::filesystem::path> droppedWaves(const QMimeData& data) {
  std::vector<std::filesystem::path> waves;
  for (std::optional<std::filesystem::path>& path : draggedPaths(data)) {
    const QString extension = path ? QString::fromStdString(path->extension().native()) : QString();
    if (extension.toLower() == QLatin1String(".wav")) waves.push_back(std::move(*path));
  }
  return waves;
}

WaveDrop::WaveDrop(QWidget& list, std::function<void(std::vector<std::filesystem::path>)> dropped)
    : QObject(&list), list_(list), dropped_(std::move(dropped)) {
  list.setAcceptDrops(true);
  qApp->installEventFilter(this);
}

bool WaveDrop::eventFilter(QObject* watched, QEvent* event) {
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
  if (!over || !(over == &list_ || list_.isAncestorOf(over))) return false;
  if (event->type() != QEvent::DragLeave) return answer(*static_cast<QDropEvent*>(event), *over);
  setTargeted(false);
  return false;
}

bool WaveDrop::answer(QDropEvent& event, const QWidget& over) {
  // Text is for a field; every file is the list's, or a field would write its place into the sample's name.
  const auto* area = qobject_cast<QAbstractScrollArea*>(&list_);
  const bool isField = &over != &list_ && !(area && &over == area->viewport());
  if (isField && !event.mimeData()->hasUrls()) return false;
  std::vector<std::filesystem::path> waves = droppedWaves(*event.mimeData());
  // Copied, whatever keys are held: what is moved, its source would delete.
  const bool isTaken =
      !waves.empty() && event.possibleActions().testFlag(Qt::CopyAction) && !QApplication::activeModalWidget();
  setTargeted(isTaken && event.type() != QEvent::Drop);
  if (!isTaken) {
    event.ignore();
    return true;
  }
  event.setDropAction(Qt::CopyAction);
  event.accept();
  if (event.type() == QEvent::Drop)
    QMetaObject::invokeMethod(
        this, [this, files = std::move(waves)]() mutable { dropped_(std::move(files)); }, Qt::QueuedConnection);
  return true;
}

void WaveDrop::setTargeted(bool isTargeted) {
  if (isTargeted == isTargeted_) return;
  isTargeted_ = isTargeted;
  Q_EMIT targetedChanged(isTargeted);
}

}  // namespace tamboro
