#include "views/samples/WaveDrop.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QDropEvent>

#include "views/window/FolderDrop.h"
#include "views/window/UriList.h"

namespace tamboro {

std::vector<SoundSource> droppedSounds(const QMimeData& data, const FileSystem& files,
                                       const std::function<bool(const Path&)>& holdsCard) {
  std::vector<SoundSource> sounds;
  for (std::optional<Path>& path : draggedPaths(data)) {
    if (!path) continue;
    const bool isFolder = isFolderHere(files, *path);
    if (isFolder ? !holdsCard(*path) : isWaveName(*path)) sounds.push_back({std::move(*path), isFolder});
  }
  return sounds;
}

WaveDrop::WaveDrop(QWidget& list, const FileSystem& files, std::function<bool(const Path&)> holdsCard, Dropped dropped)
    : QObject(&list), list_(list), files_(files), holdsCard_(std::move(holdsCard)), dropped_(std::move(dropped)) {
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
  const std::vector<SoundSource>& found = sounds(event);
  // Copied, whatever keys are held: what is moved, its source would delete.
  const bool isTaken =
      !found.empty() && event.possibleActions().testFlag(Qt::CopyAction) && !QApplication::activeModalWidget();
  setTargeted(isTaken && event.type() != QEvent::Drop);
  if (!isTaken) {
    if (found.empty() && droppedFolder(*event.mimeData(), files_)) return false;
    event.ignore();
    return true;
  }
  event.setDropAction(Qt::CopyAction);
  event.accept();
  if (event.type() == QEvent::Drop)
    QMetaObject::invokeMethod(
        this, [this, found, folder = droppedFolder(*event.mimeData(), files_)] { dropped_(found, folder); },
        Qt::QueuedConnection);
  return true;
}

const std::vector<SoundSource>& WaveDrop::sounds(const QDropEvent& event) {
  const QByteArray items = event.mimeData()->data(QStringLiteral("text/uri-list"));
  if (event.type() == QEvent::DragEnter || items != askedFor_) {
    askedFor_ = items;
    sounds_ = droppedSounds(*event.mimeData(), files_, holdsCard_);
  }
  return sounds_;
}

void WaveDrop::setTargeted(bool isTargeted) {
  if (isTargeted == isTargeted_) return;
  isTargeted_ = isTargeted;
  Q_EMIT targetedChanged(isTargeted);
}

}  // namespace tamboro
