#pragma once

#include <cstdlib>

#include "platform/FileSystem.h"

namespace tamboro::test {

/// A fresh folder on the real disk, removed with all it holds at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = canonical(std::filesystem::temp_directory_path()) / "tamboro-test-XXXXXX";
    path_ = ::mkdtemp(name.data());
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    remove_all(path_, ignored);
  }
  const Path& path() const { return path_; }
  Path operator/(const Path& name) const { return path_ / name; }

 private:
  Path path_;
};

}  // namespace tamboro::test
