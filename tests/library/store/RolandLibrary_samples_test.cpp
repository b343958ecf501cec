#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "support/TestStore.h"

namespace tamboro::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string notLoaded = "No SPD-SX folder has been loaded yet.";
const std::string noFreeSlot = "No free sample slots on the card (every bank folder is full).";

struct Samples : ::testing::Test, TestStore {
  void SetUp() override {
    writeTree(files, "/home", {{"kick.wav", "one"}, {"other/kick.wav", "two"}, {"snare.wav", "three"}});
  }
  std::string path(WaveId id) const { return library.wave(id) ? library.wave(id)->relativeAudioPath() : "none"; }
  std::string duplicate(WaveId id) {
    const std::string text = TestStore::ended([&](auto done) { library.duplicateWave(id, done); });
    library.undoManager().endTurn();
    return text;
  }
  /// Calls whose ends are told in `ended`, as the name and the error's text.
  RolandLibrary::Completion tell(const std::string& what) {
    return [this, what](const std::exception_ptr& error) { ended.push_back(what + textOf(error)); };
  }
  void queue(const std::string& what, const Path& source) { library.importWave(source, what, 0, tell(what)); }
  void startSave() {
    library.save([](const std::exception_ptr&) {});
  }
  Tree staged() const { return readTree(files, staging); }

  std::vector<std::string> ended;
};

TEST_F(Samples, AnImportTakesTheFirstGapAndIsNewAndStaged) {
  EXPECT_EQ(import("/home/kick.wav", "Kick"), notLoaded);
  open();
  ASSERT_EQ(import("/home/kick.wav", "Thirteen long", 3), "");
  const Wave& wave = *library.wave(200);
  EXPECT_EQ(wave.name(), "Thirteen lon");
  EXPECT_EQ(wave.tag(), 3);
  EXPECT_TRUE(wave.isDirty && wave.isPending && wave.hasMeasure());
  EXPECT_EQ(staged(), (Tree{{"02/kick_01.wav", "one"}}));  // the card has a kick.wav
  EXPECT_EQ(library.audioURL(wave), staging / path(200));
  EXPECT_FALSE(library.undoManager().canUndo());
  while (library.wave(208) == nullptr)
    ASSERT_EQ(import("/home/snare.wav", "x"), "");
  EXPECT_TRUE(std::ranges::is_sorted(library.waves(), {}, &Wave::id));
}

TEST_F(Samples, AFullCardRefusesAnImport) {
  Tree content = sampleCard();
  const auto twoDigits = [](int number) { return std::to_string(number / 10) + std::to_string(number % 10); };
  for (int id = 200; id < 10000; ++id)
    content["WAVE/PRM/" + twoDigits(id / 100) + "/" + twoDigits(id % 100) + ".spd"] = "<WvPrm/>";
  open(content);
  EXPECT_EQ(import("/home/kick.wav", "x"), noFreeSlot);
  library.deleteWave(9999);
  EXPECT_EQ(import("/home/kick.wav", "x"), "");
  EXPECT_EQ(path(9999), "99/kick.wav");
  EXPECT_EQ(duplicate(9999), noFreeSlot);
}

TEST_F(Samples, AudioNamesAreFreeInTheStoreAndOnTheCardAndFitOnFat) {
  const auto accents = [](int count) {
    std::string text;
    while (count-- > 0)
      text += "\xC3\xA9";
    return text;
  };
  const std::pair<std::string, std::string> cases[] = {
      {"x" + accents(125) + ".wav", "x" + accents(125) + ".wav"},     // 255 bytes, and no name is longer
      {"x" + accents(125) + ".wav", "x" + accents(123) + "_01.wav"},  // half a character would be none
      {"hat.wav", "hat.wav"},
      {"HAT.WAV", "HAT_01.WAV"},
      {"hat", "hat"},
      {"stray.wav", "stray_01.wav"},
      {"SNARE.wav", "SNARE_01.wav"},
      {"a.b.wav", "a.b.wav"},
      {"\xC3\xA9.wav", "\xC3\xA9.wav"},
      {"e\xCC\x81.wav", "e\xCC\x81_01.wav"},
      {"a<b>c:d.wav", "a_b_c_d.wav"},
      {"\"*?\\|\x01\x7F.wav", "_______.wav"},
      {"end.", "end_"},
      {"end ", "end__01"},
      {".WAV", ".WAV_01"},  // a sample without a name is taken to have the first
      {"tom.wav", "tom_100.wav"},
  };
  Tree content = sampleCard();
  content["WAVE/DATA/02/Stray.WAV"] = "nobody's";
  content["WAVE/DATA/02/tom.wav"] = "nobody's";
  for (int i = 1; i < 100; ++i)
    content["WAVE/DATA/02/tom_" + std::to_string(i / 10) + std::to_string(i % 10) + ".wav"] = "";
  for (int i = 0; i < 5; ++i)
    content["WAVE/PRM/02/0" + std::to_string(i) + ".spd"] = "<WvPrm/>";
  open(content);
  WaveId id = 208;
  for (const auto& [source, stored] : cases) {
    writeFile(files, Path("/names") / source, source);
    ASSERT_EQ(import(Path("/names") / source, "x"), "") << source;
    EXPECT_EQ(path(id++), "02/" + stored);
  }
  ASSERT_EQ(save(), "");
  for (const auto& [source, stored] : cases)
    EXPECT_EQ(card()["WAVE/DATA/02/" + stored], source);
}

TEST_F(Samples, ImportsRunOneAfterAnotherAndAFailureHoldsUpNone) {
  open();
  makeFolders(files, "/home/folder.wav");
  for (const char* source : {"kick.wav", "gone.wav", "folder.wav", "other/kick.wav"})
    queue(source, Path("/home") / source);
  EXPECT_EQ(jobs.waiting(), 1U);
  jobs.runWork();
  queue("late", "/home/snare.wav");
  EXPECT_EQ(jobs.waiting(), 0U);
  jobs.runAll();
  EXPECT_THAT(ended,
              ElementsAre("kick.wav", HasSubstr("No such file"), HasSubstr("directory"), "other/kick.wav", "late"));
  EXPECT_EQ(staged(), (Tree{{"02/kick_01.wav", "one"}, {"02/kick_02.wav", "two"}, {"02/snare_01.wav", "three"}}));
}

TEST_F(Samples, ImportsAskedForOnACardThatWasReplacedEndWithoutATrace) {
  for (const bool afterTheCopy : {false, true}) {
    open();
    ended.clear();
    queue("first", "/home/kick.wav");
    queue("second", "/home/snare.wav");
    library.duplicateWave(205, tell("copy"));
    if (afterTheCopy) jobs.runWork();
    library.load("/media/card");
    queue("new", "/home/snare.wav");
    jobs.runAll();
    EXPECT_THAT(ended, ElementsAre("first" + notLoaded, "second" + notLoaded, "copy" + notLoaded, "new"));
    EXPECT_EQ(staged(), (Tree{{"02/snare_01.wav", "three"}}));
    EXPECT_EQ(library.waves().size(), 5U);
    EXPECT_FALSE(library.undoManager().canUndo());
  }
}

TEST_F(Samples, ACopyHasTheSettingsAndOneUndoTakesThemBack) {
  open();
  turn([&] {
    library.setWaveBeat(205, 7);
    library.setWaveStart(205, 8);
    library.setWaveEnd(205, 9);
    library.setWaveTag(205, 7);
  });
  ASSERT_EQ(duplicate(205), "");
  const auto settings = [&] {
    const Wave& copy = *library.wave(200);
    return std::vector{copy.tempo(), copy.beat(), copy.start(), copy.end(), copy.tag()};
  };
  EXPECT_EQ(library.wave(200)->name(), "Kick Copy");
  EXPECT_THAT(settings(), ElementsAre(900, 7, 8, 9, 7));
  library.undoManager().undo();
  EXPECT_THAT(settings(), ElementsAre(1200, 4, 0, 0, 7));
  library.undoManager().redo();
  EXPECT_THAT(settings(), ElementsAre(900, 7, 8, 9, 7));
  ASSERT_EQ(duplicate(200), "");  // of one that is still staged
  ASSERT_EQ(duplicate(206), "");  // of one without a Path: its name tells the audio
  EXPECT_EQ(path(202), "02/Snare_01.wav");
  ASSERT_EQ(save(), "");
  EXPECT_EQ(card()["WAVE/DATA/02/kick_01.wav"], "kick audio");
  EXPECT_EQ(card()["WAVE/DATA/02/kick_01_01.wav"], "kick audio");
}

TEST_F(Samples, ACopyKeepsItsSourceThroughADeletionAndAReusedName) {
  open();
  ASSERT_EQ(import("/home/snare.wav", "Snare"), "");
  queue("first", "/home/kick.wav");
  library.duplicateWave(200, tell("copy"));
  library.deleteWave(200);
  jobs.runAll();
  EXPECT_THAT(ended, ElementsAre("first", "copy"));
  ASSERT_EQ(save(), "");
  EXPECT_EQ(card()["WAVE/DATA/" + path(200)], "three");
}

TEST_F(Samples, ADeletedImportLeavesNoTraceAndFreesItsId) {
  open();
  for (int i = 0; i < 2; ++i)
    ASSERT_EQ(import("/home/kick.wav", "New"), "");
  library.deleteWave(200);
  ASSERT_EQ(import("/home/snare.wav", "New"), "");
  EXPECT_EQ(path(200), "02/snare_01.wav");
  for (const WaveId id : {200, 201})
    library.deleteWave(id);
  EXPECT_FALSE(library.hasUnsavedChanges());
  EXPECT_THAT(staged(), IsEmpty());
}

TEST_F(Samples, UsagesStandInTheOrderOfKitsAndPadsAndTellSubSounds) {
  open();
  library.updatePad(1, 1, [](Pad& pad) { pad.node.setLeaf("SubWv", 206); });
  std::string usages;
  for (const WaveUsage& use : library.waveUsages(206))
    usages += std::to_string(use.kitSlot) + use.kitName + std::to_string(use.padIndex) + (use.isSub ? "sub " : " ");
  EXPECT_EQ(usages, "1Rock1 1Rock1sub 2Jazz0 ");
}

// A pending sample is deleted while a save carries it to the card, and another file takes its id and, if it could,
// its name. Whatever the save comes to, the next one leaves the card with the new sample alone, or without either.
TEST_F(Samples, AnIdReusedDuringASaveBelongsToTheNewSample) {
  for (const bool fails : {false, true}) {
    for (const bool afterTheWriting : {false, true}) {
      for (const bool isReused : {false, true}) {
        SCOPED_TRACE(std::string(fails ? "fails" : "passes") + (afterTheWriting ? ", late" : ", early") +
                     (isReused ? ", reused" : ""));
        open();
        ASSERT_EQ(import("/home/snare.wav", "Old"), "");
        setReadOnly(fails);
        std::string first = "the save has not ended";
        library.save([&](const std::exception_ptr& error) { first = textOf(error); });
        if (afterTheWriting) jobs.runWork();
        library.deleteWave(200);
        writeFile(files, "/again/snare.wav", "new");
        if (isReused) queue("new", "/again/snare.wav");
        jobs.runAll();
        EXPECT_EQ(first.empty(), !fails) << "what it reads is kept for it: " << first;
        setReadOnly(false);
        EXPECT_EQ(library.pendingDeletions().count(200), 1U);
        const std::string audio = path(200);
        ASSERT_EQ(save(), "");
        Tree content = card();
        if (isReused) {
          EXPECT_EQ(content["WAVE/DATA/" + audio], "new");
          EXPECT_THAT(content["WAVE/PRM/02/00.spd"], HasSubstr("<Path>" + audio + "<"));
          content.erase("WAVE/DATA/" + audio);
          content.erase("WAVE/PRM/02/00.spd");
        }
        EXPECT_EQ(difference(withoutIndexes(sampleCard()), withoutIndexes(content)), "");
      }
    }
  }
}

TEST_F(Samples, ASampleEditedDuringASaveIsPendingNoMoreAndAnImportWaitsForTheNextOne) {
  open();
  ASSERT_EQ(import("/home/kick.wav", "First"), "");
  startSave();
  queue("second", "/home/kick.wav");
  turn([&] { library.setWaveName(200, "Newer"); });
  jobs.runAll();
  EXPECT_TRUE(library.wave(200)->isDirty && !library.wave(200)->isPending);
  EXPECT_EQ(library.audioURL(*library.wave(200)), root / "WAVE/DATA/02/kick_01.wav");
  EXPECT_TRUE(library.wave(201)->isPending);
  EXPECT_FALSE(card().contains("WAVE/PRM/02/01.spd"));
  library.undoManager().undo();  // its snapshot was pending
  EXPECT_FALSE(library.wave(200)->isPending);
  ASSERT_EQ(save(), "");
  library.load("/media/card");
  EXPECT_EQ(library.wave(200)->name(), "First");
}

// The first failed save may have removed the old sample's files or not: both deletions of the id must stay known.
TEST_F(Samples, TwoDeletionsOfOneIdTakeAwayBothAudioFiles) {
  for (const bool duringTheSave : {false, true}) {
    open();
    library.deleteWave(205);
    while (library.wave(205) == nullptr)
      ASSERT_EQ(import("/home/kick.wav", "x"), "");
    setReadOnly(true);
    startSave();
    if (duringTheSave) library.deleteWave(205);
    jobs.runAll();
    library.deleteWave(205);
    setReadOnly(false);
    ASSERT_EQ(save(), "");
    EXPECT_FALSE(library.hasUnsavedChanges());
    EXPECT_FALSE(card().contains("WAVE/DATA/02/kick.wav"));
  }
}

// What a save wrote for a record that is gone says nothing about the one that has its key now.
TEST_F(Samples, AKitMadeAgainDuringASaveIsANewOne) {
  open();
  ASSERT_EQ(library.createKit(1, false), 0);
  library.setKitLevel(1, 1);
  startSave();
  for (const Slot slot : {0, 1})
    library.deleteKit(slot);
  for (const Slot slot : {0, 1})
    ASSERT_EQ(library.createKit(2, false), slot);
  jobs.runAll();
  EXPECT_TRUE(library.kit(0)->isDirty);
  ASSERT_EQ(save(), "");
  EXPECT_TRUE(card().at("KIT/kit001.spd").ends_with("</KitPrm>"));  // and not with the old file's line end
}

}  // namespace
}  // namespace tamboro::test
