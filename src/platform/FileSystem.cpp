#include "platform/FileSystem.h"

#include <QString>
#include <utility>

namespace tamboro {

namespace {

/// The last two names of a path: enough to know a file by, short enough for an alert.
std::string shownName(const Path& path) {
  const Path name = path.parent_path().filename() / path.filename();
  return QString::fromUtf8(QByteArray::fromStdString(name.string())).toStdString();
}

std::string errorText(const std::error_code& code, const Path& path) {
  if (path.empty()) return code.message();
  return code.message() + " (" + shownName(path) + ")";
}

bool isFolder(const FileSystem& files, const Path& path) {
  return files.status(path).kind == FileKind::folder;
}

}  // namespace

FileError::FileError(std::error_code code, Path path)
    : code_(code), path_(std::move(path)), text_(errorText(code_, path_)) {}

void OpenFile::append(OpenFile& source) {
  // One buffer a thread: a backup copies thousands of small files.
  constexpr std::size_t chunkSize = 256 * 1024;
  thread_local std::string buffer(chunkSize, '\0');
  while (const std::size_t count = source.read(buffer.data(), buffer.size()))
    write(std::string_view(buffer).substr(0, count));
}

void makeFolders(FileSystem& files, const Path& folder) {
  std::vector<Path> missing;
  for (Path path = folder; !path.empty() && !isFolder(files, path); path = path.parent_path()) {
    missing.push_back(path);
    if (path == path.parent_path()) break;
  }
  for (; !missing.empty(); missing.pop_back()) {
    try {
      files.makeFolder(missing.back());
    } catch (const FileError& error) {
      // Another process may have been faster, and "a/.." stands as soon as "a" does.
      if (error.code() != std::errc::file_exists || !isFolder(files, missing.back())) throw;
    }
  }
}

void removeTree(FileSystem& files, const Path& path) {
  if (files.entryStatus(path).kind != FileKind::folder) return files.removeFile(path);
  struct Level {
    Path folder;
    std::vector<std::string> names;
  };
  // A stack of our own: the depth of a tree on disk is not ours to limit.
  std::vector<Level> levels;
  levels.push_back({path, files.list(path)});
  while (!levels.empty()) {
    Level& level = levels.back();
    if (level.names.empty()) {
      files.removeFolder(level.folder);
      levels.pop_back();
      continue;
    }
    const Path entry = level.folder / level.names.back();
    level.names.pop_back();
    if (files.entryStatus(entry).kind == FileKind::folder) {
      levels.push_back({entry, files.list(entry)});
    } else {
      files.removeFile(entry);
    }
  }
}

}  // namespace tamboro
