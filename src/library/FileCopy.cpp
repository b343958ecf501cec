#include "library/FileCopy.h"

#include <algorithm>

#include "text/Unicode.h"

namespace tamboro {
namespace {

constexpr int maxNameTries = 10000;

// A new empty file beside `target` under a name that nothing has.
std::unique_ptr<OpenFile> createBeside(FileSystem& files, const Path& target, Path& temporary) {
  for (int number = 1;; ++number) {
    temporary = target.parent_path() / (".tamboro-" + std::to_string(number) + ".tmp");
    try {
      return files.create(temporary);
    } catch (const FileError& error) {
      if (error.code() != std::errc::file_exists || number == maxNameTries) throw;
    }
  }
}

}  // namespace

void removeQuietly(FileSystem& files, const Path& file) {
  try {
    files.removeFile(file);
  } catch (const FileError&) {
  }
}

Path folderOf(const Path& path) {
  return path.has_parent_path() ? path.parent_path() : Path(".");
}

bool isInside(const Path& place, const Path& folder) {
  return std::mismatch(folder.begin(), folder.end(), place.begin(), place.end()).first == folder.end();
}

std::string fileKey(const Path& path) {
  std::string key;
  for (const Path& component : path) {
    const std::string& name = component.native();
    key += fileNameKey(name.substr(0, name.find_last_not_of(". ") + 1)) + "/";
  }
  return key;
}

std::vector<std::string> listedOrNone(const FileSystem& files, const Path& folder) {
  try {
    return files.list(folder);
  } catch (const FileError&) {
    return {};
  }
}

FileStatus sourceStatus(const FileSystem& files, const Path& source) {
  const FileStatus status = files.status(source);
  switch (status.kind) {
    case FileKind::regular:
      return status;
    case FileKind::none:
      throw FileError(std::make_error_code(std::errc::no_such_file_or_directory), source);
    case FileKind::folder:
      throw FileError(std::make_error_code(std::errc::is_a_directory), source);
    case FileKind::other:
      break;
  }
  throw FileError(std::make_error_code(std::errc::operation_not_supported), source);
}

FileStatus targetStatus(const FileSystem& files, const Path& target) {
  const FileStatus status = files.entryStatus(target);
  if (status.kind == FileKind::folder) throw FileError(std::make_error_code(std::errc::is_a_directory), target);
  if (status.kind == FileKind::other) throw FileError(std::make_error_code(std::errc::file_exists), target);
  return status;
}

void replaceFile(FileSystem& files, const Path& target, Durability durability,
                 const std::function<void(OpenFile&)>& fill) {
  targetStatus(files, target);
  Path temporary;
  std::unique_ptr<OpenFile> file;
  try {
    file = createBeside(files, target, temporary);
    fill(*file);
    if (durability == Durability::synced) file->sync();
    file.reset();
    files.rename(temporary, target);
  } catch (const FileError& error) {
    file.reset();
    removeQuietly(files, temporary);
    if (error.path() == temporary) throw FileError(error.code(), target);  // the user knows that one
    throw;
  }
  if (durability == Durability::synced) files.open(folderOf(target))->sync();
}

}  // namespace tamboro
