#include "library/imports/StagingFolder.h"

#include <utility>

#include "library/FileCopy.h"

namespace tamboro {

StagingFolder::StagingFolder(FileSystem& files, Path folder) : files_(files), folder_(std::move(folder)) {
  try {
    makeFolders(files_, folder_);
  } catch (const FileError&) {
    // Told by the import that meets it again.
  }
}

void StagingFolder::hold(std::shared_ptr<const StagedFiles> files) {
  std::erase_if(held_, [](const auto& held) { return held.expired(); });
  held_.push_back(std::move(files));
}

std::shared_ptr<const StagedFiles> StagingFolder::hold(const Path& file) {
  if (!isInside(file, folder_)) return nullptr;
  auto held = std::make_shared<const StagedFiles>(StagedFiles{{0, file}});
  hold(held);
  return held;
}

std::set<Path> StagingFolder::inUse() const {
  std::set<Path> inUse;
  for (const auto& weak : held_) {
    const auto files = weak.lock();
    if (!files) continue;
    for (const auto& [id, file] : *files)
      inUse.insert(file);
  }
  return inUse;
}

void StagingFolder::remove(const Path& file) {
  removeQuietly(files_, file);
}

}  // namespace tamboro
