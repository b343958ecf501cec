#include "views/FolderDrop.h"

#include <QApplication>
#include <QDropEvent>
#include <QWidget>

namespace tamboro {

namespace {

/// The list's first entry as bytes: as a QUrl a name that isn't UTF-8 would be lost.
std::optional<Path> firstLocalPath(const QByteArray& uriList) {
  for (const QByteArray& line : uriList.split('\n')) {
    const QByteArray entry = line.trimmed();
    if (entry.isEmpty() || entry.startsWith('#')) continue;
    constexpr QByteArrayView scheme("file://");
    if (entry.left(scheme.size()).toLower() != scheme) return std::nullopt;
    const qsizetype start = entry.indexOf('/', scheme.size());
    const QByteArray host = entry.mid(scheme.size(), start - scheme.size());
    if (start < 0 || !(host.isEmpty() || host == "localhost")) return std::nullopt;
    const QByteArray bytes = QByteArray::fromPercentEncoding(entry.mid(start));
    if (bytes.contains('\0')) return std::nullopt;
    return Path(bytes.toStdString());
  }
  return std::nullopt;
}

}  // namespace

std::optional<Path> droppedFolder(const QMimeData& data, const FileSystem& files) {
  const std::optional<Path> path = firstLocalPath(data.data(QStringLiteral("text/uri-list")));
  if (!path) return std::nullopt;
  try {
    return files.status(*path).kind == FileKind::folder ? path : std::nullopt;
  } catch (const FileError&) {
    return std::nullopt;
  }
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
