#include "views/window/FolderDrop.h"

#include <QApplication>
#include <QDropEvent>
#include <QWidget>

#include "views/window/UriList.h"

namespace tamboro {

bool isFolderHere(const FileSystem& files, const Path& path) {
  try {
    return files.status(path).kind == FileKind::folder;
  } catch (const FileError&) {
    return false;
  }
}

std::optional<Path> droppedFolder(const QMimeData& data, const FileSystem& files) {
  const auto entries = draggedPaths(data, 1);
  const bool isFolder = !entries.empty() && entries.front() && isFolderHere(files, *entries.front());
  return isFolder ? entries.front() : std::nullopt;
}

FolderDrop::FolderDrop(QWidget& content, const FileSystem& files, std::function<void(const Path&)> opened)
    : QObject(&content), content_(content), files_(files), opened_(std::move(opened)) {
  content.setAcceptDrops(true);
  qApp->installEventFilter(this);
}

bool FolderDrop::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
      break;
    default:
      return false;
  }
  auto* widget = qobject_cast<QWidget*>(watched);
  const bool isOurs = widget && (widget == &content_ || content_.isAncestorOf(widget));
  return isOurs && takes(*static_cast<QDropEvent*>(event));
}

bool FolderDrop::takes(QDropEvent& event) {
  const std::optional<Path> folder = droppedFolder(*event.mimeData(), files_);
  if (!folder) return false;
  // Under a sheet the window is not operable; a load would replace what the sheet is about.
  if (QApplication::activeModalWidget()) {
    event.ignore();
    return true;
  }
  event.setDropAction(Qt::CopyAction);
  event.accept();
  if (event.type() == QEvent::Drop)
    QMetaObject::invokeMethod(
        this, [this, path = *folder] { opened_(path); }, Qt::QueuedConnection);
  return true;
}

}  // namespace tamboro
