// What the tests of other folders rely on in the file systems made for them.

#include <gmock/gmock.h>

#include "support/FailingFileSystem.h"
#include "support/MemoryFileSystem.h"
#include "support/Tree.h"

namespace tamboro::test {
namespace {

using ::testing::ElementsAre;

TEST(MemoryFileSystem, AReplacedCardIsAnotherVolumeAtTheSamePath) {
  MemoryFileSystem files;
  files.mount("/media/card", {.serial = "fat:1", .space = {1000, 512}});
  writeFile(files, "/media/card/a", "first");
  const auto held = files.rooted("/media/card");
  EXPECT_NE(files.volumeSerial("/"), files.volumeSerial("/media/card/a"));
  EXPECT_EQ(files.space("/media/card").clusterSize, 512U);

  files.mount("/media/card", {.serial = "fat:2"});
  EXPECT_EQ(files.volumeSerial("/media/card"), "fat:2");
  EXPECT_EQ(held->volumeSerial({}), "fat:1");
  EXPECT_THAT(readTree(files, "/media/card"), IsTree(Tree{}));
  EXPECT_EQ(readFile(*held, "a"), "first");

  writeFile(files, "/local", "");
  EXPECT_THROW(files.rename("/local", "/media/card/local"), FileError);
  files.setVolume("/media/card", {.serial = "fat:2", .readOnly = true});
  EXPECT_THROW(files.create("/media/card/new"), FileError);
}

TEST(MemoryFileSystem, RecordsChangesInOrder) {
  MemoryFileSystem files;
  files.makeFolder("/card");
  files.clearOperations();
  const auto card = files.rooted("/card");
  {
    const auto file = card->create("t");
    file->write("x");
    file->startWriteback();
    card->rename("t", "a");
    file->sync();
  }
  card->open({})->sync();
  EXPECT_THROW(card->removeFile("none"), FileError);
  card->removeFile("a");
  EXPECT_THAT(files.operations(), ElementsAre("create t", "write t", "writeback t", "rename t a", "sync t", "close t",
                                              "open ", "sync ", "close ", "removeFile a"));
}

/// Eight operations through the file system, a rooted one and open files.
void work(FileSystem& files) {
  const auto card = files.rooted("/card");
  {
    const auto file = card->create("new");
    file->write("bytes");
    file->sync();
  }
  card->rename("new", "file");
  std::string content;
  card->read("file", content);
  card->open("file")->sync();
}

TEST(FailingFileSystem, FailsEachOperationOfItsChildrenAndFilesInTurn) {
  constexpr std::uint64_t operations = 8;
  for (std::uint64_t number = 1; number <= operations + 1; ++number) {
    MemoryFileSystem memory;
    memory.makeFolder("/card");
    FailingFileSystem files(memory);
    files.failAt(number, std::errc::no_space_on_device);
    if (number > operations) {
      EXPECT_NO_THROW(work(files));
      EXPECT_EQ(files.count(), operations);
      continue;
    }
    try {
      work(files);
      ADD_FAILURE() << number << " did not fail";
    } catch (const FileError& error) {
      EXPECT_EQ(error.code(), std::errc::no_space_on_device);
    }
    EXPECT_EQ(files.count(), number);
    if (number == 3) {
      EXPECT_EQ(readFile(memory, "/card/new"), "by");
    }
    EXPECT_NO_THROW(files.status("/card"));  // only one fails
  }
}

TEST(FailingFileSystem, APulledCardStaysPulledAndAPickedOneIsPicked) {
  MemoryFileSystem memory;
  memory.makeFolder("/card");
  FailingFileSystem files(memory);
  files.failFrom(2);
  EXPECT_NO_THROW(files.status("/"));
  EXPECT_THROW(files.status("/"), FileError);
  EXPECT_THROW(files.makeFolder("/card/x"), FileError);

  files.failWhere(
      [](FileOperation operation, const Path& path) { return operation == FileOperation::list && path == "/card"; });
  EXPECT_THROW(files.list("/card"), FileError);
  EXPECT_NO_THROW(files.list("/"));
  EXPECT_THAT(memory.list("/card"), ::testing::IsEmpty());
  files.failNothing();
  EXPECT_NO_THROW(files.list("/card"));
}

TEST(Tree, ToldDifferencesNameTheFileAndTheByte) {
  const std::string text =
      difference({{"a", "one"}, {"b", "same"}, {"c", ""}}, {{"a", "onx"}, {"b", "same"}, {"d", ""}});
  EXPECT_THAT(text, ::testing::HasSubstr("a differs at byte 2"));
  EXPECT_THAT(text, ::testing::HasSubstr("c is missing"));
  EXPECT_THAT(text, ::testing::HasSubstr("d is there and not expected"));
  EXPECT_THAT(text, ::testing::Not(::testing::HasSubstr("b ")));
}

}  // namespace
}  // namespace tamboro::test
