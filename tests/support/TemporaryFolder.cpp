#include "support/TemporaryFolder.h"

#include <random>

namespace tamboro::test {

TemporaryFolder::TemporaryFolder() {
  const Path parent = std::filesystem::canonical(std::filesystem::temp_directory_path());
  std::random_device random;
  do {
    path_ = parent / ("tamboro-test-" + std::to_string(random()));
  } while (!std::filesystem::create_directory(path_));
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace tamboro::test
