#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "library/FailureSweep.h"
#include "platform/RealFileSystem.h"
#include "support/TemporaryFolder.h"
#include "support/TestStore.h"

namespace tamboro::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct Save : ::testing::Test, TestStore {
  Save() { open(); }
};

const std::string kit1 = "KIT/kit001.spd";

void change(Tree& card, const std::string& file, const std::string& from, const std::string& to) {
  card[file] = replaced(card.at(file), from, to);
}

std::string newSample(const std::string& name, int tag, const std::string& path) {
  std::string text = "<WvPrm>";
  for (std::size_t i = 0; i < 12; ++i) {
    const std::string cell = "Nm" + std::to_string(i) + ">";
    text += "\n\t<" + cell + std::to_string(i < name.size() ? name[i] : 0) + "</" + cell;
  }
  return text + "\n\t<Tag>" + std::to_string(tag) +
         "</Tag>\n\t<Tempo>1200</Tempo>\n\t<Beat>4</Beat>\n\t<Measure>0</Measure>\n\t<Start>0</Start>\n\t<End>0</End>"
         "\n\t<Path>" +
         path + "</Path>\n</WvPrm>\n";
}

/// A store with one of everything that a save can meet, unsaved, and the card as it is before and shall be afterwards.
struct BusyStore : TestStore {
  BusyStore() {
    for (int i = 0; i < 5; ++i)
      before["WAVE/PRM/02/0" + std::to_string(i) + ".spd"] = "<WvPrm/>";
    before["WAVE/PRM/02/08.spd"] = "<WvPrm><Path>02/KICK.wav</Path></WvPrm>";   // the audio of 205, too
    before["WAVE/PRM/03/00.spd"] = "<WvPrm>\n\t<Path>03/x</Path>\n</WvPrm>\n";  // its WAVE/DATA/03 isn't there
    before["KIT/kit+2.spd"] = before["KIT/kit002.spd"];
    after = before;
    open(before);
    writeFile(files, "/home/new.wav", audio);
    library.setKitLevel(1, 3);
    change(after, kit1, "<Level>80<", "<Level>3<");
    library.setTagName(0, "Kice");
    change(after, "SYSTEM/tag_list.spd", "<Nm3>107<", "<Nm3>101<");
    library.setWaveTag(300, 2);
    change(after, "WAVE/PRM/03/00.spd", "</Path>", "</Path>\n\t<Tag>2</Tag>");
    library.deleteKit(2);
    library.deleteWave(207);
    for (const char* gone : {"KIT/kit002.spd", "KIT/kit+2.spd", "WAVE/PRM/02/07.spd", "WAVE/DATA/02/tom low.wav"})
      after.erase(gone);
    library.deleteWave(205);
    EXPECT_EQ(import("/home/new.wav", "New", 1), "");  // takes the id that has come free
    after["WAVE/PRM/02/05.spd"] = newSample("New", 1, "02/new.wav");
    after["WAVE/DATA/02/new.wav"] = audio;
  }
  bool isAllUnsaved() const {
    return library.kit(1)->isDirty && library.tagList()->isDirty && library.wave(205)->isPending &&
           library.wave(300)->isDirty && library.pendingDeletions().size() == 2;
  }

  const std::string audio = std::string(270000, 'n');
  Tree before = sampleCard();
  Tree after;
};

Tree withoutTemporary(Tree tree) {
  std::erase_if(tree, [](const auto& file) { return file.first.find(temporaryName) != std::string::npos; });
  return tree;
}

/// Each file is as it was or as it shall be, none is missing without reason, and what is new stands nowhere without
/// what it needs.
void expectWhole(const Tree& card, const Tree& before, const Tree& after) {
  const auto isAs = [&](const Tree& tree, const std::string& name) {
    return card.contains(name) && tree.contains(name) && tree.at(name) == card.at(name);
  };
  for (const auto& [name, bytes] : card)
    EXPECT_TRUE(isAs(before, name) || isAs(after, name)) << name;
  for (const auto& [name, bytes] : before) {
    const bool isRemovedFirst = name == "WAVE/PRM/02/05.spd";
    EXPECT_TRUE(card.contains(name) || isRemovedFirst || !after.contains(name)) << name;
  }
  const char* const order[] = {"WAVE/DATA/02/new.wav", "WAVE/PRM/02/05.spd", kit1.c_str(), "SYSTEM/tag_list.spd",
                               "SYSTEM/wavelist_name.spd"};
  for (std::size_t i = 1; i < std::size(order); ++i)
    EXPECT_TRUE(!isAs(after, order[i]) || isAs(after, order[i - 1])) << order[i];
}

TEST_F(Save, KeepsEveryFileAndFlagWhicheverOfItsFileOperationsFails) {
  BusyStore undisturbed;
  ASSERT_EQ(undisturbed.save(), "");
  EXPECT_EQ(difference(withoutIndexes(undisturbed.after), withoutIndexes(undisturbed.card())), "");
  const Tree after = undisturbed.card();
  const std::vector<std::string> folders = readFolders(undisturbed.files, TestStore::root);
  // Audio of which the card doesn't tell whether it is its own stays, and is nobody's.
  const auto withoutOrphan = [](Tree card) {
    card.erase("WAVE/DATA/02/tom low.wav");
    return card;
  };
  sweepFailures([&](const auto& fail, bool isPulled) {
    BusyStore store;
    fail(store.files);
    const std::string text = store.save();
    const std::uint64_t count = store.files.count();
    store.files.failNothing();
    const Tree left = store.card();
    expectWhole(isPulled ? withoutTemporary(left) : left, store.before, after);
    EXPECT_TRUE(!text.empty() || withoutOrphan(withoutTemporary(left)) == after);
    EXPECT_EQ(store.library.hasUnsavedChanges(), !text.empty());
    // A single removal that fails leaves the rest saved.
    EXPECT_TRUE(!isPulled || text.empty() || store.isAllUnsaved());

    EXPECT_EQ(store.save(), "");
    EXPECT_FALSE(store.library.hasUnsavedChanges());
    EXPECT_EQ(difference(after, withoutOrphan(isPulled ? withoutTemporary(store.card()) : store.card())), "");
    EXPECT_TRUE(isPulled || readFolders(store.files, TestStore::root) == folders);
    return count;
  });
}

// At every operation of a save the card is pulled and another one mounted at its place.
TEST_F(Save, StaysWithTheCardItBeganWith) {
  BusyStore undisturbed;
  undisturbed.files.failNothing();
  undisturbed.save();
  for (std::uint64_t number = 1; number <= undisturbed.files.count() && !HasFailure(); ++number) {
    SCOPED_TRACE(number);
    BusyStore store;
    store.files.failWhere([&](const std::string&, const Path&) {
      if (store.files.count() == number) store.mountCard("OTHER", {});
      return false;
    });
    store.save();
    EXPECT_THAT(store.card(), IsEmpty());
    const bool isBackedUp = store.files.status(TestStore::backup).kind == FileKind::folder;
    EXPECT_TRUE(!isBackedUp || readTree(store.files, TestStore::backup).contains("SYSTEM/tag_list.spd"));
  }
}

TEST_F(Save, OnTheRealFileSystem) {
  const TemporaryFolder folder;
  const std::unique_ptr<FileSystem> disk = makeRealFileSystem();
  RolandLibrary real({*disk, defaults, jobs, timers, panel, folder / "staging", folder / "documents/backup"});
  Tree card = sampleCard();
  // Paths that no volume can hold are no reason not to save.
  const std::string tooLong(300, 'x');
  card["WAVE/PRM/02/08.spd"] = "<WvPrm><Path>" + tooLong + "</Path></WvPrm>";
  card["WAVE/PRM/02/09.spd"] = "<WvPrm><Path>" + tooLong + "/" + tooLong + "</Path></WvPrm>";
  writeTree(*disk, folder / "card", card);
  real.load(folder / "card");
  real.setKitLevel(1, 3);
  real.deleteWave(207);
  real.deleteWave(208);
  EXPECT_EQ(ended([&](auto done) { real.importWave(folder / "card/WAVE/DATA/02/kick.wav", "New", 1, done); }), "");
  EXPECT_EQ(ended([&](auto done) { real.save(done); }), "");
  EXPECT_FALSE(real.hasUnsavedChanges());
  change(card, kit1, "<Level>80<", "<Level>3<");
  card["WAVE/PRM/02/00.spd"] = newSample("New", 1, "02/kick_01.wav");
  card["WAVE/DATA/02/kick_01.wav"] = "kick audio";
  for (const char* gone : {"WAVE/PRM/02/07.spd", "WAVE/DATA/02/tom low.wav", "WAVE/PRM/02/08.spd"})
    card.erase(gone);
  EXPECT_EQ(difference(withoutIndexes(card), withoutIndexes(readTree(*disk, folder / "card"))), "");
  EXPECT_EQ(readTree(*disk, folder / "documents/backup").at(kit1), sampleCard().at(kit1));
}

TEST_F(Save, WithoutACardOrWithNothingToWrite) {
  TestStore store;
  EXPECT_EQ(store.save(), "No SPD-SX folder has been loaded yet.");
  store.open();
  EXPECT_EQ(store.save(), "");
  EXPECT_EQ(difference(withoutIndexes(sampleCard()), withoutIndexes(store.card())), "");
  EXPECT_EQ(store.card().at("SYSTEM/wavelist_name.spd"),
            "<WvListSortbyName>\n\t<Wv>1</Wv>\n\t<Wv>205</Wv>\n\t<Wv>206</Wv>\n\t<Wv>207</Wv>\n</WvListSortbyName>\n");
  EXPECT_EQ(store.card().at("SYSTEM/wavelist_tagnum.spd"),
            "<WvListSortbyNum_Tag>\n\t<WvList>\n\t\t<Wv>1</Wv>\n\t\t<Wv>205</Wv>\n\t</WvList>\n\t<WvList>\n\t\t"
            "<Wv>206</Wv>\n\t</WvList>\n</WvListSortbyNum_Tag>\n");
}

TEST_F(Save, BacksUpWhatTheCardHeldBefore) {
  for (const auto& [destination, isOn] :
       {std::pair{backup, true},
        {backup, false},
        {Path("/media/card"), true}}) {  // holds the card: refused, and the save goes on
    library.setBackupBeforeSaveEnabled(isOn);
    library.setBackupDestinationOverride(destination);
    library.setKitLevel(1, static_cast<double>(library.kit(1)->level() - 1));
    EXPECT_EQ(save(), "");
    EXPECT_EQ(readTree(files, backup).at(kit1), sampleCard().at(kit1));
  }
}

TEST_F(Save, KeepsAudioThatAnySampleNames) {
  const struct {
    const char* deleted;
    const char* kept;
    bool isKept;
  } cases[] = {{"02/a.wav", "02/b.wav", false},        {"02/a.wav", "02/A.WAV", true},
               {"02/a.wav", "/x/../02/./a.wav", true}, {"02/a.wav", "02/a.wav. ", true},
               {"02/a.wav", "03/a.wav", false},        {"02/a\xCC\x88.wav", "02/\xC3\xA4.wav", true},
               {"../../KIT/kit001.spd", "", true}};
  for (const auto& [deleted, kept, isKept] : cases) {
    const std::string audio = Path("WAVE/DATA/" + std::string(deleted)).lexically_normal();
    Tree content = sampleCard();
    content.emplace(audio, "audio");
    content["WAVE/PRM/02/08.spd"] = "<WvPrm><Path>" + std::string(deleted) + "</Path></WvPrm>";
    content["WAVE/PRM/02/09.spd"] = "<WvPrm><Path>" + std::string(kept) + "</Path></WvPrm>";
    open(content);
    library.deleteWave(208);
    EXPECT_EQ(save(), "");
    EXPECT_EQ(card().contains(audio), isKept) << deleted << " and " << kept;
  }
}

// A cut save of thousands leaves whole samples: audio of one group, then its parameters, then the next group.
TEST_F(Save, PutsSamplesInPlaceInGroups) {
  writeFile(files, "/home/new.wav", "new");
  for (int i = 0; i < 250; ++i)
    ASSERT_EQ(import("/home/new.wav", "New"), "");
  files.clearOperations();
  EXPECT_EQ(save(), "");
  std::string kinds;
  for (const std::string& step : files.operations())
    if (step.starts_with("rename .tamboro") && Path(step).has_extension()) kinds += step.back();
  EXPECT_EQ(kinds, std::string(200, 'v') + std::string(200, 'd') + std::string(50, 'v') + std::string(53, 'd'));
}

TEST_F(Save, AnotherCardAtTheSamePlaceIsNotTouched) {
  BusyStore store;
  store.mountCard("fat:FFFF-0000", sampleCard());
  EXPECT_THAT(store.save(), HasSubstr("Another card is in the place"));
  EXPECT_EQ(difference(sampleCard(), store.card()), "");
  store.files.mount("/media/card", {});  // pulled out
  EXPECT_NE(store.save(), "");
  EXPECT_TRUE(store.isAllUnsaved());
  EXPECT_EQ(store.files.status(TestStore::backup).kind, FileKind::none);
  store.mountCard("fat:1234-ABCD", store.before);  // the same card, plugged in again
  EXPECT_EQ(store.save(), "");
}

/// What happens while a save of kit 1's new level runs, and what the card must hold when another one has saved the
/// rest.
struct Meanwhile {
  Meanwhile(bool unsaved, std::string then, std::vector<const char*> files, std::function<void(RolandLibrary&)> run)
      : staysUnsaved(unsaved), level(std::move(then)), gone(std::move(files)), happens(std::move(run)) {}
  bool staysUnsaved;
  std::string level;
  std::vector<const char*> gone;
  std::function<void(RolandLibrary&)> happens;
};

TEST_F(Save, EditsMeanwhileStayUnsavedAndTheNextSaveWritesThem) {
  const auto undo = [](RolandLibrary& s) { s.undoManager().undo(); };
  const Meanwhile cases[] = {
      Meanwhile(false, "3", {}, [](auto&) {}),
      Meanwhile(true, "4", {}, [](auto& s) { s.setKitLevel(1, 4); }),
      Meanwhile(false, "3", {}, [](auto& s) { s.setKitLevel(1, 3); }),
      Meanwhile(true, "80", {}, undo),
      Meanwhile(false, "3", {}, [=](auto& s) { undo(s), s.undoManager().redo(); }),
      Meanwhile(true, "3", {"KIT/kit001.spd"}, [](auto& s) { s.deleteKit(1); }),
      Meanwhile(true, "3", {"KIT/kit002.spd"}, [](auto& s) { s.deleteKit(2); }),
      Meanwhile(true, "3", {"WAVE/PRM/02/07.spd", "WAVE/DATA/02/tom low.wav"}, [](auto& s) { s.deleteWave(207); }),
      Meanwhile(true, "3", {}, [=](auto& s) { s.setTagName(1, "x"), undo(s); }),
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    const auto& [staysUnsaved, level, gone, happens] = cases[i];
    for (const bool afterTheWriting : {false, true}) {
      SCOPED_TRACE(std::to_string(i) + (afterTheWriting ? " after the writing" : " before the writing"));
      TestStore store;
      store.open();
      store.turn([&] { store.library.setKitLevel(1, 3); });
      store.library.save([](const std::exception_ptr& error) { EXPECT_EQ(textOf(error), ""); });
      EXPECT_TRUE(store.library.isExporting());
      if (afterTheWriting) store.jobs.runWork();
      store.turn([&] { happens(store.library); });
      store.jobs.runAll();
      EXPECT_FALSE(store.library.isExporting());
      EXPECT_EQ(store.library.hasUnsavedChanges(), staysUnsaved);
      EXPECT_EQ(store.save(), "");
      EXPECT_FALSE(store.library.hasUnsavedChanges());
      Tree expected = sampleCard();
      change(expected, kit1, "<Level>80<", "<Level>" + level + "<");
      for (const char* file : gone)
        expected.erase(file);
      EXPECT_EQ(difference(withoutIndexes(expected), withoutIndexes(store.card())), "");
    }
  }
}

TEST_F(Save, ASecondCallWaitsAndThenSavesOnlyWhatIsStillUnsaved) {
  std::vector<std::string> ended;
  const auto call = [&](const char* name) { library.save([&ended, name](const auto&) { ended.push_back(name); }); };
  library.setKitLevel(1, 3);
  for (const char* name : {"first", "second", "third"})
    call(name);
  jobs.runWork();
  jobs.deliver();
  // Nothing was left: no further job, and the backup still shows the card before the change.
  EXPECT_THAT(ended, ElementsAre("first", "second", "third"));
  EXPECT_EQ(jobs.waiting(), 0U);

  library.setKitLevel(1, 4);
  call("first");
  library.setKitLevel(1, 5);
  call("second");
  jobs.runWork();
  jobs.deliver();
  EXPECT_EQ(ended.size(), 4U);
  EXPECT_TRUE(library.isExporting());
  timers.tick();  // an autosave during a save does nothing
  EXPECT_EQ(jobs.waiting(), 1U);
  jobs.runAll();
  EXPECT_EQ(ended.back(), "second");
  EXPECT_THAT(card().at(kit1), HasSubstr("<Level>5<"));
}

TEST_F(Save, OpeningACardWaitsForTheSavesThatWereAskedFor) {
  for (const char* opened : {"/media/card", "/copy"}) {
    open();
    writeTree(files, "/copy", sampleCard());
    library.setKitLevel(1, 3);
    library.save([](const std::exception_ptr&) {});
    library.setKitLevel(1, 4);
    library.save([](const std::exception_ptr&) {});
    library.setSelectedKitSlot(2);
    library.copyPads(1);
    library.importWave("/home/late.wav", "Late", 0, [](const std::exception_ptr&) {});
    library.load(opened);
    EXPECT_EQ(jobs.waiting(), 1U) << "an import can come from a disk that answers late";
    EXPECT_EQ(library.selectedWave()->id(), 206);
    EXPECT_EQ(library.copiedPads()->size(), 15U);
    EXPECT_THAT(card().at(kit1), HasSubstr("<Level>4<"));
    EXPECT_EQ(library.kit(1)->level(), opened == std::string("/copy") ? 80 : 4);
    EXPECT_FALSE(library.hasUnsavedChanges());
  }
}

TEST_F(Save, AutosavesWriteOnlyWhatIsUnsavedAndDropFailures) {
  TestStore store;
  store.timers.tick();
  store.open();
  store.timers.tick();
  EXPECT_EQ(store.jobs.waiting(), 0U);
  store.library.setKitLevel(1, 3);
  for (const bool isLocked : {true, false}) {
    store.setReadOnly(isLocked);
    store.timers.tick();
    store.jobs.runAll();
    EXPECT_EQ(store.library.hasUnsavedChanges(), isLocked);
    EXPECT_EQ(store.library.lastError(), std::nullopt);
  }
  store.library.setKitLevel(1, 4);
  store.library.setAutoSaveEnabled(false);
  store.timers.tick();
  EXPECT_EQ(store.jobs.waiting(), 0U);
}

}  // namespace
}  // namespace tamboro::test
