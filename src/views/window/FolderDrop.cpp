#include "views/window/FolderDrop.h"

#include <QApplication>
#include <QDropEvent>

namespace tamboro {

FolderDrop::FolderDrop(QWidget& content, const FileSystem& files, std::function<void(const Path&)> opened)
    : DropFilter(content), files_(files), opened_(std::move(opened)) {}

bool FolderDrop::answer(QDropEvent& event, const QWidget&) {
  const std::optional<Path> folder = droppedFolder(*event.mimeData(), files_);
  if (!folder) return false;
  // Under a sheet the window is not operable; a load would replace what the sheet is about.
  if (QApplication::activeModalWidget()) {
    event.ignore();
    return true;
  }
  take(event);
  if (event.type() == QEvent::Drop) afterwards([this, path = *folder] { opened_(path); });
  return true;
}

}  // namespace tamboro
