// What the tests of other folders rely on in the file systems made for them, beyond the contract of all.

#include <gmock/gmock.h>

#include "support/FailingFileSystem.h"
#include "support/MemoryFileSystem.h"
#include "support/Tree.h"

namespace tamboro::test {
namespace {

TEST(MemoryFileSystem, AReplacedCardIsAnotherVolumeAtTheSamePath) {
  MemoryFileSystem files;
  files.mount("/card", {.serial = "fat:1"});
  writeFile(files, "/card/a", "first");
  const auto held = files.rooted("/card");
  files.mount("/card", {.serial = "fat:2", .readOnly = true});
  EXPECT_EQ(files.volumeSerial("/card") + held->volumeSerial({}), "fat:2fat:1");
  EXPECT_EQ(readFile(*held, "a"), "first");
  EXPECT_THROW(files.create("/card/new"), FileError);
}

// Else a failure sweep would run without a failure.
TEST(FailingFileSystem, FailsEachOperationOfItsChildrenAndFilesInTurn) {
  for (std::uint64_t number = 1; number <= 4; ++number) {
    MemoryFileSystem memory;
    FailingFileSystem files(memory);
    files.failAt(number);
    EXPECT_THROW(
        {
          const auto file = files.rooted("/")->create("new");
          file->write("bytes");
          file->sync();
        },
        FileError);
    EXPECT_EQ(files.count(), number);
    EXPECT_EQ(memory.status("/new").size, number < 3 ? 0U : number == 3 ? 2U : 5U);
    EXPECT_NO_THROW(files.status("/"));  // only one fails
    files.failFrom(2);
    EXPECT_NO_THROW(files.status("/"));
    EXPECT_THROW(files.status("/"), FileError);
    EXPECT_THROW(files.status("/"), FileError);
  }
}

}  // namespace
}  // namespace tamboro::test
