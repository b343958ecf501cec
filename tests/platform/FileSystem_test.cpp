#include "platform/FileSystem.h"

#include <gmock/gmock.h>

#include "platform/FolderBookmark.h"
#include "platform/RealFileSystem.h"
#include "support/MemoryFileSystem.h"
#include "support/TemporaryFolder.h"
#include "support/Tree.h"

namespace tamboro::test {
namespace {

using ::testing::ElementsAre;

/// What the store leans on, alike on the disk and in the memory that stands for it in the tests of other folders.
class FileSystemContract : public ::testing::TestWithParam<bool> {
 protected:
  TemporaryFolder folder;
  Path root = folder.path();
  MemoryFileSystem* memory = GetParam() ? new MemoryFileSystem : nullptr;
  std::unique_ptr<FileSystem> owner{memory};
  FileSystem& files = memory != nullptr ? *owner : *(owner = makeRealFileSystem());

  FileSystemContract() { makeFolders(files, root); }
  void addLink(const std::string& link, const Path& target) {
    memory != nullptr ? memory->addLink(root / link, target) : std::filesystem::create_symlink(target, root / link);
  }
  Path put(const std::string& name, const std::string& bytes = {}) {
    writeFile(files, root / name, bytes);
    return root / name;
  }
  static std::error_code errorOf(const std::function<void()>& operation) {
    try {
      operation();
    } catch (const FileError& error) {
      return error.code();
    }
    return {};
  }
};

INSTANTIATE_TEST_SUITE_P(, FileSystemContract, ::testing::Bool(),
                         [](const auto& place) { return place.param ? "InMemory" : "OnDisk"; });

TEST_P(FileSystemContract, TellsWhatStandsAtAPathAndWhereItLeads) {
  put("real/file", "12345");
  addLink("link", root / "real");
  addLink("name", "real/file");
  addLink("dangling", "nowhere");
  addLink("loop", "loop");
  const std::tuple<const char*, FileKind, FileKind> cases[] = {{"real/file", FileKind::regular, FileKind::regular},
                                                               {".", FileKind::folder, FileKind::folder},
                                                               {"real/file/below", FileKind::none, FileKind::none},
                                                               {"name", FileKind::regular, FileKind::other},
                                                               {"dangling", FileKind::none, FileKind::other}};
  for (const auto& [name, followed, entry] : cases) {
    EXPECT_EQ(files.status(root / name).kind, followed) << name;
    EXPECT_EQ(files.entryStatus(root / name).kind, entry) << name;
  }
  EXPECT_EQ(files.status(root / "name").size, 5U);
  EXPECT_EQ(files.status(root).size, 0U);
  EXPECT_THROW(files.status(root / "loop"), FileError);

  EXPECT_EQ(files.resolved(root / "link/../real/"), root / "real");
  EXPECT_EQ(files.resolved(root / "link/new/folder/"), root / "real/new/folder");
  EXPECT_THROW(files.resolved(root / "loop/x"), FileError);
}

TEST_P(FileSystemContract, ListsNamesAsBytesInOrder) {
  for (const char* name : {"b", ".hidden", "B", "\xFF\xFE.spd", "\xC3\xA4"})
    put(name);
  EXPECT_THAT(files.list(root), ElementsAre(".hidden", "B", "b", "\xC3\xA4", "\xFF\xFE.spd"));
  EXPECT_EQ(errorOf([&] { files.list(root / "b"); }), std::errc::not_a_directory);
  EXPECT_EQ(errorOf([&] { files.list(root / "c"); }), std::errc::no_such_file_or_directory);
}

TEST_P(FileSystemContract, WritesNewFilesAndNeverOverOldOnes) {
  const auto file = files.create(root / "new");
  file->write("ab");
  file->startWriteback();
  file->write(std::string(100'000, 'c'));
  file->sync();
  files.open(root)->sync();
  std::string content = "left over from the file before";
  files.read(put("empty"), content);
  EXPECT_EQ(content, "");
  EXPECT_EQ(readFile(files, root / "new"), "ab" + std::string(100'000, 'c'));
  EXPECT_EQ(errorOf([&] { files.read(root, content); }), std::errc::is_a_directory);

  addLink("dangling", "elsewhere");
  for (const char* there : {"new", "dangling"})
    EXPECT_EQ(errorOf([&] { files.create(root / there); }), std::errc::file_exists);
  EXPECT_EQ(files.status(root / "elsewhere").kind, FileKind::none);
}

TEST_P(FileSystemContract, RenamesOverFilesAndRemovesButFollowsNoLink) {
  const auto held = files.open(put("old", "old"));
  files.rename(put("new", "new"), root / "old");
  EXPECT_THAT(readTree(files, root), IsTree(Tree{{"old", "new"}}));
  char buffer[3];
  EXPECT_EQ(std::string(buffer, held->read(buffer, 3)), "old");  // what is held open outlives its name
  EXPECT_EQ(held->read(buffer, 3), 0U);

  makeFolders(files, root / "tree/a/../b/");
  EXPECT_EQ(errorOf([&] { files.makeFolder(root / "tree"); }), std::errc::file_exists);
  EXPECT_TRUE(errorOf([&] { makeFolders(files, root / "old/below"); }));
  EXPECT_EQ(errorOf([&] { files.rename(root / "old", root / "tree"); }), std::errc::is_a_directory);
  EXPECT_EQ(errorOf([&] { files.rename(root / "none", root / "old"); }), std::errc::no_such_file_or_directory);
  EXPECT_EQ(errorOf([&] { files.removeFile(root / "tree"); }), std::errc::is_a_directory);
  EXPECT_EQ(errorOf([&] { files.removeFolder(root / "tree"); }), std::errc::directory_not_empty);
  put("kept/file");
  addLink("tree/b/link", root / "kept");
  addLink("link", root / "kept");
  files.rename(root / "tree", root / "moved");
  removeTree(files, root / "moved");
  removeTree(files, root / "link");
  EXPECT_THAT(files.list(root), ElementsAre("kept", "old"));
  EXPECT_THAT(readTree(files, root), IsTree(Tree{{"kept/file", ""}, {"old", "new"}}));
}

TEST_P(FileSystemContract, RootedReachesTheFolderItHoldsAndNoReplacement) {
  put("card/KIT/kit000.spd", "first card");
  const auto card = files.rooted(root / "card");
  files.rename(root / "card", root / "pulled");
  put("card/KIT/kit000.spd", "second card");
  EXPECT_EQ(readFile(*card, "KIT/kit000.spd"), "first card");
  writeFile(*card, "KIT/kit001.spd", "new");
  card->makeFolder("temp");
  card->rename("KIT/kit001.spd", "temp/kit");
  card->open({})->sync();
  EXPECT_THAT(card->list({}), ElementsAre("KIT", "temp"));
  EXPECT_EQ(readFile(*card->rooted("KIT"), "kit000.spd"), "first card");
  EXPECT_THAT(readTree(files, root), IsTree(Tree{{"card/KIT/kit000.spd", "second card"},
                                                 {"pulled/KIT/kit000.spd", "first card"},
                                                 {"pulled/temp/kit", "new"}}));
  EXPECT_THROW(files.rooted(root / "none"), FileError);
  EXPECT_THROW(files.list({}), FileError);  // only a rooted one has a folder of its own
}

// Else a failure sweep would run without a failure.
TEST(MemoryFileSystem, FailsEachOperationOfItsChildrenAndFilesInTurn) {
  for (std::uint64_t number = 1; number <= 4; ++number) {
    MemoryFileSystem files;
    files.failAt(number);
    EXPECT_THROW(
        {
          const auto file = files.rooted("/")->create("new");
          file->write("bytes");
          file->sync();
        },
        FileError);
    EXPECT_EQ(files.count(), number);
    EXPECT_EQ(files.status("/new").size, number < 3 ? 0U : number == 3 ? 2U : 5U);  // only one fails
    files.failFrom(2);
    EXPECT_NO_THROW(files.status("/"));
    EXPECT_THROW(files.status("/"), FileError);
    EXPECT_THROW(files.status("/"), FileError);
  }
}

TEST(FolderBookmark, ResolvesWhileTheFolderIsThereAndCanBeEntered) {
  MemoryFileSystem files;
  const Path folder = "/c\xFFrd";
  const QByteArray bookmark = makeBookmark(folder).value();
  writeFile(files, folder, "a file");
  EXPECT_EQ(resolveBookmark(files, bookmark), std::nullopt);
  files.removeFile(folder);
  files.makeFolder(folder);
  EXPECT_EQ(resolveBookmark(files, bookmark), folder);
  files.failFrom(1, std::errc::permission_denied);
  EXPECT_EQ(resolveBookmark(files, bookmark), std::nullopt);
}

TEST(FileError, SaysTheSystemsMessageAndWhichFile) {
  const auto text = [](const Path& path) {
    return std::string(FileError(std::make_error_code(std::errc::no_space_on_device), path).what());
  };
  EXPECT_EQ(text("/media/card/KIT/kit001.spd"), "No space left on device (KIT/kit001.spd)");
  EXPECT_EQ(text("kit\xFF.spd"), "No space left on device (kit\xEF\xBF\xBD.spd)");
  EXPECT_EQ(text(""), "No space left on device");
}

}  // namespace
}  // namespace tamboro::test
