#pragma once

#include "platform/FileSystem.h"

namespace tamboro::test {

/// A fresh folder on the real disk, removed with all it holds at the end.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  const Path& path() const { return path_; }
  Path operator/(const Path& name) const { return path_ / name; }

 private:
  Path path_;
};

}  // namespace tamboro::test
