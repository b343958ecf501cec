#include "views/samples/WaveDrop.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QDropEvent>

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
    : DropFilter(list), files_(files), holdsCard_(std::move(holdsCard)), dropped_(std::move(dropped)) {}

bool WaveDrop::answer(QDropEvent& event, const QWidget& over) {
  // Text is for a field; every file is the list's, or a field would write its place into the sample's name.
  const auto* area = qobject_cast<const QAbstractScrollArea*>(&place());
  const bool isField = &over != &place() && !(area && &over == area->viewport());
  if (isField && !event.mimeData()->hasUrls()) return false;
  const std::vector<SoundSource>& found = sounds(event);
  const bool isTaken =
      !found.empty() && event.possibleActions().testFlag(Qt::CopyAction) && !QApplication::activeModalWidget();
  setTargeted(isTaken && event.type() != QEvent::Drop);
  if (!isTaken) {
    if (found.empty() && droppedFolder(*event.mimeData(), files_)) return false;
    event.ignore();
    return true;
  }
  take(event);
  if (event.type() == QEvent::Drop)
    afterwards([this, found, folder = droppedFolder(*event.mimeData(), files_)] { dropped_(found, folder); });
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
