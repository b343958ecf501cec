#include "views/controls/DraggedPaths.h"

namespace tamboro {

namespace {

/// As bytes: as a QUrl a name that isn't UTF-8 would be lost.
std::optional<Path> localPath(const QByteArray& entry) {
  constexpr QByteArrayView scheme("file://");
  if (entry.left(scheme.size()).toLower() != scheme) return std::nullopt;
  const qsizetype start = entry.indexOf('/', scheme.size());
  const QByteArray host = entry.mid(scheme.size(), start - scheme.size());
  if (start < 0 || !(host.isEmpty() || host == "localhost")) return std::nullopt;
  const QByteArray bytes = QByteArray::fromPercentEncoding(entry.mid(start));
  if (bytes.contains('\0')) return std::nullopt;
  return Path(bytes.toStdString());
}

}  // namespace

std::vector<std::optional<Path>> draggedPaths(const QMimeData& data, std::size_t most) {
  std::vector<std::optional<Path>> paths;
  for (const QByteArray& line : data.data(QStringLiteral("text/uri-list")).split('\n')) {
    if (paths.size() == most) break;
    const QByteArray entry = line.trimmed();
    if (!entry.isEmpty() && !entry.startsWith('#')) paths.push_back(localPath(entry));
  }
  return paths;
}

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

}  // namespace tamboro
