// What stands on the card and isn't what the store read there: nothing of it may be lost unasked.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/TestStore.h"

namespace tamboro::test {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

using ChangedFiles = RolandLibrary::ChangedFiles;

struct Conflicts : ::testing::Test, TestStore {
  Conflicts() { open(); }
};

const Path longName = "WAVE/DATA/02/Kick Drum Studio A.wav";

Tree cardWithLongName() {
  Tree card = sampleCard();
  card[longName.string()] = "long";
  card["WAVE/PRM/02/08.spd"] = "<WvPrm><Path>02/Kick Drum Studio A.wav</Path></WvPrm>";
  card["WAVE/PRM/02/09.spd"] = "<WvPrm><Path>02/KICKDR~1.WAV</Path></WvPrm>";
  return card;
}

TEST_F(Conflicts, AShortNameIsTheFileOfTheLongOne) {
  open(cardWithLongName());
  files.addShortName(root / longName, "KICKDR~1.WAV");
  library.deleteWave(209);
  writeTree(files, "/home", {{"Kick Drum Studio B.wav", "b"}, {"KICKDR~1.WAV", "new"}});
  for (const char* source : {"/home/Kick Drum Studio B.wav", "/home/KICKDR~1.WAV"})
    ASSERT_EQ(import(source, "New"), "");
  files.clearOperations();
  ASSERT_EQ(save(), "");
  EXPECT_EQ(card().at(longName.string()), "long");
  EXPECT_EQ(card().at("WAVE/DATA/02/KICKDR~1_01.WAV"), "new");
  EXPECT_FALSE(card().contains("WAVE/PRM/02/09.spd"));
  // The system would give the long name a short one that a file is about to have.
  std::string order;
  for (const std::string& operation : files.operations())
    if (operation.starts_with("rename .tamboro")) order += Path(operation).filename().string() + " ";
  EXPECT_THAT(order, StartsWith("KICKDR~1_01.WAV Kick Drum Studio B.wav "));
}

TEST_F(Conflicts, NoNewRecordTakesThePlaceOfAFileThatWasNeverRead) {
  Tree content = sampleCard();
  content["KIT/KIT000.SPD"] = content["KIT/KIT003.SPD"] = "another's";
  content["WAVE/PRM/02/00.SPD"] = "another's";
  open(content);
  EXPECT_EQ(library.createKit(1, true), 5);
  writeFile(files, root / "WAVE/PRM/02/01.spd", "written meanwhile");
  writeFile(files, "/home/new.wav", "new");
  ASSERT_EQ(import("/home/new.wav", "New"), "");
  EXPECT_NE(library.wave(202), nullptr);

  for (const char* place : {"KIT/kit005.spd", "WAVE/PRM/02/02.spd", "WAVE/DATA/02/new.wav"}) {
    writeFile(files, root / place, "written later");
    const Tree before = card();
    const std::string text = save(ChangedFiles::replace);
    EXPECT_THAT(text, StartsWith("The card has a file that wasn't there when it was read"));
    EXPECT_THAT(text, HasSubstr(place));
    EXPECT_EQ(difference(before, card()), "");
    EXPECT_TRUE(library.kit(5)->isDirty && library.wave(202)->isPending);
    files.removeFile(root / place);
  }
  EXPECT_EQ(save(), "");
}

TEST_F(Conflicts, WhatOthersHaveChangedIsReplacedOnlyOnTheUsersWord) {
  for (const char* serial : {"fat:1234-ABCD", ""}) {
    mountCard(serial, sampleCard());
    library.load("/media/card");
    turn([&] { library.setKitLevel(1, 3); });
    library.setWaveTag(206, 0);
    library.setTagName(0, "Mine");
    library.deleteKit(4);
    library.deleteWave(207);
    Tree theirs = sampleCard();
    for (const char* file : {"KIT/kit001.spd", "KIT/kit004.spd", "WAVE/PRM/02/07.spd"})
      theirs[file] += " ";
    if (*serial != 0) theirs["KIT/kit002.spd"] += " ";  // of no concern to this save
    theirs["SYSTEM/wavelist_name.spd"] = "theirs";
    theirs.erase("SYSTEM/tag_list.spd");  // written anew
    theirs["KIT/kit04.spd"] = "theirs";   // would go with the kit
    mountCard(serial, theirs);
    const Tree before = card();
    EXPECT_EQ(save(), "The instrument or another program has changed 4 files since the card was read.");
    timers.tick();
    jobs.runAll();
    EXPECT_EQ(difference(before, card()), "");
    EXPECT_EQ(files.status(backup).kind, FileKind::none);
    EXPECT_TRUE(library.kit(1)->isDirty && library.tagList()->isDirty && library.pendingDeletions().contains(207));
    EXPECT_TRUE(library.wave(206)->isDirty);
    ASSERT_EQ(save(ChangedFiles::replace), "");
    EXPECT_FALSE(library.hasUnsavedChanges());
    EXPECT_FALSE(card().contains("KIT/kit04.spd"));
    library.setKitLevel(1, 4);  // what a save has written is known to the next
    ASSERT_EQ(save(), "");
    // An undo step finds its record after the same card is read again, though it has no number to be known by.
    library.load("/media/card");
    EXPECT_EQ(library.kit(1)->level(), 4);
    library.undoManager().undo();
    library.undoManager().undo();
    EXPECT_EQ(library.kit(1)->level(), 80);
    removeTree(files, backup);
  }
}

TEST_F(Conflicts, ACardWithoutANumberIsKnownByWhatItHolds) {
  mountCard("", sampleCard());
  library.load("/media/card");
  turn([&] { library.setKitLevel(1, 3); });
  Tree other = sampleCard();
  for (auto& [name, bytes] : other)
    if (name.ends_with(".spd") && name != "KIT/kit001.spd") bytes += " ";
  mountCard("", other);
  EXPECT_THAT(save(), HasSubstr("No such device"));
  EXPECT_EQ(difference(other, card()), "");
  library.load("/media/card");
  library.undoManager().undo();  // a step of the other card
  EXPECT_FALSE(library.hasUnsavedChanges());
}

TEST_F(Conflicts, FoldersThatLeadOutOfTheCardAreRefused) {
  for (const Path folder : {"KIT", "SYSTEM", "WAVE", "WAVE/PRM", "WAVE/DATA", "WAVE/PRM/02", "WAVE/DATA/02"}) {
    SCOPED_TRACE(folder);
    TestStore store;
    store.mountCard("a", sampleCard());
    makeFolders(store.files, "/elsewhere");
    store.files.rename(TestStore::root / folder, TestStore::root / "aside");
    writeTree(store.files, "/elsewhere", readTree(store.files, TestStore::root / "aside"));
    store.files.addLink(TestStore::root / folder, "/elsewhere");
    store.library.openDroppedFolder("/media/card");
    EXPECT_FALSE(store.library.isLoaded());
    EXPECT_THAT(store.library.lastError()->toStdString(), HasSubstr("The folder " + folder.string() + " of this card"));
    store.files.removeFile(TestStore::root / folder);
    store.files.addLink(TestStore::root / folder, TestStore::root / "aside");
    store.library.openDroppedFolder("/media/card");
    EXPECT_TRUE(store.library.isLoaded());
  }
}

TEST_F(Conflicts, NothingGoesThroughALink) {
  Tree content = sampleCard();
  content["WAVE/PRM/02/08.spd"] = "<WvPrm><Path>02/out/a.wav</Path></WvPrm>";
  mountCard("a", content);
  writeFile(files, "/elsewhere/a.wav", "another's");
  files.addLink(root / "WAVE/DATA/02/out", "/elsewhere");
  files.addLink(root / "KIT/kit009.spd", root / "KIT/kit004.spd");
  library.load("/media/card");
  library.deleteWave(208);
  EXPECT_EQ(save(), "");
  EXPECT_EQ(readFile(files, "/elsewhere/a.wav"), "another's");
  library.deleteKit(9);
  EXPECT_NE(save(), "");
  EXPECT_TRUE(library.hasUnsavedChanges());  // the link is a kit again at the next load
}

TEST_F(Conflicts, ADeletionThatFailsStaysPendingAsAWhole) {
  const Path audio = "WAVE/DATA/02/tom low.wav";
  const Path parameters = "WAVE/PRM/02/07.spd";
  for (const Path& stuck : {parameters, audio}) {
    open();
    library.deleteWave(207);
    library.deleteKit(4);
    library.setKitLevel(1, 3);
    files.failWhere(
        [&](const std::string& operation, const Path& path) {
          return operation == "removeFile" && (path == stuck || path == "KIT/kit004.spd");
        },
        std::errc::operation_not_permitted);
    EXPECT_THAT(save(), HasSubstr("Operation not permitted"));
    EXPECT_TRUE(card().contains(audio));
    EXPECT_EQ(card().contains(parameters), stuck == parameters);
    EXPECT_FALSE(library.kit(1)->isDirty);
    EXPECT_TRUE(library.hasUnsavedChanges());

    // Meanwhile the id and the slot are handed out again: what has taken them is not what is to go.
    writeFile(files, "/home/new.wav", "new");
    while (library.wave(207) == nullptr)
      ASSERT_EQ(import("/home/new.wav", "New"), "");
    while (library.kit(4) == nullptr)
      library.createKit(1, true);
    EXPECT_NE(save(), "");
    files.failNothing();
    EXPECT_EQ(save(), "");
    EXPECT_FALSE(library.hasUnsavedChanges());
    EXPECT_FALSE(card().contains(audio));
    EXPECT_TRUE(card().contains(parameters) && card().contains("KIT/kit004.spd"));
  }
}

// A save that failed has begun only what it came to: what comes to the card behind it isn't ours to replace or remove.
TEST_F(Conflicts, WhatAFailedSaveHadNotComeToIsNotOurs) {
  for (const bool isDeleted : {false, true}) {
    SCOPED_TRACE(isDeleted);
    open();
    writeFile(files, "/home/new.wav", "new");
    ASSERT_EQ(import("/home/new.wav", "New"), "");
    library.createKit(1, true);
    files.setVolume("/media/card", {"fat:1234-ABCD", {4096, 4096}});
    library.save([](const std::exception_ptr& error) { EXPECT_NE(error, nullptr); });
    if (isDeleted) library.deleteWave(200);
    jobs.runAll();
    files.setVolume("/media/card", {"fat:1234-ABCD", {1U << 30U, 4096}});
    for (const char* place : {"KIT/kit000.spd", "WAVE/DATA/02/new.wav"})
      writeFile(files, root / place, "another's");
    EXPECT_THAT(save(ChangedFiles::replace), HasSubstr(isDeleted ? "KIT/kit000.spd" : "new.wav"));
    library.deleteKit(0);
    library.deleteWave(200);
    EXPECT_EQ(save(ChangedFiles::replace), "");
    EXPECT_EQ(card().at("WAVE/DATA/02/new.wav"), "another's");
    EXPECT_EQ(card().at("KIT/kit000.spd"), "another's");
  }
}

TEST_F(Conflicts, AudioOfASampleThatWasNeverReadStays) {
  for (const char* unread : {"WAVE/PRM/02/08.spd", "WAVE/PRM/02/08.SPD"}) {
    open();
    library.deleteWave(205);
    files.removeFile(root / "WAVE/PRM/02/05.spd");
    writeFile(files, root / unread, "<WvPrm><Path>02/KICK.wav</Path></WvPrm>");
    EXPECT_EQ(save(), "");
    EXPECT_EQ(card().at("WAVE/DATA/02/kick.wav"), "kick audio");
  }
}

// Each failure is met once: the sample is unsaved or gone from the card, and nobody else's audio goes with it.
TEST_F(Conflicts, ADeletionThatCannotBeDecidedStaysPending) {
  const std::pair<const char*, const char*> failures[] = {{"list", "PRM"}, {"resolved", "DATA"}, {"status", "Studio"}};
  for (const auto& [operation, part] : failures) {
    SCOPED_TRACE(part);
    open(cardWithLongName());
    files.addShortName(root / longName, "KICKDR~1.WAV");
    library.deleteWave(209);
    const Tree before = card();
    files.failWhere([wanted = operation, where = part](const std::string& asked, const Path& path) {
      return asked == wanted && path.native().find(where) != std::string::npos;
    });
    EXPECT_NE(save(), "");
    EXPECT_TRUE(library.hasUnsavedChanges());
    files.failNothing();
    EXPECT_EQ(difference(withoutIndexes(before), withoutIndexes(card())), "");
    EXPECT_EQ(save(), "");
    EXPECT_FALSE(card().contains("WAVE/PRM/02/09.spd"));
    EXPECT_EQ(card().at(longName.string()), "long");
  }
}

TEST_F(Conflicts, WhatACutSaveHasLeftIsCountedAndStays) {
  Tree content = sampleCard();
  for (const char* name : {".tamboro-1/0", ".tamboro-1/1", "KIT/.tamboro-3---", "WAVE/DATA/02/.tamboro-1---"})
    content[name] = "four";
  open(content);
  EXPECT_EQ(library.leftovers().count, 3U);
  EXPECT_EQ(library.leftovers().bytes, 8U);
  library.setKitLevel(1, 3);
  EXPECT_EQ(save(), "");
  EXPECT_EQ(card().at(".tamboro-1/0"), "four");
  writeTree(files, "/copy", sampleCard());
  library.load("/copy");
  EXPECT_EQ(library.leftovers().count, 0U);
}

}  // namespace
}  // namespace tamboro::test
