#include "views/window/UriList.h"

namespace tamboro {

namespace {

/// As bytes: as a QUrl a name that isn't UTF-8 would be lost.
std::optional<std::filesystem::path> localPath(const QByteArray& entry) {
  constexpr QByteArrayView scheme("file://");
  if (entry.left(scheme.size()).toLower() != scheme) return std::nullopt;
  const qsizetype start = entry.indexOf('/', scheme.size());
  const QByteArray host = entry.mid(scheme.size(), start - scheme.size());
  if (start < 0 || !(host.isEmpty() || host == "localhost")) return std::nullopt;
  const QByteArray bytes = QByteArray::fromPercentEncoding(entry.mid(start));
  if (bytes.contains('\0')) return std::nullopt;
  return std::filesystem::path(bytes.toStdString());
}

}  // namespace

std::vector<std::optional<std::filesystem::path>> draggedPaths(const QMimeData& data, std::size_t most) {
  std::vector<std::optional<std::filesystem::path>> paths;
  for (const QByteArray& line : data.data(QStringLiteral("text/uri-list")).split('\n')) {
    if (paths.size() == most) break;
    const QByteArray entry = line.trimmed();
    if (!entry.isEmpty() && !entry.startsWith('#')) paths.push_back(localPath(entry));
  }
  return paths;
}

}  // namespace tamboro
