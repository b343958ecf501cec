#include "library/StagingJob.h"

#include "library/FileCopy.h"

namespace tamboro {

void stageAudio(FileSystem& files, const Path& source, const Path& staged) {
  sourceStatus(files, source);
  const std::unique_ptr<OpenFile> from = files.open(source);
  makeFolders(files, staged.parent_path());
  // Not synced: what is staged matters only to the running program, which would not outlive a crash either.
  replaceFile(files, staged, Durability::none, [&](OpenFile& to) { copyContent(*from, to); });
}

}  // namespace tamboro
