#include "library/saving/Backup.h"

#include <algorithm>
#include <array>

#include "library/FailureSweep.h"
#include "support/TestStore.h"

namespace tamboro::test {
namespace {

void backUp(FileSystem& files, const Path& destination, const Path& root = "/card") {
  backup(*files.rooted(root), files, root, destination);
}

Tree copyOf(Tree card) {
  std::erase_if(card, [](const auto& f) { return f.first.starts_with("WAVE/DATA") || f.first == "unknown.dat"; });
  return card;
}

struct Backup : ::testing::Test {
  void TestBody() override {}  // a sweep makes one for each of its attempts
  Backup() {
    files.mount("/card", {.serial = "CARD"});
    writeTree(files, "/card", sampleCard());
  }
  Tree card() const { return readTree(files, "/card"); }

  MemoryFileSystem files;
};

TEST_F(Backup, ReplacesTheOneBeforeButNoCopyBesideItAndTakesAllFoldersThatAreThere) {
  const Tree kept{{"backup.old/KIT/kit001.spd", "kept"}, {"backup.new/KIT/kit001.spd", "kept"}};
  for (const bool hasWaves : {true, false}) {
    if (!hasWaves) removeTree(files, "/card/WAVE");
    writeTree(files, "/card", {{"KIT/empty.spd", ""}, {"SYSTEM/deep/er/file", std::string(300000, 'x')}});
    // A name that begins like the card's is no overlap.
    writeTree(files, "/copies", kept);
    writeTree(files, "/card backup", {{"KIT/kit099.spd", "gone since"}, {"notes", "a user's"}});
    backUp(files, "/card backup");
    EXPECT_THAT(readTree(files, "/card backup"), IsTree(copyOf(card())));
    backUp(files, "/copies/backup");
    removeTree(files, "/copies/backup");
    EXPECT_THAT(readTree(files, "/copies"), IsTree(kept));
  }
}

TEST_F(Backup, FollowsLinksToFilesOnlyAndRemovesNothingBehindAny) {
  makeFolders(files, "/backup/inner");
  writeFile(files, "/staging/a", "a");
  files.addLink("/card/KIT/kit009.spd", "/card/KIT/kit004.spd");
  files.addLink("/card/KIT/round", "/card/KIT");
  files.addLink("/card/KIT/dangling", "/nowhere");
  files.addSpecial("/card/KIT/pipe");
  files.addLink("/backup/inner/card", "/card");
  files.addLink("/backup/staging", "/staging");
  backUp(files, "/backup");
  Tree expected = copyOf(sampleCard());
  expected["KIT/kit009.spd"] = expected["KIT/kit004.spd"];
  EXPECT_THAT(readTree(files, "/backup"), IsTree(expected));
  EXPECT_THAT(card(), IsTree(sampleCard()));
  EXPECT_EQ(readFile(files, "/staging/a"), "a");
}

TEST_F(Backup, RefusesPlacesThatOverlapTheCard) {
  makeFolders(files, "/elsewhere");
  files.mount("/holder/inner/card", {.serial = "INNER"});
  files.addLink("/link", "/card");
  files.addLink("/card/outward", "/elsewhere");
  const std::vector<std::string> folders = readFolders(files, "/");
  const auto refuses = [&](const char* destination, const Path& root) {
    EXPECT_THROW(backUp(files, destination, root), FileError) << destination;
    EXPECT_THAT(card(), IsTree(sampleCard()));
    EXPECT_EQ(readFolders(files, "/"), folders);
  };
  for (const char* destination : {"/card", "/card/", "/card/.", "/card/KIT", "/card/new/deeper/", "/", "", "/CARD",
                                  "/documents/../card/new", "/link", "/link/new", "/card/outward"})
    refuses(destination, "/card");
  for (const char* destination : {"/holder", "/holder/inner/../inner"})
    refuses(destination, "/holder/inner/card");
}

TEST(BackupSweep, IsWholeInOneOfTwoPlacesWhateverFails) {
  sweepFailures([](const auto& fail, bool) {
    Backup fixture;
    MemoryFileSystem& files = fixture.files;
    writeTree(files, "/backup", {{"KIT/old", "old"}});
    fail(files);
    bool failed = false;
    try {
      backUp(files, "/backup");
    } catch (const FileError&) {
      failed = true;
    }
    const std::uint64_t count = files.count();
    files.failNothing();
    EXPECT_THAT(fixture.card(), IsTree(sampleCard()));
    const auto isWhole = [&](const Tree& whole) {
      return std::ranges::any_of(std::array{"/backup", "/.tamboro-old-backup"}, [&](const char* place) {
        return files.status(place).kind == FileKind::folder && readTree(files, place) == whole;
      });
    };
    EXPECT_TRUE(isWhole({{"KIT/old", "old"}}) || isWhole(copyOf(sampleCard())));
    if (failed) backUp(files, "/backup");
    EXPECT_THAT(readTree(files, "/backup"), IsTree(copyOf(sampleCard())));
    for (const char* leftover : {"/.tamboro-new-backup", "/.tamboro-old-backup"})
      EXPECT_EQ(files.status(leftover).kind, FileKind::none) << leftover;
    return count;
  });
}

}  // namespace
}  // namespace tamboro::test
