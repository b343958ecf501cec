#include "library/saving/SaveJob.h"

#include <gmock/gmock.h>

#include "library/saving/SaveFixture.h"
#include "platform/RealFileSystem.h"
#include "support/TemporaryFolder.h"

namespace tamboro::test {
namespace {

using ::testing::IsEmpty;

/// What the save has begun is known to the next one.
bool saves(SaveSnapshot& snapshot, FileSystem& files) {
  SaveAttempt attempt;
  bool saved = true;
  try {
    saveJob(snapshot, files, attempt);
  } catch (const FileError&) {
    saved = false;
  }
  for (const auto& [file, content] : attempt.written)
    snapshot.known.begun(file, content);
  return saved;
}

Tree withoutTemporary(const Tree& tree) {
  Tree rest;
  for (const auto& [name, bytes] : tree) {
    if (("/" + name).find("/" + temporaryName) == std::string::npos) rest[name] = bytes;
  }
  return rest;
}

/// Each file as it was or as it shall be, none missing that has no reason to be.
void expectWhole(const SaveFixture& fixture, const Tree& card) {
  for (const auto& [name, bytes] : card) {
    const auto old = fixture.before.find(name);
    const auto next = fixture.after.find(name);
    const bool isOld = old != fixture.before.end() && old->second == bytes;
    EXPECT_TRUE(isOld || (next != fixture.after.end() && next->second == bytes)) << name;
  }
  for (const auto& [name, bytes] : fixture.before) {
    const bool isRemovedFirst = name == "WAVE/PRM/02/02.spd";
    EXPECT_TRUE(card.contains(name) || isRemovedFirst || !fixture.after.contains(name)) << name;
  }
}

/// What is new never stands there without what it needs.
void expectOrder(const SaveFixture& fixture, const Tree& card) {
  const auto isNew = [&](const char* name) {
    const auto found = card.find(name);
    return found != card.end() && found->second == fixture.after.at(name);
  };
  const char* const order[][2] = {{"WAVE/PRM/02/02.spd", "WAVE/DATA/02/new.wav"},
                                  {"WAVE/PRM/03/00.spd", "WAVE/DATA/03/hat.wav"},
                                  {"KIT/kit001.spd", "WAVE/PRM/02/01.spd"},
                                  {"KIT/kit001.spd", "WAVE/PRM/03/00.spd"},
                                  {"SYSTEM/tag_list.spd", "KIT/kit002.spd"},
                                  {"SYSTEM/wavelist_name.spd", "SYSTEM/tag_list.spd"},
                                  {"SYSTEM/wavelist_tagname.spd", "SYSTEM/wavelist_name.spd"}};
  for (const auto& [later, earlier] : order)
    EXPECT_TRUE(!isNew(later) || isNew(earlier)) << later << " before " << earlier;
}

TEST(SaveJob, BringsTheCardIntoLine) {
  SaveFixture fixture;
  const Tree staged = readTree(fixture.files, "/staging");
  SaveAttempt attempt;
  EXPECT_EQ(saveJob(fixture.snapshot, fixture.files, attempt).updatedKitDocs.size(), 2U);
  EXPECT_THAT(fixture.card(), IsTree(fixture.after));
  EXPECT_THAT(readTree(fixture.files, "/staging"), IsTree(staged));
  EXPECT_EQ(readFile(fixture.files, "/documents/backup/WAVE/PRM/02/00.spd"), "sample 200");
}

TEST(SaveJob, SurvivesEveryFailure) {
  std::vector<std::string> folders;
  sweepFailures([&](const auto& fail, bool pulled) {
    SaveFixture fixture;
    FailingFileSystem failing(fixture.files);
    fail(failing);
    const bool saved = saves(fixture.snapshot, failing);
    const std::uint64_t count = failing.count();
    const Tree left = fixture.card();
    EXPECT_FALSE(pulled && saved && withoutTemporary(left) != fixture.after);
    expectWhole(fixture, pulled ? withoutTemporary(left) : left);
    expectOrder(fixture, left);

    EXPECT_TRUE(saves(fixture.snapshot, fixture.files));
    EXPECT_THAT(pulled ? withoutTemporary(fixture.card()) : fixture.card(), IsTree(fixture.after));
    if (!pulled) {
      const std::vector<std::string> now = readFolders(fixture.files, "/card");
      if (folders.empty()) folders = now;
      EXPECT_EQ(now, folders);
    }
    return count;
  });
}

TEST(SaveJob, TouchesNoOtherCard) {
  const auto codeOf = [](const SaveFixture& fixture, FileSystem& files) {
    try {
      SaveAttempt attempt;
      saveJob(fixture.snapshot, files, attempt);
    } catch (const FileError& error) {
      return error.code();
    }
    return std::error_code();
  };
  SaveFixture other;
  other.files.setVolume("/card", {.serial = "OTHER"});
  EXPECT_EQ(codeOf(other, other.files), std::errc::no_such_device);
  EXPECT_THAT(other.card(), IsTree(other.before));
  EXPECT_EQ(other.files.status("/documents").kind, FileKind::none);

  SaveFixture gone;
  gone.snapshot.root = "/gone";
  EXPECT_EQ(codeOf(gone, gone.files), std::errc::no_such_file_or_directory);
  EXPECT_EQ(gone.files.status("/documents").kind, FileKind::none);
}

// At every operation of a save the card is pulled and another one mounted at its place.
TEST(SaveJob, StaysWithTheCardItBeganWith) {
  std::uint64_t operations = 0;
  {
    SaveFixture fixture;
    FailingFileSystem counting(fixture.files);
    saves(fixture.snapshot, counting);
    operations = counting.count();
  }
  for (std::uint64_t number = 1; number <= operations; ++number) {
    SaveFixture fixture;
    FailingFileSystem failing(fixture.files);
    failing.failWhere([&](FileOperation, const Path&) {
      if (failing.count() == number) fixture.files.mount("/card", {.serial = "OTHER"});
      return false;
    });
    saves(fixture.snapshot, failing);
    EXPECT_THAT(fixture.card(), IsEmpty()) << "at operation " << number;
    const bool isStarted = fixture.files.status("/documents").kind == FileKind::folder;
    const Tree copied = isStarted ? readTree(fixture.files, "/documents") : Tree();
    EXPECT_TRUE(copied.empty() || copied.contains("backup/SYSTEM/tag_list.spd")) << "at operation " << number;
    if (HasFailure()) return;
  }
}

TEST(SaveJob, DropsAFailedBackup) {
  SaveFixture fixture;
  fixture.snapshot.backupDestination = "/card/backup";
  EXPECT_TRUE(saves(fixture.snapshot, fixture.files));
  EXPECT_THAT(fixture.card(), IsTree(fixture.after));
}

TEST(SaveJob, OnTheRealFileSystem) {
  const SaveFixture fixture;
  const TemporaryFolder folder;
  const std::unique_ptr<FileSystem> files = makeRealFileSystem();
  writeTree(*files, folder / "card", fixture.before);
  writeTree(*files, folder / "staging", readTree(fixture.files, "/staging"));
  SaveSnapshot snapshot = fixture.snapshot;
  snapshot.root = folder / "card";
  // Paths that no volume can hold are no reason not to save.
  const std::string tooLong(300, 'x');
  snapshot.deletions.emplace(900, sample(9, 0, tooLong + "/" + tooLong));
  snapshot.deletions.emplace(901, sample(9, 1, tooLong));
  snapshot.serial = files->volumeSerial(snapshot.root);
  snapshot.backupDestination = folder / "documents/backup";
  for (auto& [id, staged] : snapshot.stagedAudioFiles)
    staged = folder.path() / staged.relative_path();
  SaveAttempt attempt;
  EXPECT_TRUE(saveJob(snapshot, *files, attempt).failedDeletions.empty());
  EXPECT_THAT(readTree(*files, folder / "card"), IsTree(fixture.after));
  EXPECT_EQ(readTree(*files, folder / "documents").size(), 10U);
}

}  // namespace
}  // namespace tamboro::test
