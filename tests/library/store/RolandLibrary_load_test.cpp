#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "platform/FolderBookmark.h"
#include "support/TestStore.h"

namespace tamboro::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

struct Load : ::testing::Test, TestStore {};
using Start = Load;

const QString noRoot = QStringLiteral(
    "Couldn't find the KIT/WAVE/SYSTEM folders at the chosen location. Select the SPD-SX volume or the Roland/SPD-SX "
    "folder directly.");

std::vector<std::int64_t> keysOf(const auto& records, const auto& keyOf) {
  std::vector<std::int64_t> keys;
  for (const auto& record : records)
    keys.push_back(std::invoke(keyOf, record));
  return keys;
}

TEST_F(Load, FindsTheRootUpToTwoLevelsBelowTheChosenFolder) {
  mountCard("a", sampleCard());
  writeTree(files, "/copies", {{"2024/gig/KIT/a", ""}, {"2024/gig/WAVE/a", ""}, {"2024/gig/SYSTEM", "a file"}});
  writeTree(files, "/half", {{"KIT/a", ""}, {"WAVE/a", ""}});
  for (const Path& chosen : {Path("/media/card"), Path("/media/card/Roland"), root})
    EXPECT_EQ(library.resolveRoot(chosen), root) << chosen;
  EXPECT_EQ(library.resolveRoot("/copies"), Path("/copies/2024/gig"));
  for (const char* none : {"/media", "/half", "/nowhere"})
    EXPECT_EQ(library.resolveRoot(none), std::nullopt) << none;
}

// Two files of one slot: an edit is written under the slot's own name and must not bring the other file's content
// there.
TEST_F(Load, TakesEveryFileWhoseNameFitsTheOneUnderItsOwnNameFirstAndPassesOverTheRest) {
  Tree content = sampleCard();
  for (const char* name : {"KIT/kit.spd", "KIT/KIT001.spd", "KIT/kit003.SPD", "KIT/kit5 .spd", "WAVE/PRM/01/notes.spd",
                           "WAVE/PRM/Old/01.spd", "WAVE/PRM/03"})
    content[name] = "not even a document";
  content["KIT/kit-3.spd"] = content["KIT/kit+1.spd"] = content.at("KIT/kit002.spd");
  content["KIT/kit1.spd"] = content.at("KIT/kit004.spd");
  content["WAVE/PRM/7/3.spd"] = content["WAVE/PRM/2/5.spd"] = content.at("WAVE/PRM/02/06.spd");
  // Enough for a second thread; what it reads can be what another name was read for on the first.
  for (const char* bank : {"019", "10", "11", "12", "13", "14", "15", "16", "17", "18", "19"})
    content["WAVE/PRM/" + std::string(bank) + "/01.spd"] =
        "<WvPrm><Tag>" + std::to_string(std::string(bank).size()) + "</Tag></WvPrm>";
  open(content);
  EXPECT_THAT(keysOf(library.kits(), &Kit::slot), ElementsAre(-3, 1, 1, 1, 2, 4));
  EXPECT_THAT(keysOf(library.waves(), &Wave::id), ElementsAre(1, 205, 205, 206, 207, 703, 1001, 1101, 1201, 1301, 1401,
                                                              1501, 1601, 1701, 1801, 1901, 1901));
  EXPECT_FALSE(library.hasUnsavedChanges());
  library.setKitLevel(1, 81);
  library.setWaveTag(205, 9);
  EXPECT_EQ(save(), "");
  content["KIT/kit001.spd"] = replaced(content["KIT/kit001.spd"], "<Level>80<", "<Level>81<");
  content["WAVE/PRM/02/05.spd"] = replaced(content["WAVE/PRM/02/05.spd"], "<Tag>0<", "<Tag>9<");
  EXPECT_EQ(difference(withoutIndexes(content), withoutIndexes(card())), "");
  EXPECT_EQ(library.wave(1901)->tag(), 2);
  // What is deleted goes under the name it was read by; of two of one id the first.
  for (const WaveId id : {205, 703})
    library.deleteWave(id);
  EXPECT_EQ(save(), "");
  for (const char* gone : {"WAVE/PRM/02/05.spd", "WAVE/DATA/02/kick.wav", "WAVE/PRM/7/3.spd"})
    content.erase(gone);
  EXPECT_EQ(difference(withoutIndexes(content), withoutIndexes(card())), "");
}

TEST_F(Load, AFailureLeavesTheOpenCardWithItsEditsAndTellsTheReason) {
  using namespace std::string_literals;
  const std::string noBackup = " is damaged. The backup folder holds no copy of it.";
  const struct {
    std::string file;
    std::string content;
    std::string text;
    std::string detail;
  } cases[] = {
      {"KIT/kit003.spd", "<A><B\0C>1</A>"s, "Unterminated element, expected '</B\0C>' starting at byte offset 8"s,
       "KIT/kit003.spd" + noBackup},
      {"KIT/kit001.spd", "", "Empty document", "KIT/kit001.spd is empty. The backup folder holds a whole copy of it."},
      {"WAVE/PRM/02/09.spd", "<x", "", "WAVE/PRM/02/09.spd" + noBackup},
      {"SYSTEM/tag_list.spd", "x", "Expected '<' at byte offset 0", "SYSTEM/tag_list.spd" + noBackup}};
  for (const auto& [file, content, text, detail] : cases) {
    TestStore store;
    store.open();
    writeFile(store.files, TestStore::backup / "KIT/kit001.spd", sampleCard().at("KIT/kit001.spd"));
    store.library.setKitLevel(1, 5);
    Tree other = sampleCard();
    other[file] = content;
    writeTree(store.files, "/other", other);
    store.library.openDroppedFolder("/other");
    EXPECT_EQ(text.empty() ? "" : store.library.lastError()->toStdString(), text);
    EXPECT_EQ(store.library.lastErrorDetail().toStdString(), detail);
    EXPECT_EQ(store.library.rootURL(), TestStore::root);
    EXPECT_EQ(store.library.kit(1)->level(), 5);
    store.library.openDroppedFolder("/media/card");
    EXPECT_EQ(store.library.lastError(), std::nullopt);
    EXPECT_FALSE(store.library.hasUnsavedChanges());
  }
}

TEST_F(Load, ACardThatCannotBeReadWholeDoesNotOpen) {
  // What stands in a folder that can't be listed must not be taken for free names.
  for (const Path unread : {"KIT", "WAVE/PRM", "WAVE/PRM/02", "SYSTEM/tag_list.spd"}) {
    TestStore store;
    store.mountCard("a", sampleCard());
    store.files.failWhere([&](const std::string& operation, const Path& path) {
      return (operation == "list" || operation == "read") && path == unread;
    });
    store.library.openDroppedFolder("/media/card");
    EXPECT_FALSE(store.library.isLoaded()) << unread;
    EXPECT_THAT(store.library.lastError()->toStdString(), HasSubstr("Input/output error"));
  }
}

TEST_F(Load, ChoosingRemembersTheChosenFolderBeforeItIsLoadedAndRestoringPassesOverAMissingOne) {
  const auto bookmark = [&] { return defaults.bytes(RolandLibrary::bookmarkKey); };
  mountCard("a", sampleCard());
  library.restoreFromBookmark();
  panel.prepared = {std::nullopt, Path("/media/card"), Path("/home")};
  library.chooseRoot();
  EXPECT_FALSE(library.isLoaded());
  EXPECT_EQ(bookmark(), std::nullopt);
  library.chooseRoot();
  EXPECT_TRUE(library.isLoaded());
  EXPECT_EQ(bookmark(), makeBookmark("/media/card"));
  library.chooseRoot();
  EXPECT_EQ(library.lastError(), noRoot);
  EXPECT_EQ(bookmark(), makeBookmark("/home"));
  library.openDroppedFolder("/media/card");
  EXPECT_EQ(bookmark(), makeBookmark("/home"));
  library.restoreFromBookmark();
  EXPECT_EQ(library.lastError(), noRoot);
  for (const char* place : {"/media/card", "/gone"}) {
    defaults.setBytes(RolandLibrary::bookmarkKey, *makeBookmark(place));
    library.restoreFromBookmark();
    EXPECT_EQ(library.lastError(), std::nullopt);
  }
}

TEST_F(Start, ReadsTheSettingsAndKeepsTheDefaultsOfBadOnes) {
  EXPECT_EQ(timers.periods(), std::vector<double>{30.0});
  defaults.setBoolean(RolandLibrary::autoSaveEnabledKey, false);
  defaults.setReal(RolandLibrary::autoSaveIntervalKey, 61.5);
  defaults.setText(RolandLibrary::backupBeforeSaveKey, QStringLiteral("false"));
  defaults.setIntegers(RolandLibrary::recentKitsKey, {9, 1, 2});
  HandTimers itsTimers;
  RolandLibrary restarted({files, defaults, jobs, itsTimers, panel, "/s", "/b"});
  EXPECT_TRUE(itsTimers.periods().empty() && restarted.backupBeforeSaveEnabled());
  restarted.setAutoSaveEnabled(true);
  EXPECT_EQ(itsTimers.periods(), std::vector<double>{61.5});
  for (const auto& [interval, period] : {std::pair(15.0, 15.0), {1e-9, 1.0}, {std::nan(""), 1.0}}) {
    restarted.setAutoSaveInterval(interval);
    EXPECT_EQ(itsTimers.periods(), std::vector<double>{period}) << interval;
  }
  for (const int slot : {3, 4, 5, 6, 4})
    restarted.recordRecentKit(slot);
  EXPECT_THAT(restarted.recentKitSlots(), ElementsAre(4, 6, 5, 3, 9));
  EXPECT_EQ(defaults.integers(RolandLibrary::recentKitsKey), restarted.recentKitSlots());
}

}  // namespace
}  // namespace tamboro::test
