#include "library/saving/Backup.h"

#include <algorithm>
#include <array>

#include "library/saving/SaveFixture.h"
#include "platform/RealFileSystem.h"
#include "support/TemporaryFolder.h"

namespace tamboro::test {
namespace {

Tree copyOf(const Tree& card) {
  Tree copy;
  for (const auto& [name, bytes] : card) {
    if (!name.starts_with("WAVE/DATA")) copy[name] = bytes;
  }
  return copy;
}

void backUp(FileSystem& files, const Path& destination) {
  backup(*files.rooted("/card"), files, "/card", destination);
}

TEST(Backup, ReplacesTheOneBefore) {
  SaveFixture fixture;
  writeTree(fixture.files, "/card", {{"KIT/empty.spd", ""}, {"SYSTEM/deep/er/file", std::string(300000, 'x')}});
  makeFolders(fixture.files, "/card/KIT/hollow");
  writeTree(fixture.files, "/documents/backup", {{"KIT/kit099.spd", "gone since"}, {"notes", "a user's"}});
  backUp(fixture.files, "/documents/backup");
  EXPECT_THAT(readTree(fixture.files, "/documents/backup"), IsTree(copyOf(fixture.card())));
  EXPECT_EQ(fixture.files.status("/documents/backup/KIT/hollow").kind, FileKind::folder);
}

TEST(Backup, PassesOverMissingFolders) {
  SaveFixture fixture;
  removeTree(fixture.files, "/card/WAVE");
  backUp(fixture.files, "/documents/backup");
  EXPECT_THAT(readTree(fixture.files, "/documents/backup"), IsTree(copyOf(fixture.card())));
}

TEST(Backup, FollowsLinksToFilesOnly) {
  SaveFixture fixture;
  fixture.files.addLink("/card/KIT/kit009.spd", "/card/KIT/kit001.spd");
  fixture.files.addLink("/card/KIT/round", "/card/KIT");
  fixture.files.addLink("/card/KIT/dangling", "/nowhere");
  fixture.files.addSpecial("/card/KIT/pipe");
  backUp(fixture.files, "/backup");
  Tree expected = copyOf(fixture.before);
  expected["KIT/kit009.spd"] = "kit 1";
  EXPECT_THAT(readTree(fixture.files, "/backup"), IsTree(expected));
}

TEST(Backup, RemovesNothingBehindLinks) {
  SaveFixture fixture;
  makeFolders(fixture.files, "/backup/inner");
  fixture.files.addLink("/backup/inner/card", "/card");
  fixture.files.addLink("/backup/staging", "/staging");
  const Tree staged = readTree(fixture.files, "/staging");
  backUp(fixture.files, "/backup");
  EXPECT_THAT(readTree(fixture.files, "/backup"), IsTree(copyOf(fixture.before)));
  EXPECT_THAT(fixture.card(), IsTree(fixture.before));
  EXPECT_THAT(readTree(fixture.files, "/staging"), IsTree(staged));
}

TEST(Backup, RefusesPlacesThatOverlapTheCard) {
  for (const char* destination :
       {"/card", "/card/", "/card/.", "/card/KIT", "/card/new", "/card/new/deeper/", "/", "/documents/../card/new",
        "/CARD", "/link", "/link/new", "/card/outward", "/holder", "/holder/inner/../inner", ""}) {
    SCOPED_TRACE(destination);
    SaveFixture fixture;
    makeFolders(fixture.files, "/elsewhere");
    makeFolders(fixture.files, "/holder/inner");
    fixture.files.addLink("/link", "/card");
    fixture.files.addLink("/card/outward", "/elsewhere");
    const bool isHolder =
        Path(destination).begin() != Path(destination).end() && Path(destination).string().starts_with("/holder");
    if (isHolder) fixture.files.mount("/holder/inner/card", {.serial = "INNER"});
    const Path root = isHolder ? "/holder/inner/card" : "/card";
    const std::vector<std::string> folders = readFolders(fixture.files, "/");
    EXPECT_THROW(backup(*fixture.files.rooted(root), fixture.files, root, destination), FileError);
    EXPECT_THAT(fixture.card(), IsTree(fixture.before));
    EXPECT_EQ(readFolders(fixture.files, "/"), folders);
  }
}

TEST(Backup, LeavesCopiesThatTheUserKeepsBesideIt) {
  SaveFixture fixture;
  const Tree kept{{"KIT/kit001.spd", "kept"}};
  for (const char* place : {"/backup.old", "/backup.new"})
    writeTree(fixture.files, place, kept);
  backUp(fixture.files, "/backup");
  for (const char* place : {"/backup.old", "/backup.new"})
    EXPECT_THAT(readTree(fixture.files, place), IsTree(kept));
}

// A name that begins like the card's is no overlap.
TEST(Backup, TakesNeighbours) {
  SaveFixture fixture;
  backUp(fixture.files, "/card backup");
  EXPECT_THAT(readTree(fixture.files, "/card backup"), IsTree(copyOf(fixture.before)));
}

TEST(Backup, FailuresNeverReachTheCard) {
  sweepFailures([](const auto& fail, bool) {
    SaveFixture fixture;
    writeTree(fixture.files, "/backup", {{"KIT/old", "old"}});
    FailingFileSystem failing(fixture.files);
    fail(failing);
    bool thrown = false;
    try {
      backUp(failing, "/backup");
    } catch (const FileError&) {
      thrown = true;
    }
    const std::uint64_t count = failing.count();
    EXPECT_THAT(fixture.card(), IsTree(fixture.before));
    const auto isWhole = [&](const Tree& whole) {
      return std::ranges::any_of(std::array{"/backup", "/.tamboro-old-backup"}, [&](const char* place) {
        return fixture.files.status(place).kind == FileKind::folder && readTree(fixture.files, place) == whole;
      });
    };
    EXPECT_TRUE(isWhole({{"KIT/old", "old"}}) || isWhole(copyOf(fixture.before)));
    if (thrown) backUp(fixture.files, "/backup");
    EXPECT_THAT(readTree(fixture.files, "/backup"), IsTree(copyOf(fixture.before)));
    for (const char* leftover : {"/.tamboro-new-backup", "/.tamboro-old-backup"})
      EXPECT_EQ(fixture.files.status(leftover).kind, FileKind::none) << leftover;
    return count;
  });
}

TEST(Backup, OnTheRealFileSystem) {
  const TemporaryFolder folder;
  const SaveFixture fixture;
  const std::unique_ptr<FileSystem> files = makeRealFileSystem();
  const Path card = folder / "card";
  writeTree(*files, card, fixture.before);
  const std::unique_ptr<FileSystem> rooted = files->rooted(card);
  for (int i = 0; i < 2; ++i)
    backup(*rooted, *files, card, folder / "a/b");
  EXPECT_THAT(readTree(*files, folder / "a/b"), IsTree(copyOf(fixture.before)));
  std::filesystem::create_directory_symlink(card, folder / "link");
  for (const char* place : {"card", "card/new", "link", "link/KIT", "."})
    EXPECT_THROW(backup(*rooted, *files, card, folder / place), FileError) << place;
  EXPECT_THAT(readTree(*files, card), IsTree(fixture.before));
}

}  // namespace
}  // namespace tamboro::test
