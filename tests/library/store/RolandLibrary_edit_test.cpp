#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "support/TestStore.h"

namespace tamboro::test {
namespace {

struct Edits : ::testing::Test, TestStore {
  Edits() { open(); }
};
using ApplyToAll = Edits;
using NewKit = Edits;
using Clipboard = Edits;

using Replacements = std::vector<std::pair<std::string, std::string>>;

/// An edit of the sample card and what it changes in the one file that it touches.
struct Edit {
  const char* action;
  std::string file;
  Replacements places;
  std::function<void(RolandLibrary&)> run;
};

Edit edit(const std::string& file, const Replacements& places, const std::function<void(RolandLibrary&)>& run,
          const char* action = "Pad Change") {
  return {action, file, places, run};
}
Edit kit(const Replacements& places, const std::function<void(RolandLibrary&)>& run) {
  return edit("KIT/kit001.spd", places, run, "Kit Change");
}
Edit pad(const Replacements& places, const std::function<void(RolandLibrary&)>& run) {
  return edit("KIT/kit001.spd", places, run);
}
Edit wave(const std::string& file, const Replacements& places, const std::function<void(RolandLibrary&)>& run) {
  return edit("WAVE/PRM/" + file, places, run, "Sound Change");
}

/// A new leaf as the writer lays it out at the end of kit 1 or of its third pad.
Replacements kitEnd(const std::string& leaf) {
  return {{"\r\n</KitPrm>", "\r\n\t" + leaf + "\r\n</KitPrm>"}};
}
Replacements padEnd(const std::string& leaf) {
  return {{"<NoteNum>62</NoteNum>", "<NoteNum>62</NoteNum>\r\n\t\t" + leaf}};
}

std::vector<Edit> edits() {
  const auto kit4 = "KIT/kit004.spd";
  const std::string reset =
      "<SubWv>-1</SubWv>\n\t\t<WvPan>15</WvPan>\n\t\t<MuteGrp>0</MuteGrp>\n\t\t<Loop>0</Loop>\n\t\t"
      "<TempoSync>0</TempoSync>\n\t\t<Dynamics>0</Dynamics>\n\t\t<Reverse>0</Reverse>\n\t\t<VoiceAsgn>1</"
      "VoiceAsgn>\n\t\t"
      "<TrigType>0</TrigType>\n\t\t<OutAsgn>0</OutAsgn>\n\t\t<PadMidiCh>-1</PadMidiCh>\n\t\t"
      "<SubWvLevel>100</SubWvLevel>\n\t\t<SubWvPan>15</SubWvPan>";
  return {
      kit({{"<Level>80<", "<Level>99<"}}, [](auto& s) { s.setKitLevel(1, 99.9); }),
      kit({{"<Tempo>1205<", "<Tempo>1206<"}}, [](auto& s) { s.setKitTempo(1, 120.55); }),
      kit({{"<Nm2>99<", "<Nm2>119070<"}}, [](auto& s) { s.setKitName(1, "Ro\xF0\x9D\x84\x9Ek"); }),
      kit({{"<Nm4>0<", "<Nm4>82<"}, {"<Nm5>0<", "<Nm5>120<"}, {"<Nm6>0<", "<Nm6>120<"}, {"<Nm7>0<", "<Nm7>120<"}},
          [](auto& s) { s.setKitName(1, "RockRxxxx"); }),
      kit({{"<SubNm2>98<", "<SubNm2>116<"}}, [](auto& s) { s.setKitSubName(1, "Sut"); }),
      kit(kitEnd("<Fx1Sw>1</Fx1Sw>"), [](auto& s) { s.setFxSwitch(1, 1, true); }),
      kit(kitEnd("<Fx2Type>20</Fx2Type>"), [](auto& s) { s.setFxType(1, 2, 20); }),
      kit(kitEnd("<Fx2Prm11>-48</Fx2Prm11>"), [](auto& s) { s.setFxParam(1, 2, 11, -48); }),
      edit(
          kit4, {{"\r\n\t<PadPrm/>\n\t<PadPrm>plain</PadPrm>", "\n\t<PadPrm>plain</PadPrm>\r\n\t<PadPrm/>"}},
          [](auto& s) { s.exchangePads(4, 0, 1); }, "Kit Change"),
      pad({{"<Wv>205<", "<Wv>31<"}}, [](auto& s) { s.setPadSound(1, 0, 31); }),
      pad({{"<Wv>206<", "<Wv>-1<"}}, [](auto& s) { s.removePadSound(1, 1); }),
      pad({{"<NoteNum>62<", "<NoteNum>127<"}}, [](auto& s) { s.setPadNote(1, 2, 200); }),
      pad(padEnd("<WvPan>30</WvPan>"), [](auto& s) { s.setPadPan(1, 2, 31); }),
      pad(padEnd("<SubWvLevel>50</SubWvLevel>"), [](auto& s) { s.setPadSubLevel(1, 2, 50.5); }),
      pad(padEnd("<SubWvPan>0</SubWvPan>"), [](auto& s) { s.setPadSubPan(1, 2, -2); }),
      pad(padEnd("<VoiceAsgn>0</VoiceAsgn>"), [](auto& s) { s.setPadPoly(1, 2, false); }),
      pad(padEnd("<MuteGrp>8</MuteGrp>"), [](auto& s) { s.setPadInteger(1, 2, padSetting("muteGroup"), 9); }),
      pad(padEnd("<Loop>1</Loop>"), [](auto& s) { s.setPadFlag(1, 2, padSetting("loop"), true); }),
      // A default that was missing, a pad that was empty and one that was text.
      pad(padEnd("<WvPan>15</WvPan>"), [](auto& s) { s.setPadPan(1, 2, 15); }),
      edit(kit4, {{"<PadPrm/>", "<PadPrm>\n\t\t<WvLevel>7</WvLevel>\n\t</PadPrm>"}},
           [](auto& s) { s.setPadLevel(4, 0, 7); }),
      edit(kit4, {{"<PadPrm>plain</PadPrm>", "<PadPrm>\n\t\t<Wv>207</Wv>\n\t</PadPrm>"}},
           [](auto& s) { s.setPadSound(4, 1, 207); }),
      edit("KIT/kit002.spd",
           {{"<Wv>206</Wv>\n\t\t<WvLevel>90<", "<Wv>-1</Wv>\n\t\t<WvLevel>100<"},
            {"<NoteNum>61</NoteNum>", "<NoteNum>61</NoteNum>\n\t\t" + reset}},
           [](auto& s) { s.resetPad(2, 0); }),
      wave("02/05.spd", {{"<Nm3>107<", "<Nm3>101<"}}, [](auto& s) { s.setWaveName(205, "Kice"); }),
      wave("02/06.spd", {{"<Tag>1<", "<Tag>-3<"}}, [](auto& s) { s.setWaveTag(206, -3); }),
      wave("02/06.spd", {{"<Tempo>900<", "<Tempo>1000<"}}, [](auto& s) { s.setWaveTempo(206, 1000); }),
      wave("00/01.spd", {{"\r\n</WvPrm>", "\r\n\t<Beat>16</Beat>\r\n</WvPrm>"}}, [](auto& s) { s.setWaveBeat(1, 16); }),
      edit(
          "SYSTEM/tag_list.spd", {{"<Nm3>107<", "<Nm3>101<"}}, [](auto& s) { s.setTagName(0, "Kice"); }, "Tag Change"),
  };
}

TEST_F(Edits, ChangesItsPlaceOnTheCardAndNothingElseAndUndoesItAgain) {
  for (const auto& [action, file, places, run] : edits()) {
    SCOPED_TRACE(file + ": " + places.front().second);
    open();
    UndoManager& undo = library.undoManager();
    const Tree before = withoutIndexes(sampleCard());
    Tree after = before;
    for (const auto& [from, to] : places)
      after[file] = replaced(after[file], from, to);
    const auto expectSaved = [&](const Tree& expected) {
      EXPECT_TRUE(library.hasUnsavedChanges());
      EXPECT_EQ(save(), "");
      EXPECT_FALSE(library.hasUnsavedChanges());
      EXPECT_EQ(difference(expected, withoutIndexes(card())), "");
    };
    turn([&] { run(library); });
    EXPECT_EQ(undo.undoActionName().toStdString(), action);
    expectSaved(after);
    undo.undo();
    EXPECT_EQ(undo.redoActionName().toStdString(), action);
    expectSaved(before);
    undo.redo();
    expectSaved(after);
    turn([&] { run(library); });
    const bool isExchange = places.front().first.starts_with("\r\n\t<PadPrm/>");
    EXPECT_EQ(library.hasUnsavedChanges(), isExchange) << "the same value again is no edit";
  }
}

TEST(Edit, WithoutItsRecordChangesAndRegistersNothing) {
  TestStore store;
  RolandLibrary& library = store.library;
  library.setTagName(0, "x");  // no card yet
  store.open();
  store.turn([&] {
    library.setKitLevel(3, 1);
    for (const int pad : {-1, 15}) {
      library.exchangePads(1, 0, pad);
      library.setPadSound(1, pad, 1);
      library.resetPad(1, pad);
      library.applySettingsToAllPads(1, pad, {&padSetting("padVolume")});
      library.setTagName(pad, "x");
    }
    library.exchangePads(1, 3, 3);
    library.applySettingsToAllPads(1, 0, {});
    library.setWaveTag(300, 1);
    library.pasteCopiedPads(1);
    library.copyPads(3);
    library.deleteKit(3);
    library.deleteWave(300);
    library.deleteWave(1);  // the factory's
    EXPECT_EQ(library.createKit(3, false), std::nullopt);
  });
  EXPECT_FALSE(library.hasUnsavedChanges());
  EXPECT_FALSE(library.undoManager().canUndo());
  EXPECT_EQ(library.copiedPads(), std::nullopt);
}

TEST_F(Edits, ATagsUndoRewritesOnlyItsOwnName) {
  turn([&] { library.setTagName(0, "One"); });
  ASSERT_EQ(save(), "");
  Tree content = card();
  content["SYSTEM/tag_list.spd"] =
      replaced(content["SYSTEM/tag_list.spd"], "<Nm3>114<", "<Nm3>112<");  // the instrument
  open(content);
  library.undoManager().undo();
  EXPECT_EQ(library.tagList()->tagName(0), "Kick");
  EXPECT_EQ(library.tagList()->tagName(1), "Snape");
}

TEST_F(ApplyToAll, CopiesTheChosenSettingsInOneStep) {
  turn([&] {
    library.updatePad(1, 4, [](Pad& pad) {
      for (const auto& [leaf, value] : {std::pair{"MuteGrp", 12}, {"Reverse", -2}, {"PadMidiCh", 99}})
        pad.node.setLeaf(leaf, std::int64_t{value});
    });
    library.updatePad(1, 2, [](Pad& pad) {  // has them already
      for (const auto& [leaf, value] : {std::pair{"MuteGrp", 8}, {"Reverse", 1}, {"PadMidiCh", 99}})
        pad.node.setLeaf(leaf, std::int64_t{value});
    });
  });
  const Kit before = *library.kit(1);
  turn([&] {
    library.applySettingsToAllPads(
        1, 4, {&padSetting("padVolume"), &padSetting("muteGroup"), &padSetting("reverse"), &padSetting("midiChannel")});
  });
  for (const Pad& pad : library.kit(1)->pads()) {
    EXPECT_EQ(pad.muteGroup(), pad.index == 4 ? 12 : 8);
    EXPECT_EQ(pad.node.intValue("Reverse", 0), pad.index == 4 ? -2 : 1);
    EXPECT_EQ(pad.midiChannel(), 99);
    EXPECT_EQ(pad.node.child("WvPan"), nullptr);
    EXPECT_EQ(pad.note(), 60 + pad.index);
  }
  // The undo leaves alone what the step hasn't changed.
  library.copyPads(2);
  library.pasteCopiedPads(1, std::vector<int>{2});
  library.undoManager().undo();
  for (const Pad& pad : library.kit(1)->pads())
    EXPECT_EQ(pad.node, (pad.index == 2 ? *library.kit(2) : before).pad(pad.index)->node);
}

TEST_F(NewKit, TakesTheLowestFreeSlotAndStandsInOrder) {
  EXPECT_EQ(library.createKit(1, false), 0);
  EXPECT_EQ(library.createKit(1, true), 3);
  EXPECT_EQ(library.createKit(0, false), 5);
  EXPECT_EQ(library.kit(5)->name(), "Rock Cop");
  const Kit& blank = *library.kit(3);
  EXPECT_EQ(blank.name() + blank.subName(), "");
  for (const Pad& pad : blank.pads()) {
    EXPECT_EQ(pad.wave(), -1);
    EXPECT_EQ(pad.subWave(), -1);
    EXPECT_EQ(pad.level(), 90);
  }
  EXPECT_FALSE(library.undoManager().canUndo());
  EXPECT_EQ(save(), "");
  std::string copy = sampleCard().at("KIT/kit001.spd");
  for (const auto& [from, to] : {std::pair{"<Nm4>0<", "<Nm4>32<"}, {"<Nm5>0<", "<Nm5>67<"}, {"<Nm6>0<", "<Nm6>111<"}})
    copy = replaced(copy, from, to);
  // A new kit has no document of its own: nothing stands behind its root.
  EXPECT_EQ(card().at("KIT/kit000.spd") + "\r\n", replaced(copy, "<Nm7>0<", "<Nm7>112<"));
  while (library.createBlankKit()) {
  }
  EXPECT_EQ(library.kits().size(), 1000U);
}

TEST_F(Clipboard, PastesWholePadsOntoThoseThatTheTargetHas) {
  library.copyPads(1);
  turn([&] { library.setPadLevel(1, 0, 1); });  // doesn't reach the clipboard
  library.pasteCopiedPads(2);
  EXPECT_EQ(library.kit(2)->padCount(), 3);
  EXPECT_EQ(library.kit(2)->pad(0)->wave(), 205);
  EXPECT_EQ(library.kit(2)->pad(0)->level(), 90);
  ASSERT_EQ(save(), "");
  library.pasteCopiedPads(2);
  EXPECT_FALSE(library.hasUnsavedChanges());
  library.pasteCopiedPads(4, std::vector<int>{-1, 1, 40});
  EXPECT_EQ(library.kit(4)->pad(1)->wave(), 206);
  EXPECT_EQ(library.kit(4)->pad(0)->node.children().size(), 0U);
}

/// A store with an undo step for kit 1, saved, for whose record something else is put afterwards.
struct Undo : Edits {
  Undo() {
    turn([&] { library.setPadLevel(1, 0, 5); });
    turn([&] { library.setTagName(0, "Other"); });
    turn([&] { library.setWaveTag(205, 1); });
    turn([&] { library.setKitLevel(1, 5); });
    EXPECT_EQ(save(), "");
  }
  void undoAll() {
    while (library.undoManager().canUndo())
      library.undoManager().undo();
  }
  void replaceKit() {
    library.deleteKit(1);
    while (library.createKit(2, false) != 1) {
    }
  }
};

TEST_F(Undo, BelongsToTheRecordItWasMadeFor) {
  replaceKit();
  library.deleteWave(205);
  writeFile(files, "/home/kick.wav", "new");
  while (library.wave(205) == nullptr)
    ASSERT_EQ(import("/home/kick.wav", "Newer"), "");
  const std::vector<Kit> kits = library.kits();
  const std::vector<Wave> waves = library.waves();
  undoAll();
  EXPECT_EQ(library.kits(), kits);
  EXPECT_EQ(library.waves(), waves);
  EXPECT_EQ(library.tagList()->tagName(0), "Kick");
}

TEST_F(Undo, FindsNothingOnAnotherCardAndWorksAgainOnItsOwn) {
  const Tree saved = card();
  Tree another = sampleCard();
  another["KIT/kit001.spd"] = replaced(another["KIT/kit001.spd"], "<Level>80<", "<Level>77<");
  mountCard("fat:another", another);
  library.load("/media/card");
  library.undoManager().undo();
  EXPECT_FALSE(library.hasUnsavedChanges());
  open(saved);
  undoAll();
  EXPECT_EQ(library.tagList()->tagName(0), "Kick");
  EXPECT_EQ(library.kit(1)->level(), 5);  // that step was used up
  EXPECT_EQ(library.wave(205)->tag(), 0);
}

// A kit that was made in a freed slot and never saved is gone after reading the card again; what was edited of it must
// not reach the kit that the card has there, but what was edited of that one must.
TEST_F(Undo, OfADroppedNewKitDoesNotReachTheOldOneInItsSlot) {
  replaceKit();
  turn([&] { library.setKitName(1, "Fresh"); });
  library.load("/media/card");
  library.undoManager().undo();
  EXPECT_FALSE(library.hasUnsavedChanges());
  undoAll();
  EXPECT_EQ(library.kit(1)->level(), 80);
}

// Which of two kits a card holds after a cut save isn't known, so an old step may reach neither.
TEST_F(Undo, FindsNothingOnACardThatACutSaveMayHaveChanged) {
  replaceKit();
  setReadOnly(true);
  ASSERT_NE(save(), "");
  library.load("/media/card");
  undoAll();
  EXPECT_EQ(library.kit(1)->level(), 5);
}

}  // namespace
}  // namespace tamboro::test
