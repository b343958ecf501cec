#include "platform/FileSystem.h"

#include <gmock/gmock.h>

#include "platform/FolderBookmark.h"
#include "platform/RealFileSystem.h"
#include "support/FailingFileSystem.h"
#include "support/MemoryFileSystem.h"
#include "support/TemporaryFolder.h"
#include "support/Tree.h"

namespace tamboro::test {
namespace {

using ::testing::ElementsAre;

struct OnDisk {
  std::unique_ptr<FileSystem> files = makeRealFileSystem();
  TemporaryFolder folder;
  Path root = folder.path();
  void addLink(const Path& link, const Path& target) { std::filesystem::create_symlink(target, link); }
};

struct InMemory {
  MemoryFileSystem* memory = new MemoryFileSystem;
  std::unique_ptr<FileSystem> files{memory};
  Path root = "/place";
  InMemory() { files->makeFolder(root); }
  void addLink(const Path& link, const Path& target) { memory->addLink(link, target); }
};

/// The failing twin passes everything on while nothing is to fail.
struct ThroughTwin : InMemory {
  std::unique_ptr<FileSystem> inner = std::move(files);
  ThroughTwin() { files = std::make_unique<FailingFileSystem>(*inner); }
};

/// What every file system has to answer alike.
template<typename Kind>
class FileSystemContract : public ::testing::Test {
 protected:
  Kind kind;
  FileSystem& files = *kind.files;
  Path root = kind.root;

  Path put(const std::string& name, const std::string& bytes) {
    writeFile(files, root / name, bytes);
    return root / name;
  }
  template<typename Operation>
  std::error_code errorOf(Operation operation) {
    try {
      operation();
    } catch (const FileError& error) {
      return error.code();
    }
    return {};
  }
};

using Kinds = ::testing::Types<OnDisk, InMemory, ThroughTwin>;
TYPED_TEST_SUITE(FileSystemContract, Kinds);

TYPED_TEST(FileSystemContract, TellsWhatStandsAtAPath) {
  const Path file = this->put("file", "12345");
  this->kind.addLink(this->root / "link", "file");
  this->kind.addLink(this->root / "dangling", "nowhere");
  this->kind.addLink(this->root / "loop", "loop");
  const struct {
    Path path;
    FileKind followed, entry;
  } cases[] = {
      {file, FileKind::regular, FileKind::regular},
      {this->root, FileKind::folder, FileKind::folder},
      {this->root / "file" / "below", FileKind::none, FileKind::none},
      {this->root / "none" / "below", FileKind::none, FileKind::none},
      {this->root / "link", FileKind::regular, FileKind::other},
      {this->root / "dangling", FileKind::none, FileKind::other},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(this->files.status(each.path).kind, each.followed) << each.path;
    EXPECT_EQ(this->files.entryStatus(each.path).kind, each.entry) << each.path;
  }
  EXPECT_EQ(this->files.status(this->root / "link").size, 5U);
  EXPECT_EQ(this->files.entryStatus(this->root / "link").size, 0U);
  EXPECT_EQ(this->files.status(this->root).size, 0U);
  EXPECT_THROW(this->files.status(this->root / "loop"), FileError);
}

TYPED_TEST(FileSystemContract, ListsNamesAsBytesInOrder) {
  for (const char* name : {"b", ".hidden", "B", "\xFF\xFE.spd", "\xC3\xA4"})
    this->put(name, "");
  EXPECT_THAT(this->files.list(this->root), ElementsAre(".hidden", "B", "b", "\xC3\xA4", "\xFF\xFE.spd"));
  EXPECT_EQ(this->errorOf([&] { this->files.list(this->root / "b"); }), std::errc::not_a_directory);
  EXPECT_EQ(this->errorOf([&] { this->files.list(this->root / "c"); }), std::errc::no_such_file_or_directory);
}

TYPED_TEST(FileSystemContract, ReadsWholeFilesIntoAStringThatIsUsedAgain) {
  std::string content = "left over from the file before";
  for (const std::size_t size : {0U, 1U, 15U, 16U, 4096U, 100'000U}) {
    const std::string bytes(size, 'x');
    this->files.read(this->put("file", bytes), content);
    EXPECT_EQ(content, bytes);
  }
  EXPECT_EQ(this->errorOf([&] { this->files.read(this->root, content); }), std::errc::is_a_directory);
}

TYPED_TEST(FileSystemContract, WritesNewFilesAndNeverOverOldOnes) {
  const Path path = this->root / "new";
  {
    const auto file = this->files.create(path);
    file->write("ab");
    file->write("");
    file->startWriteback();
    file->write("cd");
    file->sync();
  }
  EXPECT_EQ(readFile(this->files, path), "abcd");
  EXPECT_EQ(this->errorOf([&] { this->files.create(path); }), std::errc::file_exists);
  this->kind.addLink(this->root / "dangling", "elsewhere");
  EXPECT_EQ(this->errorOf([&] { this->files.create(this->root / "dangling"); }), std::errc::file_exists);
  EXPECT_EQ(this->files.status(this->root / "elsewhere").kind, FileKind::none);

  const auto file = this->files.open(path);
  char buffer[3] = {};
  EXPECT_EQ(file->read(buffer, 3), 3U);
  EXPECT_EQ(file->read(buffer, 3), 1U);
  EXPECT_EQ(buffer[0], 'd');
  EXPECT_EQ(file->read(buffer, 3), 0U);
  EXPECT_EQ(this->errorOf([&] { file->write("x"); }), std::errc::bad_file_descriptor);
  this->files.open(this->root)->sync();
}

TYPED_TEST(FileSystemContract, RenamesOverFilesAndRemovesThem) {
  const Path old = this->put("old", "old");
  const auto held = this->files.open(old);
  this->files.rename(this->put("new", "new"), old);
  EXPECT_THAT(readTree(this->files, this->root), IsTree(Tree{{"old", "new"}}));
  char buffer[3];
  EXPECT_EQ(std::string(buffer, held->read(buffer, 3)), "old");  // what is held open outlives its name

  this->put("folder/inner", "");
  this->files.makeFolder(this->root / "empty");
  const auto renaming = [&](const char* from, const char* to) {
    return this->errorOf([&] { this->files.rename(this->root / from, this->root / to); });
  };
  EXPECT_EQ(renaming("old", "folder"), std::errc::is_a_directory);
  EXPECT_EQ(renaming("folder", "old"), std::errc::not_a_directory);
  EXPECT_EQ(renaming("folder", "folder/inside"), std::errc::invalid_argument);
  EXPECT_EQ(renaming("none", "old"), std::errc::no_such_file_or_directory);
  EXPECT_EQ(renaming("empty", "folder"), std::errc::directory_not_empty);
  EXPECT_EQ(renaming("folder", "moved"), std::error_code());
  EXPECT_EQ(this->files.status(this->root / "moved/inner").kind, FileKind::regular);

  EXPECT_EQ(this->errorOf([&] { this->files.removeFile(this->root / "moved"); }), std::errc::is_a_directory);
  EXPECT_EQ(this->errorOf([&] { this->files.removeFolder(this->root / "moved"); }), std::errc::directory_not_empty);
  EXPECT_EQ(this->errorOf([&] { this->files.removeFolder(old); }), std::errc::not_a_directory);
  this->files.removeFile(old);
  EXPECT_EQ(this->errorOf([&] { this->files.removeFile(old); }), std::errc::no_such_file_or_directory);
}

TYPED_TEST(FileSystemContract, MakesFoldersWithTheirParents) {
  const Path deep = this->root / "a/b/c";
  makeFolders(this->files, deep);
  makeFolders(this->files, deep / "");
  makeFolders(this->files, this->root / "x/../y");
  EXPECT_THAT(readFolders(this->files, this->root), ElementsAre("a", "a/b", "a/b/c", "x", "y"));
  EXPECT_EQ(this->errorOf([&] { this->files.makeFolder(deep); }), std::errc::file_exists);
  this->put("file", "");
  this->kind.addLink(this->root / "dangling", "nowhere");
  EXPECT_TRUE(this->errorOf([&] { makeFolders(this->files, this->root / "file/below"); }));
  EXPECT_TRUE(this->errorOf([&] { makeFolders(this->files, this->root / "dangling"); }));
}

TYPED_TEST(FileSystemContract, RemovesTreesAndFollowsNoLink) {
  this->put("kept/file", "kept");
  this->put("tree/one/two/file", "");
  makeFolders(this->files, this->root / "tree/empty");
  this->kind.addLink(this->root / "tree/one/link", this->root / "kept");
  this->kind.addLink(this->root / "link", this->root / "kept");
  removeTree(this->files, this->root / "tree");
  removeTree(this->files, this->root / "link");
  EXPECT_EQ(this->errorOf([&] { removeTree(this->files, this->root / "tree"); }), std::errc::no_such_file_or_directory);
  EXPECT_THAT(this->files.list(this->root), ElementsAre("kept"));
  EXPECT_EQ(readFile(this->files, this->root / "kept/file"), "kept");
}

TYPED_TEST(FileSystemContract, ResolvesLinksAndKeepsWhatIsMissing) {
  this->put("real/file", "");
  this->kind.addLink(this->root / "link", this->root / "real");
  this->kind.addLink(this->root / "loop", "loop");
  for (const auto& [path, expected] : {
           std::pair{this->root / "link", this->root / "real"},
           std::pair{this->root / "link/.." / "real" / "", this->root / "real"},
           std::pair{this->root / "link/new/folder/", this->root / "real/new/folder"},
           std::pair{Path("/"), Path("/")},
       }) {
    EXPECT_EQ(this->files.resolved(path), expected) << path;
  }
  EXPECT_THROW(this->files.resolved(this->root / "loop/x"), FileError);
}

TYPED_TEST(FileSystemContract, TellsVolumesAndFailsForWhatIsGone) {
  this->put("folder/file", "");
  EXPECT_EQ(this->files.volumeSerial(this->root), this->files.volumeSerial(this->root / "folder"));
  EXPECT_GT(this->files.space(this->root).available, 0U);
  EXPECT_GE(this->files.space(this->root).clusterSize, 512U);
  EXPECT_EQ(this->errorOf([&] { this->files.volumeSerial(this->root / "gone"); }),
            std::errc::no_such_file_or_directory);
  EXPECT_EQ(this->errorOf([&] { this->files.space(this->root / "gone"); }), std::errc::no_such_file_or_directory);
}

TYPED_TEST(FileSystemContract, RootedReachesTheFolderItHoldsAndNoReplacement) {
  this->put("card/KIT/kit000.spd", "first card");
  const Path outside = this->put("outside", "outside");
  const auto card = this->files.rooted(this->root / "card");
  this->files.rename(this->root / "card", this->root / "pulled");
  this->put("card/KIT/kit000.spd", "second card");

  EXPECT_EQ(readFile(*card, "KIT/kit000.spd"), "first card");
  writeFile(*card, "KIT/kit001.spd", "new");
  card->makeFolder("temp");
  card->rename("KIT/kit001.spd", "temp/kit");
  card->open({})->sync();
  EXPECT_THAT(card->list({}), ElementsAre("KIT", "temp"));
  EXPECT_EQ(card->status({}).kind, FileKind::folder);
  EXPECT_EQ(readFile(*card, outside), "outside");
  EXPECT_EQ(readFile(*card->rooted("KIT"), "kit000.spd"), "first card");
  EXPECT_THAT(readTree(this->files, this->root), IsTree(Tree{{"card/KIT/kit000.spd", "second card"},
                                                             {"outside", "outside"},
                                                             {"pulled/KIT/kit000.spd", "first card"},
                                                             {"pulled/temp/kit", "new"}}));

  for (const Path& none : {Path("none"), Path("outside")}) {
    EXPECT_THROW(this->files.rooted(this->root / none), FileError) << none;
  }
  EXPECT_THROW(this->files.list({}), FileError);  // only a rooted one has a folder of its own
}

TYPED_TEST(FileSystemContract, BookmarksResolveWhileTheFolderIsThere) {
  const Path folder = this->root / "c\xFFrd";
  this->files.makeFolder(folder);
  const auto bookmark = makeBookmark(folder);
  ASSERT_TRUE(bookmark);
  EXPECT_EQ(resolveBookmark(this->files, *bookmark), folder);
  EXPECT_EQ(resolveBookmark(this->files, *bookmark + QByteArray("\0x", 2)), std::nullopt);
  EXPECT_EQ(resolveBookmark(this->files, {}), std::nullopt);
  this->files.removeFolder(folder);
  EXPECT_EQ(resolveBookmark(this->files, *bookmark), std::nullopt);
  this->put("c\xFFrd", "a file now");
  EXPECT_EQ(resolveBookmark(this->files, *bookmark), std::nullopt);
  EXPECT_EQ(makeBookmark({}), std::nullopt);
}

TEST(FolderBookmark, AFolderThatCannotBeEnteredIsAbsent) {
  MemoryFileSystem memory;
  memory.makeFolder("/card");
  FailingFileSystem files(memory);
  EXPECT_EQ(resolveBookmark(files, "/card"), Path("/card"));
  files.failFrom(1, std::errc::permission_denied);
  EXPECT_EQ(resolveBookmark(files, "/card"), std::nullopt);
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
