#include "platform/RealFileSystem.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/TemporaryFolder.h"
#include "support/Tree.h"

namespace tamboro::test {
namespace {

class RealFileSystem : public ::testing::Test {
 protected:
  TemporaryFolder folder;
  std::unique_ptr<FileSystem> files = makeRealFileSystem();
};

// A pipe without a writer would block, one with a writer would lose bytes, /dev/zero has no end.
TEST_F(RealFileSystem, NeitherReadsNorWaitsForPipesAndDevices) {
  const Path pipe = folder / "pipe";
  const Path fed = folder / "fed";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600) + ::mkfifo(fed.c_str(), 0600), 0);
  const int writer = ::open(fed.c_str(), O_RDWR | O_CLOEXEC);
  char buffer[8] = "bytes";
  ASSERT_EQ(::write(writer, buffer, 5), 5);
  for (const Path& path : {pipe, fed, Path("/dev/zero")}) {
    std::string content;
    EXPECT_EQ(files->status(path).kind, FileKind::other) << path;
    EXPECT_THROW(files->read(path, content), FileError) << path;
    EXPECT_THROW(files->rooted(path), FileError) << path;
  }
  EXPECT_EQ(::read(writer, buffer, sizeof buffer), 5);
  ::close(writer);
}

TEST_F(RealFileSystem, ReadsFilesWhoseSizeIsNotTold) {
  EXPECT_THAT(readFile(*files, "/proc/self/status"), ::testing::HasSubstr("VmSize"));
}

TEST_F(RealFileSystem, ClosesWhatItOpens) {
  const auto openDescriptors = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator());
  };
  const auto before = openDescriptors();
  writeTree(*files, folder / "tree", {{"a/b", "x"}, {"c", ""}});
  {
    const auto tree = files->rooted(folder / "tree");
    files->rename(folder / "tree", folder / "moved");
    EXPECT_EQ(tree->resolved("a"), folder / "moved/a") << "where the folder is now";
    EXPECT_EQ(readTree(*tree, {}).size(), 2U);
    std::string content;
    EXPECT_THROW(tree->read("a", content), FileError);
    EXPECT_THROW(tree->list("c"), FileError);
    EXPECT_GE(files->space(folder.path()).clusterSize, 512U);
    EXPECT_EQ(files->volumeSerial(folder.path()), tree->volumeSerial("a"));
  }
  EXPECT_EQ(openDescriptors(), before);
}

}  // namespace
}  // namespace tamboro::test
