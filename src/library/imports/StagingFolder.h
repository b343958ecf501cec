#pragma once

#include <memory>
#include <set>
#include <vector>

#include "library/contents/CardContent.h"

namespace tamboro {

/// The folder on the computer in which imported audio waits for the save. What jobs still read there must neither go
/// nor be replaced; they hold on to it. Main thread only.
class StagingFolder {
 public:
  /// Makes the folder; where that fails, the import that needs it tells what is wrong.
  StagingFolder(FileSystem& files, Path folder);

  const Path& path() const { return folder_; }
  /// The files are in use until the last owner lets go of them.
  void hold(std::shared_ptr<const StagedFiles> files);
  /// The file is in use as long as what is returned lives, if it lies in here.
  std::shared_ptr<const StagedFiles> hold(const Path& file);
  std::set<Path> inUse() const;
  /// Removes a file that nothing needs any more, quietly: one that is left does no harm.
  void remove(const Path& file);

 private:
  FileSystem& files_;
  Path folder_;
  std::vector<std::weak_ptr<const StagedFiles>> held_;
};

}  // namespace tamboro
