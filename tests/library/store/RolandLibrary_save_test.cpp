#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "support/FailingFileSystem.h"
#include "support/TestStore.h"

namespace tamboro::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST(Save, WithoutACardOrWithNothingToWrite) {
  TestStore store;
  EXPECT_EQ(store.save(), "No SPD-SX folder has been loaded yet.");
  EXPECT_FALSE(store.library.isExporting());
  store.open();
  EXPECT_EQ(store.save(), "");
  EXPECT_EQ(difference(withoutIndexes(sampleCard()), withoutIndexes(store.card())), "");
  EXPECT_EQ(store.card().at("SYSTEM/wavelist_name.spd"),
            "<WvListSortbyName>\n\t<Wv>1</Wv>\n\t<Wv>205</Wv>\n\t<Wv>206</Wv>\n\t<Wv>207</Wv>\n</WvListSortbyName>\n");
  EXPECT_EQ(store.card().at("SYSTEM/wavelist_tagnum.spd"),
            "<WvListSortbyNum_Tag>\n\t<WvList>\n\t\t<Wv>1</Wv>\n\t\t<Wv>205</Wv>\n\t</WvList>\n\t<WvList>\n\t\t"
            "<Wv>206</Wv>\n\t</WvList>\n</WvListSortbyNum_Tag>\n");
}

TEST(Save, BacksUpWhatTheCardHeldBefore) {
  TestStore store;
  store.open();
  store.library.setKitLevel(1, 3);
  ASSERT_EQ(store.save(), "");
  Tree backup = sampleCard();
  std::erase_if(backup, [](const auto& f) { return f.first.starts_with("WAVE/DATA") || f.first == "unknown.dat"; });
  EXPECT_EQ(difference(backup, readTree(store.files, TestStore::backup)), "");
  store.library.setBackupBeforeSaveEnabled(false);
  store.library.setKitLevel(1, 4);
  ASSERT_EQ(store.save(), "");
  EXPECT_EQ(difference(backup, readTree(store.files, TestStore::backup)), "");
  store.library.setBackupBeforeSaveEnabled(true);
  store.library.setBackupDestinationOverride("/media/card");  // holds the card: refused, and the save goes on
  store.library.setKitLevel(1, 5);
  ASSERT_EQ(store.save(), "");
  EXPECT_THAT(store.card().at("KIT/kit001.spd"), HasSubstr("<Level>5<"));
}

TEST(Save, TakesAwayDeletedKitsAndSamples) {
  TestStore store;
  Tree card = sampleCard();
  card["KIT/kit+2.spd"] = card.at("KIT/kit002.spd");
  card["WAVE/PRM/02/09.spd"] = "<WvPrm><Path>02/KICK.wav</Path></WvPrm>";
  store.open(card);
  store.library.deleteKit(2);
  store.library.deleteWave(205);
  store.library.deleteWave(207);
  EXPECT_TRUE(store.library.hasUnsavedChanges());
  EXPECT_EQ(store.library.kits().size(), 2U);
  ASSERT_EQ(store.save(), "");
  EXPECT_FALSE(store.library.hasUnsavedChanges());
  // The kick's audio stays while another sample names it.
  for (const char* gone :
       {"KIT/kit002.spd", "KIT/kit+2.spd", "WAVE/PRM/02/05.spd", "WAVE/PRM/02/07.spd", "WAVE/DATA/02/tom low.wav"}) {
    card.erase(gone);
  }
  EXPECT_EQ(difference(withoutIndexes(card), withoutIndexes(store.card())), "");
}

TEST(Save, AKitMadeInAFreedSlotReplacesTheOldFile) {
  TestStore store;
  store.open();
  store.library.deleteKit(1);
  ASSERT_EQ(store.library.createKit(2, true), 0);
  ASSERT_EQ(store.library.createKit(2, false), 1);
  ASSERT_EQ(store.save(), "");
  EXPECT_THAT(store.card().at("KIT/kit001.spd"), HasSubstr("<Nm4>32<"));
  store.library.load("/media/card");
  EXPECT_EQ(store.library.kit(1)->name(), "Jazz Cop");
}

TEST(Save, AnotherCardAtTheSamePlaceIsNotTouched) {
  TestStore store;
  store.open();
  store.library.setKitLevel(1, 3);
  store.library.deleteWave(205);
  const auto tryWith = [&](const std::string& serial) {
    Tree other = sampleCard();
    other["KIT/kit001.spd"] = "another's";
    store.mountCard(serial, other);
    const std::string text = store.save();
    if (!text.empty()) {
      EXPECT_EQ(difference(other, store.card()), "");
      EXPECT_TRUE(store.library.hasUnsavedChanges());
      EXPECT_FALSE(store.library.isExporting());
    }
    return text;
  };
  EXPECT_NE(tryWith("fat:FFFF-0000"), "");
  store.files.mount("/media/card", {});  // pulled out
  EXPECT_NE(store.save(), "");
  EXPECT_EQ(store.files.status(TestStore::backup).kind, FileKind::none);
  store.mountCard("fat:1234-ABCD", sampleCard());  // the same card, plugged in again
  EXPECT_EQ(store.save(), "");
}

TEST(Save, AFailureKeepsEveryFlag) {
  TestStore store;
  store.open();
  store.library.setKitLevel(1, 3);
  store.library.setTagName(0, "x");
  store.library.setWaveTag(206, 0);
  store.library.deleteWave(205);
  store.library.deleteKit(2);
  store.files.setVolume("/media/card", {"fat:1234-ABCD", {1U << 30U, 4096}, true});
  EXPECT_THAT(store.save(), HasSubstr("Read-only file system"));
  EXPECT_EQ(difference(sampleCard(), store.card()), "");
  store.files.setVolume("/media/card", {"fat:1234-ABCD", {1000, 512}, false});
  EXPECT_THAT(store.save(), HasSubstr("No space left on device"));
  EXPECT_EQ(difference(sampleCard(), store.card()), "");
  EXPECT_TRUE(store.library.kit(1)->isDirty);
  EXPECT_TRUE(store.library.wave(206)->isDirty);
  EXPECT_TRUE(store.library.tagList()->isDirty);
  EXPECT_EQ(store.library.pendingDeletions().size(), 1U);
  store.files.setVolume("/media/card", {"fat:1234-ABCD", {1U << 30U, 512}, false});
  EXPECT_EQ(store.save(), "");
  EXPECT_FALSE(store.library.hasUnsavedChanges());
}

/// What happens while a save runs, and what the store and the card must show when it has ended and another one has
/// saved the rest.
struct Meanwhile {
  const char* what;
  std::function<void(TestStore&)> happens;
  bool staysUnsaved;
  std::function<void(Tree&)> expect;  // changes the sample card into the one after both saves
};

std::vector<Meanwhile> interleavings() {
  const auto level3 = [](Tree& c) { c["KIT/kit001.spd"] = replaced(c["KIT/kit001.spd"], "<Level>80<", "<Level>3<"); };
  const auto newKit = [](Tree& c) { c.erase("KIT/kit002.spd"); };
  return {
      {"nothing", [](TestStore&) {}, false, level3},
      {"another edit of the kit", [](TestStore& s) { s.library.setKitLevel(1, 4); }, true,
       [](Tree& c) { c["KIT/kit001.spd"] = replaced(c["KIT/kit001.spd"], "<Level>80<", "<Level>4<"); }},
      {"the same value again", [](TestStore& s) { s.library.setKitLevel(1, 3); }, false, level3},
      {"an undo", [](TestStore& s) { s.library.undoManager().undo(); }, true, [](Tree&) {}},
      {"an undo and a redo",
       [](TestStore& s) {
         s.library.undoManager().undo();
         s.library.undoManager().redo();
       },
       false, level3},
      {"the kit's deletion", [](TestStore& s) { s.library.deleteKit(1); }, true,
       [](Tree& c) { c.erase("KIT/kit001.spd"); }},
      {"another kit's deletion", [](TestStore& s) { s.library.deleteKit(2); }, true,
       [=](Tree& c) {
         level3(c);
         newKit(c);
       }},
      {"a sample's deletion", [](TestStore& s) { s.library.deleteWave(207); }, true,
       [=](Tree& c) {
         level3(c);
         c.erase("WAVE/PRM/02/07.spd");
         c.erase("WAVE/DATA/02/tom low.wav");
       }},
      {"another record's edit", [](TestStore& s) { s.library.setTagName(1, "Snart"); }, true,
       [=](Tree& c) {
         level3(c);
         c["SYSTEM/tag_list.spd"] =
             replaced(replaced(c["SYSTEM/tag_list.spd"], "<Nm3>114<", "<Nm3>X<"), "<Nm4>101<", "<Nm4>116<");
         c["SYSTEM/tag_list.spd"] = replaced(c["SYSTEM/tag_list.spd"], "<Nm3>X<", "<Nm3>114<");
       }},
  };
}

TEST(Save, EditsMeanwhileStayUnsavedAndTheNextSaveWritesThem) {
  for (const Meanwhile& meanwhile : interleavings()) {
    for (const bool afterTheWriting : {false, true}) {
      SCOPED_TRACE(std::string(meanwhile.what) + (afterTheWriting ? " after the writing" : " before the writing"));
      TestStore store;
      store.open();
      store.turn([&] { store.library.setKitLevel(1, 3); });
      std::vector<std::string> ended;
      store.library.save([&](const std::exception_ptr& error) { ended.push_back(textOf(error)); });
      EXPECT_TRUE(store.library.isExporting());
      if (afterTheWriting) store.jobs.runWork();
      store.turn([&] { meanwhile.happens(store); });
      store.jobs.runAll();
      EXPECT_THAT(ended, ElementsAre(""));
      EXPECT_FALSE(store.library.isExporting());
      EXPECT_EQ(store.library.hasUnsavedChanges(), meanwhile.staysUnsaved);
      EXPECT_EQ(store.save(), "");
      EXPECT_FALSE(store.library.hasUnsavedChanges());
      Tree expected = sampleCard();
      meanwhile.expect(expected);
      EXPECT_EQ(difference(withoutIndexes(expected), withoutIndexes(store.card())), "");
    }
  }
}

TEST(Save, ASecondCallWaitsAndThenSavesOnlyWhatIsStillUnsaved) {
  TestStore store;
  store.open();
  store.library.setKitLevel(1, 3);
  std::vector<std::string> ended;
  const auto call = [&](const char* name) {
    store.library.save([&ended, name](const std::exception_ptr& error) { ended.push_back(name + textOf(error)); });
  };
  call("first");
  call("second");
  call("third");
  store.jobs.runWork();
  store.jobs.deliver();
  // Nothing was left: no further job, and the backup still shows the card before the change.
  EXPECT_THAT(ended, ElementsAre("first", "second", "third"));
  EXPECT_EQ(store.jobs.waiting(), 0U);
  EXPECT_EQ(readTree(store.files, TestStore::backup).at("KIT/kit001.spd"), sampleCard().at("KIT/kit001.spd"));

  ended.clear();
  store.library.setKitLevel(1, 4);
  call("first");
  store.library.setKitLevel(1, 5);
  call("second");
  store.jobs.runWork();
  store.jobs.deliver();
  EXPECT_THAT(ended, ElementsAre("first"));
  EXPECT_TRUE(store.library.isExporting());
  store.timers.tick();  // an autosave during a save does nothing
  EXPECT_EQ(store.jobs.waiting(), 1U);
  store.jobs.runAll();
  EXPECT_THAT(ended, ElementsAre("first", "second"));
  EXPECT_THAT(store.card().at("KIT/kit001.spd"), HasSubstr("<Level>5<"));
}

TEST(Save, OfACardThatALoadHasReplacedChangesOnlyThatItRuns) {
  TestStore store;
  store.open();
  store.library.setKitLevel(1, 3);
  store.library.save([](const std::exception_ptr&) {});
  writeTree(store.files, "/copy", sampleCard());
  store.library.load("/copy");
  store.library.setKitLevel(1, 3);
  store.library.deleteKit(2);
  const std::vector<Kit> kits = store.library.kits();
  store.jobs.runAll();
  EXPECT_FALSE(store.library.isExporting());
  EXPECT_EQ(store.library.kits(), kits);
  EXPECT_TRUE(store.library.hasUnsavedChanges());
  EXPECT_THAT(store.card().at("KIT/kit001.spd"), HasSubstr("<Level>3<"));
  EXPECT_EQ(difference(withoutIndexes(sampleCard()), withoutIndexes(readTree(store.files, "/copy"))), "");
}

// But for nothing else: an import can come from a disk that answers late, and is dropped by the load.
TEST(Save, ReadingTheCardAgainWaitsForTheSavesThatWereAskedFor) {
  TestStore store;
  store.open();
  store.library.importWave("/home/kick.wav", "Kick", 0, [](const std::exception_ptr&) {});
  store.library.setKitLevel(1, 3);
  store.library.save([](const std::exception_ptr&) {});
  store.library.setKitLevel(1, 4);
  store.library.save([](const std::exception_ptr&) {});
  store.library.load("/media/card");
  EXPECT_EQ(store.library.kit(1)->level(), 4);
  EXPECT_FALSE(store.library.hasUnsavedChanges());
  EXPECT_EQ(store.jobs.waiting(), 1U);
}

TEST(Save, StagedAudioReachesTheCardOnceAndASampleEditedMeanwhileIsPendingNoMore) {
  TestStore store;
  store.open();
  writeFile(store.files, "/home/new.wav", "new audio");
  ASSERT_EQ(store.import("/home/new.wav", "New", 1), "");
  ASSERT_TRUE(store.library.wave(200)->isPending);
  EXPECT_EQ(store.library.audioURL(*store.library.wave(200)), TestStore::staging / "02/new.wav");
  store.library.save([](const std::exception_ptr&) {});
  store.turn([&] { store.library.setWaveName(200, "Newer"); });
  store.jobs.runAll();
  EXPECT_FALSE(store.library.wave(200)->isPending);
  EXPECT_TRUE(store.library.wave(200)->isDirty);
  EXPECT_EQ(store.library.audioURL(*store.library.wave(200)), TestStore::root / "WAVE/DATA/02/new.wav");
  store.library.undoManager().undo();  // its snapshot was pending
  EXPECT_FALSE(store.library.wave(200)->isPending);
  ASSERT_EQ(store.save(), "");
  EXPECT_EQ(store.card().at("WAVE/DATA/02/new.wav"), "new audio");
  store.library.load("/media/card");
  EXPECT_EQ(store.library.wave(200)->name(), "New");
}

TEST(Save, ASampleDeletedOnceASaveHasBegunIsTakenOffTheCardAgain) {
  for (const bool fails : {false, true}) {
    TestStore store;
    store.open();
    writeFile(store.files, "/home/new.wav", "new audio");
    ASSERT_EQ(store.import("/home/new.wav", "New"), "");
    store.library.save([](const std::exception_ptr&) {});
    if (fails) store.files.setVolume("/media/card", {"fat:1234-ABCD", {1U << 30U, 4096}, true});
    store.library.deleteWave(200);
    EXPECT_EQ(store.library.pendingDeletions().count(200), 1U);
    store.jobs.runAll();
    store.files.setVolume("/media/card", {"fat:1234-ABCD", {1U << 30U, 4096}, false});
    EXPECT_EQ(store.library.pendingDeletions().count(200), 1U);
    ASSERT_EQ(store.save(), "");
    EXPECT_EQ(difference(withoutIndexes(sampleCard()), withoutIndexes(store.card())), "");
  }
}

TEST(AutoSave, TicksSaveOnlyWhatIsUnsavedAndDropFailures) {
  TestStore store;
  store.timers.tick();
  store.open();
  store.timers.tick();
  EXPECT_EQ(store.jobs.waiting(), 0U);
  store.library.setKitLevel(1, 3);
  store.files.setVolume("/media/card", {"fat:1234-ABCD", {1U << 30U, 4096}, true});
  store.timers.tick();
  store.jobs.runAll();
  EXPECT_TRUE(store.library.hasUnsavedChanges());
  EXPECT_EQ(store.library.lastError(), std::nullopt);
  store.files.setVolume("/media/card", {"fat:1234-ABCD", {1U << 30U, 4096}, false});
  store.timers.tick();
  store.jobs.runAll();
  EXPECT_FALSE(store.library.hasUnsavedChanges());
  store.library.setKitLevel(1, 4);
  store.library.setAutoSaveEnabled(false);
  store.timers.tick();
  EXPECT_EQ(store.jobs.waiting(), 0U);
}

// Fails the first, second, third … file operation of a save until one passes: each time every flag is still set, and
// saving again leaves the card as the store has it.
TEST(Save, KeepsEveryFlagWhicheverOfItsFileOperationsFails) {
  bool passed = false;
  for (std::uint64_t number = 1; !passed; ++number) {
    SCOPED_TRACE(number);
    MemoryFileSystem memory;
    FailingFileSystem failing(memory);
    TestStore store(memory, failing);
    store.open();
    writeFile(memory, "/home/new.wav", "new audio");
    ASSERT_EQ(store.import("/home/new.wav", "New", 1), "");
    RolandLibrary& library = store.library;
    library.setKitLevel(1, 3);
    library.setTagName(0, "x");
    library.deleteWave(205);
    failing.failFrom(number);
    const std::string text = store.save();
    passed = failing.count() < number;
    failing.failNothing();
    ASSERT_EQ(text.empty(), passed);
    const bool allSet = library.kit(1)->isDirty && library.tagList()->isDirty && library.wave(200)->isDirty &&
                        library.wave(200)->isPending && library.pendingDeletions().contains(205);
    EXPECT_EQ(allSet, !passed);
    ASSERT_EQ(store.save(), "");
    EXPECT_FALSE(library.hasUnsavedChanges());
    const std::vector<Kit> kits = library.kits();
    const std::vector<Wave> waves = library.waves();
    library.load("/media/card");
    EXPECT_EQ(library.kits().size(), kits.size());
    EXPECT_EQ(library.kit(1)->level(), 3);
    EXPECT_EQ(library.waves().size(), waves.size());
    EXPECT_EQ(store.card().at("WAVE/DATA/02/new.wav"), "new audio");
  }
}

}  // namespace
}  // namespace tamboro::test
