#include "platform/FolderBookmark.h"

namespace tamboro {

std::optional<QByteArray> makeBookmark(const Path& folder) {
  if (folder.empty()) return std::nullopt;
  return QByteArray::fromStdString(folder.string());
}

std::optional<Path> resolveBookmark(const FileSystem& files, const QByteArray& bookmark) {
  if (bookmark.isEmpty() || bookmark.contains('\0')) return std::nullopt;
  Path folder(bookmark.toStdString());
  try {
    // The name inside the folder is answered only to who may enter it.
    if (files.status(folder / ".").kind == FileKind::folder) return folder;
  } catch (const FileError&) {
  }
  return std::nullopt;
}

}  // namespace tamboro
