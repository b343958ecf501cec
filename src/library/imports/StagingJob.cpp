#include "library/imports/StagingJob.h"

#include "library/FileCopy.h"

namespace tamboro {

namespace {

/// Null where something stands already. The folder is there but for the first file of a bank.
std::unique_ptr<OpenFile> created(FileSystem& files, const Path& file, bool isFolderKnown = false) {
  try {
    return files.create(file);
  } catch (const FileError& error) {
    if (error.code() == std::errc::file_exists) return nullptr;
    if (error.code() != std::errc::no_such_file_or_directory || isFolderKnown) throw;
  }
  makeFolders(files, file.parent_path());
  return created(files, file, true);
}

}  // namespace

// Nothing is synced: what is staged matters only to the running program, which would not outlive a crash either.
void stageAudio(FileSystem& files, const Path& source, const Path& staged) {
  sourceStatus(files, source);
  const std::unique_ptr<OpenFile> from = files.open(source);
  std::unique_ptr<OpenFile> to = created(files, staged);
  if (!to) return replaceFile(files, staged, Durability::none, [&](OpenFile& file) { file.append(*from); });
  // Nobody reads a file that is being staged, so a new one needs no other name meanwhile.
  try {
    to->append(*from);
  } catch (...) {
    to.reset();
    removeQuietly(files, staged);
    throw;
  }
}

}  // namespace tamboro
