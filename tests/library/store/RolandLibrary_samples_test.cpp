#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "support/FailingFileSystem.h"
#include "support/TestStore.h"

namespace tamboro::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* notLoaded = "No SPD-SX folder has been loaded yet.";
constexpr const char* noFreeSlot = "No free sample slots on the card (every bank folder is full).";

struct Samples : ::testing::Test {
  TestStore store;
  RolandLibrary& library = store.library;

  void SetUp() override {
    writeTree(store.files, "/home", {{"kick.wav", "one"}, {"other/kick.wav", "two"}, {"snare.wav", "three"}});
  }
  std::string path(WaveId id) const { return library.wave(id) ? library.wave(id)->relativeAudioPath() : "none"; }
  std::string name(WaveId id) const { return library.wave(id) ? library.wave(id)->name() : "none"; }
  std::string duplicate(WaveId id) {
    std::string text = "the copy has not ended";
    library.duplicateWave(id, [&](const std::exception_ptr& error) { text = textOf(error); });
    store.jobs.runAll();
    library.undoManager().endTurn();
    return text;
  }
  std::string exported(Slot slot, const Path& folder) {
    std::string text = "the export has not ended";
    library.exportKit(slot, folder, [&](const std::exception_ptr& error) { text = textOf(error); });
    store.jobs.runAll();
    return text;
  }
  /// Calls whose ends are told in `ended`, as the name and the error's text.
  void queue(const std::string& what, const Path& source) {
    library.importWave(source, what, 0,
                       [this, what](const std::exception_ptr& error) { ended.push_back(what + textOf(error)); });
  }
  void startSave() {
    library.save([](const std::exception_ptr&) {});
  }
  Tree staged() const { return readTree(store.files, TestStore::staging); }

  std::vector<std::string> ended;
};

TEST_F(Samples, WithoutACard) {
  EXPECT_EQ(store.import("/home/kick.wav", "Kick"), notLoaded);
  EXPECT_EQ(duplicate(205), "");
  EXPECT_EQ(exported(1, "/home/kit"), "");  // without a kit there is nothing to export
  EXPECT_EQ(store.files.status("/home/kit").kind, FileKind::none);
}

TEST_F(Samples, AnImportTakesTheFirstGapAndIsNewAndStaged) {
  store.open();
  ASSERT_EQ(store.import("/home/kick.wav", "Thirteen long", 3), "");
  const Wave& wave = *library.wave(200);
  EXPECT_EQ(wave.name(), "Thirteen lon");
  EXPECT_EQ(wave.tag(), 3);
  EXPECT_TRUE(wave.isDirty && wave.isPending);
  EXPECT_TRUE(wave.hasMeasure());
  EXPECT_EQ(staged(), (Tree{{"02/kick_01.wav", "one"}}));  // the card has a kick.wav
  EXPECT_EQ(path(200), "02/kick_01.wav");
  EXPECT_FALSE(library.undoManager().canUndo());
  for (int i = 0; i < 5; ++i)
    ASSERT_EQ(store.import("/home/snare.wav", "x"), "");
  EXPECT_NE(library.wave(208), nullptr);
  EXPECT_EQ(library.wave(209), nullptr);
  EXPECT_TRUE(std::is_sorted(library.waves().begin(), library.waves().end(),
                             [](const Wave& a, const Wave& b) { return a.id() < b.id(); }));
}

TEST_F(Samples, TheGapOfAPendingDeletionIsFreeAtOnce) {
  Tree card = sampleCard();
  for (int i = 0; i < 5; ++i)
    card["WAVE/PRM/02/0" + std::to_string(i) + ".spd"] = "<WvPrm/>";
  store.open(card);
  library.deleteWave(205);
  ASSERT_EQ(store.import("/home/kick.wav", "New"), "");
  EXPECT_EQ(path(205), "02/kick_01.wav");
  EXPECT_EQ(library.pendingDeletions().count(205), 1U);
  ASSERT_EQ(store.save(), "");
  EXPECT_THAT(library.pendingDeletions(), IsEmpty());
  Tree after = store.card();
  EXPECT_EQ(after.count("WAVE/DATA/02/kick.wav"), 0U);
  EXPECT_EQ(after["WAVE/DATA/02/kick_01.wav"], "one");
  EXPECT_THAT(after["WAVE/PRM/02/05.spd"], HasSubstr("<Path>02/kick_01.wav</Path>\n</WvPrm>\n"));
}

TEST_F(Samples, AFullCardRefusesAnImport) {
  Tree card = sampleCard();
  const auto twoDigits = [](int number) { return std::to_string(number / 10) + std::to_string(number % 10); };
  for (int id = 200; id < 10000; ++id)
    card["WAVE/PRM/" + twoDigits(id / 100) + "/" + twoDigits(id % 100) + ".spd"] = "<WvPrm/>";
  store.open(card);
  EXPECT_EQ(store.import("/home/kick.wav", "x"), noFreeSlot);
  EXPECT_EQ(duplicate(205), noFreeSlot);
  library.deleteWave(9999);
  EXPECT_EQ(store.import("/home/kick.wav", "x"), "");
  EXPECT_EQ(path(9999), "99/kick.wav");
  EXPECT_EQ(store.import("/home/kick.wav", "x"), noFreeSlot);
}

TEST_F(Samples, AudioNamesAreFreeInTheStoreAndOnTheCardAndFitOnFat) {
  const auto accents = [](int count) {
    std::string text;
    while (count-- > 0)
      text += "\xC3\xA9";
    return text;
  };
  const struct {
    std::string source;
    std::string stored;
  } cases[] = {
      {"x" + accents(125) + ".wav", "x" + accents(125) + ".wav"},     // 255 bytes, and no name is longer
      {"x" + accents(125) + ".wav", "x" + accents(123) + "_01.wav"},  // half a character would be none
      {"hat.wav", "hat.wav"},
      {"hat.wav", "hat_01.wav"},
      {"hat.wav", "hat_02.wav"},
      {"HAT.WAV", "HAT_03.WAV"},
      {"hat", "hat"},
      {"Hat", "Hat_01"},
      {"stray.wav", "stray_01.wav"},
      {"SNARE.wav", "SNARE_01.wav"},
      {"a.b.wav", "a.b.wav"},
      {"A.B.wav", "A.B_01.wav"},
      {"\xC3\xA9.wav", "\xC3\xA9.wav"},
      {"e\xCC\x81.wav", "e\xCC\x81_01.wav"},
      {"a<b>c:d.wav", "a_b_c_d.wav"},
      {"\"*?\\|\x01\x7F.wav", "_______.wav"},
      {"a_b_c_d.wav", "a_b_c_d_01.wav"},
      {"end.", "end_"},
      {"end ", "end__01"},
      {".wav", ".wav"},
      {".WAV", ".WAV_01"},
  };
  Tree card = sampleCard();
  card["WAVE/DATA/02/Stray.WAV"] = "nobody's";
  store.open(card);
  WaveId id = 208;
  for (WaveId gap : {200, 201, 202, 203, 204}) {
    ASSERT_EQ(store.import("/home/kick.wav", "gap"), "");
    ASSERT_NE(library.wave(gap), nullptr);
  }
  for (const auto& [source, stored] : cases) {
    writeFile(store.files, Path("/names") / source, source);
    ASSERT_EQ(store.import(Path("/names") / source, "x"), "") << source;
    EXPECT_EQ(path(id++), std::string("02/") + stored);
  }
  ASSERT_EQ(store.save(), "");
  for (const auto& [source, stored] : cases)
    EXPECT_EQ(store.card()[std::string("WAVE/DATA/02/") + stored], source);
}

TEST_F(Samples, TheCounterOfANameGoesBeyondNinetyNine) {
  Tree card = sampleCard();
  for (int i = 1; i < 100; ++i)
    card["WAVE/DATA/02/kick_" + std::to_string(i / 10) + std::to_string(i % 10) + ".wav"] = "";
  store.open(card);
  ASSERT_EQ(store.import("/home/kick.wav", "x"), "");
  EXPECT_EQ(path(200), "02/kick_100.wav");
}

TEST_F(Samples, ImportsRunOneAfterAnotherAndAFailureHoldsUpNone) {
  store.open();
  makeFolders(store.files, "/home/folder.wav");
  store.files.addSpecial("/home/pipe.wav");
  for (const char* source : {"kick.wav", "gone.wav", "folder.wav", "pipe.wav", "other/kick.wav"})
    queue(source, Path("/home") / source);
  EXPECT_EQ(store.jobs.waiting(), 1U);
  store.jobs.runWork();
  queue("late", "/home/snare.wav");
  EXPECT_EQ(store.jobs.waiting(), 0U);
  store.jobs.runAll();
  EXPECT_THAT(ended, ElementsAre("kick.wav", HasSubstr("No such file"), HasSubstr("directory"), HasSubstr("pipe.wav"),
                                 "other/kick.wav", "late"));
  EXPECT_EQ(staged(), (Tree{{"02/kick_01.wav", "one"}, {"02/kick_02.wav", "two"}, {"02/snare_01.wav", "three"}}));
  EXPECT_EQ(path(201), "02/kick_02.wav");
}

TEST(SamplesOnAFullDisk, AFailedCopyLeavesNothing) {
  MemoryFileSystem memory;
  FailingFileSystem failing(memory);
  TestStore store(memory, failing);
  store.open();
  writeTree(memory, "/home", {{"kick.wav", "one"}, {"snare.wav", "not audio at all"}});
  failing.failWhere(
      [](FileOperation what, const Path& file) {
        return what == FileOperation::fileWrite && file.parent_path() == TestStore::staging / "02";
      },
      std::errc::no_space_on_device);
  EXPECT_THAT(store.import("/home/kick.wav", "x"), HasSubstr("No space left"));
  EXPECT_THAT(readTree(memory, TestStore::staging), IsEmpty());
  EXPECT_FALSE(store.library.hasUnsavedChanges());
  failing.failNothing();
  EXPECT_EQ(store.import("/home/snare.wav", "x"), "");
  EXPECT_NE(store.library.wave(200), nullptr);
}

TEST_F(Samples, ImportsAskedForOnACardThatWasReplacedEndWithoutATrace) {
  for (const bool afterTheCopy : {false, true}) {
    store.open();
    ended.clear();
    queue("first", "/home/kick.wav");
    queue("second", "/home/snare.wav");
    library.duplicateWave(205, [this](const std::exception_ptr& error) { ended.push_back("copy" + textOf(error)); });
    if (afterTheCopy) store.jobs.runWork();
    library.load("/media/card");
    queue("new", "/home/other/kick.wav");
    store.jobs.runAll();
    EXPECT_THAT(ended, ElementsAre(std::string("first") + notLoaded, std::string("second") + notLoaded,
                                   std::string("copy") + notLoaded, "new"));
    EXPECT_EQ(staged(), (Tree{{"02/kick_01.wav", "two"}}));
    EXPECT_EQ(library.waves().size(), 5U);
    EXPECT_FALSE(library.undoManager().canUndo());
  }
}

TEST_F(Samples, ACopyHasTheSettingsAndOneUndoTakesThemBack) {
  store.open();
  library.setWaveBeat(205, 7);
  library.setWaveStart(205, 7);
  library.setWaveEnd(205, 7);
  library.setWaveTag(205, 7);
  library.setWaveTempo(205, 900);
  library.undoManager().endTurn();
  ASSERT_EQ(duplicate(205), "");
  const auto settings = [&] {
    const Wave& copy = *library.wave(200);
    return std::vector{copy.tempo(), copy.beat(), copy.start(), copy.end(), copy.tag()};
  };
  EXPECT_EQ(name(200), "Kick Copy");
  EXPECT_EQ(path(200), "02/kick_01.wav");
  EXPECT_THAT(settings(), ElementsAre(900, 7, 7, 7, 7));
  EXPECT_EQ(library.undoManager().undoActionName(), QStringLiteral("Sound Change"));
  library.undoManager().undo();
  EXPECT_THAT(settings(), ElementsAre(1200, 4, 0, 0, 7));
  EXPECT_TRUE(library.wave(200)->isPending);
  library.undoManager().redo();
  EXPECT_THAT(settings(), ElementsAre(900, 7, 7, 7, 7));
  ASSERT_EQ(duplicate(200), "");  // of one that is still staged
  EXPECT_EQ(name(201), "Kick Copy Co");
  ASSERT_EQ(store.save(), "");
  EXPECT_EQ(store.card()["WAVE/DATA/02/kick_01.wav"], "kick audio");
  EXPECT_EQ(store.card()["WAVE/DATA/02/kick_01_01.wav"], "kick audio");
}

TEST_F(Samples, ACopyNeedsTheSampleAndItsAudio) {
  Tree card = sampleCard();
  card["WAVE/PRM/02/08.spd"] = "<WvPrm><Path></Path></WvPrm>";
  card["WAVE/PRM/02/09.spd"] = "<WvPrm><Path>02/../../../x</Path></WvPrm>";
  card["WAVE/PRM/02/10.spd"] = "<WvPrm><Path>02/gone.wav</Path></WvPrm>";
  store.open(card);
  EXPECT_EQ(duplicate(208), notLoaded);
  EXPECT_EQ(duplicate(209), notLoaded);
  EXPECT_THAT(duplicate(210), HasSubstr("No such file"));
  EXPECT_EQ(duplicate(777), "");
  EXPECT_FALSE(library.hasUnsavedChanges());
  EXPECT_EQ(duplicate(206), "");  // without a Path its name tells the audio
  EXPECT_EQ(path(200), "02/Snare_01.wav");
  EXPECT_FALSE(library.undoManager().canUndo() && library.wave(200)->tempo() == 1200);
}

TEST_F(Samples, ACopyKeepsItsSourceThroughADeletionAndAReusedName) {
  store.open();
  ASSERT_EQ(store.import("/home/snare.wav", "Snare"), "");
  queue("first", "/home/kick.wav");
  library.duplicateWave(200, [this](const std::exception_ptr& error) { ended.push_back("copy" + textOf(error)); });
  library.deleteWave(200);
  store.jobs.runAll();
  EXPECT_THAT(ended, ElementsAre("first", "copy"));
  ASSERT_EQ(store.save(), "");
  EXPECT_EQ(store.card()["WAVE/DATA/" + path(200)], "three");
}

TEST_F(Samples, ADeletionKeepsThePadsAndSparesTheFactory) {
  store.open();
  const std::vector<Kit> kits = library.kits();
  library.deleteWave(1);
  library.deleteWave(777);
  EXPECT_FALSE(library.hasUnsavedChanges());
  library.deleteWave(206);
  EXPECT_EQ(library.kits(), kits);
  EXPECT_EQ(library.pendingDeletions().at(206).name(), "Snare");
  EXPECT_FALSE(library.undoManager().canUndo());
}

TEST_F(Samples, ADeletedImportLeavesNoTrace) {
  store.open();
  ASSERT_EQ(store.import("/home/kick.wav", "New"), "");
  library.deleteWave(200);
  EXPECT_FALSE(library.hasUnsavedChanges());
  EXPECT_THAT(library.pendingDeletions(), IsEmpty());
  EXPECT_THAT(staged(), IsEmpty());
  ASSERT_EQ(store.import("/home/other/kick.wav", "New"), "");
  store.files.removeFile(TestStore::staging / "02/kick_01.wav");
  library.deleteWave(200);  // a staged file that has gone by itself doesn't matter
  EXPECT_EQ(library.wave(200), nullptr);
}

TEST_F(Samples, UndoFindsNoSampleThatWasDeletedNorItsSuccessor) {
  store.open();
  ASSERT_EQ(store.import("/home/kick.wav", "New"), "");
  for (const WaveId id : {205, 200})
    store.turn([&] { library.setWaveTempo(id, 55); });
  library.deleteWave(200);
  library.deleteWave(205);
  for (int i = 0; i < 6; ++i)
    ASSERT_EQ(store.import("/home/kick.wav", "Newer"), "");
  ASSERT_NE(library.wave(205), nullptr);
  const std::vector<Wave> waves = library.waves();
  library.undoManager().undo();
  library.undoManager().undo();
  EXPECT_EQ(library.waves(), waves);
  EXPECT_FALSE(library.undoManager().canRedo());
}

TEST_F(Samples, UsagesStandInTheOrderOfKitsAndPadsAndTellSubSounds) {
  store.open();
  const auto usages = [&](WaveId id) {
    std::vector<std::string> texts;
    for (const WaveUsage& use : library.waveUsages(id))
      texts.push_back(std::to_string(use.kitSlot) + use.kitName + std::to_string(use.padIndex) +
                      (use.isSub ? " sub" : ""));
    return texts;
  };
  EXPECT_THAT(usages(1), IsEmpty());
  EXPECT_THAT(usages(206), ElementsAre("1Rock1", "2Jazz0"));
  library.setPadSound(4, 0, 206);
  library.setPadSound(1, 14, 206);
  library.updatePad(1, 1, [](Pad& pad) { pad.node.setLeaf("SubWv", 206); });
  library.updatePad(2, 2, [](Pad& pad) { pad.node.setLeaf("SubWv", 206); });
  library.setKitName(1, "Newer");
  EXPECT_THAT(usages(206), ElementsAre("1Newer1", "1Newer1 sub", "1Newer14", "2Jazz0", "2Jazz2 sub", "4Odd0"));
  EXPECT_THAT(usages(999), ElementsAre("2Jazz2"));  // also where there is no such sample
}

// A pending sample is deleted while a save carries it to the card, and another file takes its id and, if it could,
// its name. Whatever the save comes to, the next one leaves the card with the new sample alone.
TEST_F(Samples, AnIdReusedDuringASaveBelongsToTheNewSample) {
  for (const bool fails : {false, true}) {
    for (const bool afterTheWriting : {false, true}) {
      SCOPED_TRACE(std::string(fails ? "fails" : "passes") + (afterTheWriting ? ", late" : ", early"));
      store.open();
      ASSERT_EQ(store.import("/home/snare.wav", "Old"), "");
      store.files.setVolume("/media/card", {"fat:1234-ABCD", {1U << 30U, 4096}, fails});
      startSave();
      if (afterTheWriting) store.jobs.runWork();
      library.deleteWave(200);
      writeFile(store.files, "/again/snare.wav", "new");
      queue("new", "/again/snare.wav");
      store.jobs.runAll();
      store.files.setVolume("/media/card", {"fat:1234-ABCD", {1U << 30U, 4096}, false});
      EXPECT_TRUE(library.wave(200)->isDirty && library.wave(200)->isPending);
      EXPECT_EQ(library.pendingDeletions().count(200), 1U);
      const std::string audio = path(200);
      ASSERT_EQ(store.save(), "");
      Tree card = store.card();
      EXPECT_EQ(card["WAVE/DATA/" + audio], "new");
      EXPECT_THAT(card["WAVE/PRM/02/00.spd"], HasSubstr("<Path>" + audio + "<"));
      card.erase("WAVE/DATA/" + audio);
      card.erase("WAVE/PRM/02/00.spd");
      EXPECT_EQ(difference(withoutIndexes(sampleCard()), withoutIndexes(card)), "");
    }
  }
}

TEST_F(Samples, AnImportDuringASaveWaitsForTheNextOne) {
  store.open();
  ASSERT_EQ(store.import("/home/kick.wav", "First"), "");
  startSave();
  queue("second", "/home/kick.wav");
  store.jobs.runAll();
  EXPECT_FALSE(library.wave(200)->isPending);
  EXPECT_TRUE(library.wave(201)->isPending);
  EXPECT_EQ(store.card().count("WAVE/PRM/02/01.spd"), 0U);
  startSave();
  library.deleteWave(201);
  store.jobs.runAll();
  ASSERT_EQ(store.save(), "");
  EXPECT_EQ(store.card().count("WAVE/PRM/02/01.spd") + store.card().count("WAVE/DATA/02/kick_02.wav"), 0U);
}

// The first failed save may have removed the old sample's files or not: both deletions of the id must stay known.
TEST_F(Samples, TwoDeletionsOfOneIdTakeAwayBothAudioFiles) {
  for (const bool duringTheSave : {false, true}) {
    store.open();
    library.deleteWave(205);
    for (int i = 0; i < 6; ++i)
      ASSERT_EQ(store.import("/home/kick.wav", "x"), "");
    store.files.setVolume("/media/card", {"fat:1234-ABCD", {1U << 30U, 4096}, true});
    startSave();
    if (duringTheSave) library.deleteWave(205);
    store.jobs.runAll();
    library.deleteWave(205);
    store.files.setVolume("/media/card", {"fat:1234-ABCD", {1U << 30U, 4096}, false});
    ASSERT_EQ(store.save(), "");
    EXPECT_FALSE(library.hasUnsavedChanges());
    EXPECT_EQ(store.card().count("WAVE/DATA/02/kick.wav"), 0U);
  }
}

TEST_F(Samples, AnExportKeepsItsStagedAudioThroughADeletionAndAReusedName) {
  store.open();
  ASSERT_EQ(store.import("/home/snare.wav", "x"), "");
  library.setPadSound(2, 0, 200);
  std::string text = "the export has not ended";
  library.exportKit(2, "/home/kit", [&](const std::exception_ptr& error) { text = textOf(error); });
  library.deleteWave(200);
  writeFile(store.files, "/again/snare.wav", "new");
  queue("new", "/again/snare.wav");
  store.jobs.runAll();
  EXPECT_EQ(text, "");
  EXPECT_EQ(readTree(store.files, "/home/kit").at("WAVE/DATA/02/snare_01.wav"), "three");
}

TEST_F(Samples, AnExportHoldsTheKitAsItStandsAndLeavesTheStoreAlone) {
  store.open();
  ASSERT_EQ(store.import("/home/kick.wav", "New"), "");
  library.setPadSound(2, 0, 200);
  library.updatePad(2, 1, [](Pad& pad) { pad.node.setLeaf("SubWv", 207); });
  library.setWaveTempo(207, 77);
  const std::vector<Kit> kits = library.kits();
  for (int i = 0; i < 2; ++i)
    ASSERT_EQ(exported(2, "/home/kit"), "");
  EXPECT_EQ(library.kits(), kits);
  EXPECT_TRUE(library.kit(2)->isDirty);
  EXPECT_FALSE(library.isExporting());
  EXPECT_EQ(difference(sampleCard(), store.card()), "");
  const Tree kit = readTree(store.files, "/home/kit");
  ASSERT_EQ(store.save(), "");
  Tree expected = store.card();
  // Pad 3 points nowhere; the sample that pad 1 had is not used any more.
  std::erase_if(expected, [](const auto& file) {
    return !file.first.ends_with("/00.spd") && !file.first.ends_with("/07.spd") && !file.first.ends_with("low.wav") &&
           !file.first.ends_with("kick_01.wav");
  });
  expected["kit002.spd"] = store.card()["KIT/kit002.spd"];
  EXPECT_EQ(difference(expected, kit), "");
}

TEST_F(Samples, AnExportFailsWithoutTheAudioAndOnTheCardItself) {
  Tree card = sampleCard();
  card.erase("WAVE/DATA/02/tom low.wav");
  store.open(card);
  EXPECT_THAT(exported(4, "/home/kit"), HasSubstr("No such file"));
  EXPECT_EQ(exported(3, "/home/none"), "");
  EXPECT_EQ(store.files.status("/home/none").kind, FileKind::none);
  library.setKitLevel(2, 1);
  EXPECT_NE(exported(2, TestStore::root), "");
  EXPECT_EQ(difference(card, store.card()), "");
}

// What a save wrote for a record that is gone says nothing about the one that has its key now.
TEST_F(Samples, AKitMadeAgainDuringASaveIsANewOne) {
  store.open();
  ASSERT_EQ(library.createKit(1, false), 0);
  startSave();
  library.deleteKit(0);
  ASSERT_EQ(library.createKit(1, false), 0);
  store.jobs.runAll();
  EXPECT_TRUE(library.kit(0)->isDirty);
  ASSERT_EQ(store.save(), "");
  EXPECT_EQ(store.card().count("KIT/kit000.spd"), 1U);

  library.setKitLevel(1, 1);
  startSave();
  library.deleteKit(1);
  ASSERT_EQ(library.createKit(2, false), 1);
  store.jobs.runAll();
  ASSERT_EQ(store.save(), "");
  EXPECT_TRUE(store.card().at("KIT/kit001.spd").ends_with("</KitPrm>"));  // and not with the old file's line end
}

}  // namespace
}  // namespace tamboro::test
