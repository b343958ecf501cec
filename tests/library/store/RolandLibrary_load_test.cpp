#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "platform/FolderBookmark.h"
#include "support/FailingFileSystem.h"
#include "support/TestStore.h"

namespace tamboro::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

const QString noRoot = QStringLiteral(
    "Couldn't find the KIT/WAVE/SYSTEM folders at the chosen location. Select the SPD-SX volume or the Roland/SPD-SX "
    "folder directly.");

std::vector<std::int64_t> slots_(const RolandLibrary& library) {
  std::vector<std::int64_t> slots;
  for (const Kit& kit : library.kits())
    slots.push_back(kit.slot);
  return slots;
}

std::vector<std::int64_t> ids(const RolandLibrary& library) {
  std::vector<std::int64_t> ids;
  for (const Wave& wave : library.waves())
    ids.push_back(wave.id());
  return ids;
}

TEST(Load, FindsTheRootUpToTwoLevelsBelowTheChosenFolder) {
  TestStore store;
  store.mountCard("a", sampleCard());
  for (const Path& chosen : {Path("/media"), Path("/media/card"), Path("/media/card/Roland"), TestStore::root}) {
    EXPECT_EQ(store.library.resolveRoot(chosen), chosen == "/media" ? std::nullopt : std::optional(TestStore::root))
        << chosen;
  }
  writeTree(store.files, "/copies", {{"2024/gig/KIT/a", ""}, {"2024/gig/WAVE/a", ""}, {"2024/gig/SYSTEM", "a file"}});
  EXPECT_EQ(store.library.resolveRoot("/copies"), Path("/copies/2024/gig"));
  writeTree(store.files, "/half", {{"KIT/a", ""}, {"WAVE/a", ""}});
  EXPECT_EQ(store.library.resolveRoot("/half"), std::nullopt);
  EXPECT_EQ(store.library.resolveRoot("/nowhere"), std::nullopt);
}

TEST(Load, TakesEveryFileWhoseNameFitsAndPassesOverTheRest) {
  TestStore store;
  Tree card = sampleCard();
  const std::string kit = card.at("KIT/kit002.spd");
  const std::string wave = card.at("WAVE/PRM/02/06.spd");
  for (const char* name :
       {"kit.spd", "kitABC.spd", "KIT001.spd", "kit003.SPD", "kit5 .spd", "kit99999999999999999999.spd"}) {
    card[std::string("KIT/") + name] = "not even a document";
  }
  card["KIT/kit-3.spd"] = kit;
  card["KIT/kit+12.spd"] = kit;
  card["WAVE/PRM/01/notes.spd"] = "no";
  card["WAVE/PRM/Old/01.spd"] = "no";
  card["WAVE/PRM/03"] = "a file, not a folder";
  card["WAVE/PRM/7/3.spd"] = wave;
  store.open(card);
  EXPECT_THAT(slots_(store.library), ElementsAre(-3, 1, 2, 4, 12));
  EXPECT_THAT(ids(store.library), ElementsAre(1, 205, 206, 207, 703));
  EXPECT_EQ(store.library.rootPath(), QString::fromStdString(TestStore::root.string()));
  EXPECT_TRUE(store.library.isLoaded());
  EXPECT_FALSE(store.library.hasUnsavedChanges());
}

// Two files of one slot: an edit is written under the slot's own name and must not bring the other file's content
// there.
TEST(Load, OfSeveralFilesOfOneKeyTheOneUnderItsOwnNameComesFirst) {
  TestStore store;
  Tree card = sampleCard();
  card["KIT/kit+1.spd"] = card.at("KIT/kit002.spd");
  card["KIT/kit1.spd"] = card.at("KIT/kit004.spd");
  store.open(card);
  EXPECT_THAT(slots_(store.library), ElementsAre(1, 1, 1, 2, 4));
  store.library.setKitLevel(1, 81);
  EXPECT_EQ(store.save(), "");
  card["KIT/kit001.spd"] = replaced(card["KIT/kit001.spd"], "<Level>80<", "<Level>81<");
  EXPECT_EQ(difference(withoutIndexes(card), withoutIndexes(store.card())), "");
}

TEST(Load, AFailureLeavesTheOpenCardWithItsEditsAndTellsTheReason) {
  struct Case {
    const char* file;
    std::string content;
    std::string text;
  };
  using namespace std::string_literals;
  const Case cases[] = {
      {"KIT/kit003.spd", "<A><B\0C>1</A>"s, "Unterminated element, expected '</B\0C>' starting at byte offset 8"s},
      {"WAVE/PRM/02/09.spd", "", "Empty document"},
      {"SYSTEM/tag_list.spd", "x", "Expected '<' at byte offset 0"}};
  for (const Case& broken : cases) {
    TestStore store;
    store.open();
    store.library.setKitLevel(1, 5);
    Tree other = sampleCard();
    other[broken.file] = broken.content;
    writeTree(store.files, "/other", other);
    store.library.openDroppedFolder("/other");
    EXPECT_EQ(store.library.lastError(), QString::fromStdString(broken.text));
    EXPECT_EQ(store.library.rootURL(), TestStore::root);
    EXPECT_EQ(store.library.kit(1)->level(), 5);
    store.library.openDroppedFolder("/media/card");
    EXPECT_EQ(store.library.lastError(), std::nullopt);
    EXPECT_FALSE(store.library.hasUnsavedChanges());
  }
}

TEST(Load, ACardThatCannotBeReadWholeDoesNotOpen) {
  TestStore store;
  Tree card = sampleCard();
  card.erase("SYSTEM/tag_list.spd");
  store.mountCard("a", card);
  store.library.openDroppedFolder("/media/card");
  EXPECT_FALSE(store.library.isLoaded());
  EXPECT_THAT(store.library.lastError()->toStdString(), HasSubstr("No such file or directory"));

  // What stands in a folder that can't be listed must not be taken for free names.
  for (const Path unlisted : {"KIT", "WAVE/PRM", "WAVE/PRM/02"}) {
    FailingFileSystem failing(store.files);
    TestStore second(store.files, failing);
    writeTree(store.files, TestStore::root, sampleCard());
    failing.failWhere([&](FileOperation operation, const Path& path) {
      return operation == FileOperation::list && path == unlisted;
    });
    second.library.openDroppedFolder("/media/card");
    EXPECT_FALSE(second.library.isLoaded()) << unlisted;
  }
}

TEST(Load, ChoosingRemembersTheChosenFolderBeforeItIsLoaded) {
  TestStore store;
  store.mountCard("a", sampleCard());
  store.panel.prepared = {std::nullopt, Path("/media/card"), Path("/home")};
  store.library.chooseRoot();
  EXPECT_FALSE(store.library.isLoaded());
  EXPECT_EQ(store.defaults.bytes(RolandLibrary::bookmarkKey), std::nullopt);
  store.library.chooseRoot();
  EXPECT_TRUE(store.library.isLoaded());
  EXPECT_EQ(store.panel.requests.back().prompt, QStringLiteral("Choose"));
  EXPECT_EQ(store.panel.requests.back().message,
            QStringLiteral("Choose the SPD-SX volume (or the Roland/SPD-SX folder)"));
  EXPECT_EQ(store.defaults.bytes(RolandLibrary::bookmarkKey), makeBookmark("/media/card"));
  store.library.chooseRoot();
  EXPECT_EQ(store.library.lastError(), noRoot);
  EXPECT_EQ(store.defaults.bytes(RolandLibrary::bookmarkKey), makeBookmark("/home"));
  store.library.openDroppedFolder("/media/card");
  EXPECT_EQ(store.defaults.bytes(RolandLibrary::bookmarkKey), makeBookmark("/home"));
}

TEST(Load, RestoringReportsABadCardButNotAMissingOne) {
  TestStore store;
  store.library.restoreFromBookmark();
  store.defaults.setBytes(RolandLibrary::bookmarkKey, *makeBookmark("/gone"));
  store.library.restoreFromBookmark();
  EXPECT_EQ(store.library.lastError(), std::nullopt);
  store.defaults.setBytes(RolandLibrary::bookmarkKey, *makeBookmark("/home"));
  store.library.restoreFromBookmark();
  EXPECT_EQ(store.library.lastError(), noRoot);
  store.mountCard("a", sampleCard());
  store.defaults.setBytes(RolandLibrary::bookmarkKey, *makeBookmark("/media/card"));
  store.library.restoreFromBookmark();
  EXPECT_TRUE(store.library.isLoaded());
}

TEST(Load, KeepsSelectionClipboardsAndUndo) {
  TestStore store;
  store.open();
  store.library.setSelectedKitSlot(2);
  store.library.setSelectedPadIndex(1);
  store.library.copyPads(1);
  store.library.setCopiedWaveIndex(205);
  store.turn([&] { store.library.setKitLevel(1, 5); });
  store.library.load("/media/card");
  EXPECT_EQ(store.library.selectedKitSlot(), 2);
  EXPECT_EQ(store.library.selectedPadIndex(), 1);
  EXPECT_EQ(store.library.copiedPads()->size(), 15U);
  EXPECT_EQ(store.library.copiedWaveIndex(), 205);
  EXPECT_TRUE(store.library.undoManager().canUndo());
}

TEST(Load, ReadsAndSelectsWithoutCheckingThatFilesAreThere) {
  TestStore store;
  Tree card = sampleCard();
  card["WAVE/PRM/02/08.spd"] = "<WvPrm><Path></Path></WvPrm>";
  card["WAVE/PRM/02/09.spd"] = "<WvPrm><Path>../../KIT/kit001.spd</Path></WvPrm>";
  card["WAVE/PRM/02/10.spd"] = "<WvPrm><Path>02/gone.wav</Path></WvPrm>";
  store.open(card);
  const RolandLibrary& library = store.library;
  EXPECT_EQ(library.audioURL(*library.wave(205)), TestStore::root / "WAVE/DATA/02/kick.wav");
  EXPECT_EQ(library.audioURL(*library.wave(206)), TestStore::root / "WAVE/DATA/02/Snare.wav");
  EXPECT_EQ(library.audioURL(*library.wave(208)), std::nullopt);
  EXPECT_EQ(library.audioURL(*library.wave(209)), std::nullopt);
  EXPECT_EQ(library.audioURL(*library.wave(210)), TestStore::root / "WAVE/DATA/02/gone.wav");
  store.library.setSelectedKitSlot(2);
  EXPECT_EQ(library.selectedWave()->id(), 206);
  store.library.setSelectedPadIndex(2);  // a sound that is not on the card
  EXPECT_TRUE(library.selectedPad());
  EXPECT_EQ(library.selectedWave(), nullptr);
  store.library.setSelectedPadIndex(3);
  EXPECT_FALSE(library.selectedPad());
  store.library.setSelectedKitSlot(3);
  EXPECT_EQ(library.selectedKit(), nullptr);
}

TEST(Start, ReadsTheSettingsAndKeepsTheDefaultsOfBadOnes) {
  TestStore plain;
  EXPECT_TRUE(plain.library.autoSaveEnabled());
  EXPECT_EQ(plain.timers.periods(), std::vector<double>{30.0});
  EXPECT_EQ(plain.files.status(TestStore::staging).kind, FileKind::folder);

  MemoryFileSystem files;
  MemoryDefaults defaults;
  HandJobs jobs;
  HandTimers timers;
  HandFolderPanel panel;
  defaults.setBoolean(RolandLibrary::autoSaveEnabledKey, false);
  defaults.setReal(RolandLibrary::autoSaveIntervalKey, 61.5);
  defaults.setText(RolandLibrary::backupBeforeSaveKey, QStringLiteral("false"));
  defaults.setIntegers(RolandLibrary::recentKitsKey, {9, 1, 2});
  RolandLibrary library({files, defaults, jobs, timers, panel, "/s", "/b"});
  EXPECT_FALSE(library.autoSaveEnabled());
  EXPECT_TRUE(timers.periods().empty());
  EXPECT_TRUE(library.backupBeforeSaveEnabled());
  EXPECT_THAT(library.recentKitSlots(), ElementsAre(9, 1, 2));
  library.setAutoSaveEnabled(true);
  EXPECT_EQ(timers.periods(), std::vector<double>{61.5});
  library.setAutoSaveInterval(15);
  EXPECT_EQ(timers.periods(), std::vector<double>{15.0});
  for (const double tooShort : {1e-9, 0.0, -5.0, std::nan("")}) {
    library.setAutoSaveInterval(tooShort);
    EXPECT_EQ(timers.periods(), std::vector<double>{1.0}) << tooShort;
  }
  library.setAutoSaveInterval(15);
  EXPECT_EQ(defaults.real(RolandLibrary::autoSaveIntervalKey), 15.0);
  for (const int slot : {3, 4, 5, 6, 4})
    library.recordRecentKit(slot);
  EXPECT_THAT(library.recentKitSlots(), ElementsAre(4, 6, 5, 3, 9));
  EXPECT_EQ(defaults.integers(RolandLibrary::recentKitsKey), library.recentKitSlots());
}

}  // namespace
}  // namespace tamboro::test
