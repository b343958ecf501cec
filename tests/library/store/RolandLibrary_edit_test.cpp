#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "support/TestStore.h"

namespace tamboro::test {
namespace {

using ::testing::ElementsAre;

/// An edit of the sample card and what it does to the one file that it touches.
struct Edit {
  const char* what;
  std::function<void(RolandLibrary&)> run;
  const char* action;
  std::function<void(Tree&)> expect;
};

void change(Tree& card, const std::string& file, const std::string& from, const std::string& to) {
  card[file] = replaced(card.at(file), from, to);
}

/// The new leaf as the writer lays it out at the end of a pad whose last leaf is `NoteNum` with this value.
void addToPad(Tree& card, const std::string& file, int note, const std::string& lineEnd, const std::string& leaf) {
  const std::string last = "<NoteNum>" + std::to_string(note) + "</NoteNum>";
  change(card, file, last, last + lineEnd + "\t\t" + leaf);
}

const std::string kit1 = "KIT/kit001.spd";
const std::string kit2 = "KIT/kit002.spd";
const std::string kit4 = "KIT/kit004.spd";
const std::string crlf = "\r\n";

std::vector<Edit> edits() {
  const auto leaf1 = [](const std::string& from, const std::string& to) {
    return [=](Tree& card) { change(card, kit1, from, to); };
  };
  const auto kitEnd1 = [](const std::string& leaf) {
    return [=](Tree& card) { change(card, kit1, "\r\n</KitPrm>", "\r\n\t" + leaf + "\r\n</KitPrm>"); };
  };
  const auto pad3 = [](const std::string& leaf) { return [=](Tree& card) { addToPad(card, kit1, 62, crlf, leaf); }; };
  const auto kit = "Kit Change";
  const auto pad = "Pad Change";
  return {
      {"level", [](auto& s) { s.setKitLevel(1, 99.9); }, kit, leaf1("<Level>80<", "<Level>99<")},
      {"level above", [](auto& s) { s.setKitLevel(1, 250); }, kit, leaf1("<Level>80<", "<Level>100<")},
      {"level below", [](auto& s) { s.setKitLevel(1, -1); }, kit, leaf1("<Level>80<", "<Level>0<")},
      {"tempo", [](auto& s) { s.setKitTempo(1, 120.55); }, kit, leaf1("<Tempo>1205<", "<Tempo>1206<")},
      {"name", [](auto& s) { s.setKitName(1, "Ro\xF0\x9D\x84\x9Ek"); }, kit,
       leaf1("<Nm2>99</Nm2>", "<Nm2>119070</Nm2>")},
      {"long name", [](auto& s) { s.setKitName(1, "RockRockRock"); }, kit,
       [](Tree& card) {
         change(card, kit1, "<Nm4>0<", "<Nm4>82<");
         change(card, kit1, "<Nm5>0<", "<Nm5>111<");
         change(card, kit1, "<Nm6>0<", "<Nm6>99<");
         change(card, kit1, "<Nm7>0<", "<Nm7>107<");
       }},
      {"subtitle", [](auto& s) { s.setKitSubName(1, "Sut"); }, kit, leaf1("<SubNm2>98<", "<SubNm2>116<")},
      {"effect switch", [](auto& s) { s.setFxSwitch(1, 1, true); }, kit, kitEnd1("<Fx1Sw>1</Fx1Sw>")},
      {"effect type", [](auto& s) { s.setFxType(1, 2, 20); }, kit, kitEnd1("<Fx2Type>20</Fx2Type>")},
      {"effect value", [](auto& s) { s.setFxParam(1, 2, 11, -48); }, kit, kitEnd1("<Fx2Prm11>-48</Fx2Prm11>")},
      {"exchange", [](auto& s) { s.exchangePads(1, 0, 14); }, kit,
       [](Tree& card) {
         change(card, kit1, "<NoteNum>60<", "<NoteNum>X<");
         change(card, kit1, "<NoteNum>74<", "<NoteNum>60<");
         change(card, kit1, "<NoteNum>X<", "<NoteNum>74<");
         change(card, kit1, "<Wv>205<", "<Wv>-1<");
         const std::size_t last = card[kit1].rfind("<Wv>-1<");
         card[kit1].replace(last, 7, "<Wv>205<");
       }},
      {"sound", [](auto& s) { s.setPadSound(1, 0, 31); }, pad, leaf1("<Wv>205<", "<Wv>31<")},
      {"no sound", [](auto& s) { s.removePadSound(1, 1); }, pad, leaf1("<Wv>206<", "<Wv>-1<")},
      {"note", [](auto& s) { s.setPadNote(1, 2, 200); }, pad, leaf1("<NoteNum>62<", "<NoteNum>127<")},
      {"pan", [](auto& s) { s.setPadPan(1, 2, 31); }, pad, pad3("<WvPan>30</WvPan>")},
      {"sub level", [](auto& s) { s.setPadSubLevel(1, 2, 50.5); }, pad, pad3("<SubWvLevel>50</SubWvLevel>")},
      {"sub pan", [](auto& s) { s.setPadSubPan(1, 2, -2); }, pad, pad3("<SubWvPan>0</SubWvPan>")},
      {"mono", [](auto& s) { s.setPadPoly(1, 2, false); }, pad, pad3("<VoiceAsgn>0</VoiceAsgn>")},
      {"mute group", [](auto& s) { s.setPadInteger(1, 2, padSetting("muteGroup"), 9); }, pad,
       pad3("<MuteGrp>8</MuteGrp>")},
      {"output", [](auto& s) { s.setPadInteger(1, 2, padSetting("output"), 77); }, pad, pad3("<OutAsgn>77</OutAsgn>")},
      {"loop", [](auto& s) { s.setPadFlag(1, 2, padSetting("loop"), true); }, pad, pad3("<Loop>1</Loop>")},
      {"a default that was missing", [](auto& s) { s.setPadPan(1, 2, 15); }, pad, pad3("<WvPan>15</WvPan>")},
      {"a pad that was empty", [](auto& s) { s.setPadLevel(4, 0, 7); }, pad,
       [](Tree& card) { change(card, kit4, "<PadPrm/>", "<PadPrm>\n\t\t<WvLevel>7</WvLevel>\n\t</PadPrm>"); }},
      {"a pad that was text", [](auto& s) { s.setPadSound(4, 1, 207); }, pad,
       [](Tree& card) { change(card, kit4, "<PadPrm>plain</PadPrm>", "<PadPrm>\n\t\t<Wv>207</Wv>\n\t</PadPrm>"); }},
      {"reset", [](auto& s) { s.resetPad(2, 0); }, pad,
       [](Tree& card) {
         change(card, kit2, "<Wv>206</Wv>\n\t\t<WvLevel>90<", "<Wv>-1</Wv>\n\t\t<WvLevel>100<");
         std::string added;
         for (const char* leaf :
              {"SubWv>-1", "WvPan>15", "MuteGrp>0", "Loop>0", "TempoSync>0", "Dynamics>0", "Reverse>0", "VoiceAsgn>1",
               "TrigType>0", "OutAsgn>0", "PadMidiCh>-1", "SubWvLevel>100", "SubWvPan>15"}) {
           const std::string text = leaf;
           added += (added.empty() ? "<" : "\n\t\t<") + text + "</" + text.substr(0, text.find('>')) + ">";
         }
         addToPad(card, kit2, 61, "\n", added);
       }},
      {"sample name", [](auto& s) { s.setWaveName(205, "Kiss"); }, "Sound Change",
       [](Tree& card) {
         change(card, "WAVE/PRM/02/05.spd", "<Nm2>99<", "<Nm2>115<");
         change(card, "WAVE/PRM/02/05.spd", "<Nm3>107<", "<Nm3>115<");
       }},
      {"sample tag", [](auto& s) { s.setWaveTag(206, -3); }, "Sound Change",
       [](Tree& card) { change(card, "WAVE/PRM/02/06.spd", "<Tag>1<", "<Tag>-3<"); }},
      {"sample beat", [](auto& s) { s.setWaveBeat(1, 16); }, "Sound Change",
       [](Tree& card) { change(card, "WAVE/PRM/00/01.spd", "\r\n</WvPrm>", "\r\n\t<Beat>16</Beat>\r\n</WvPrm>"); }},
      {"tag name", [](auto& s) { s.setTagName(0, "Kiss"); }, "Tag Change",
       [](Tree& card) {
         change(card, "SYSTEM/tag_list.spd", "<Nm2>99<", "<Nm2>115<");
         change(card, "SYSTEM/tag_list.spd", "<Nm3>107<", "<Nm3>115<");
       }},
  };
}

TEST(Edit, ChangesItsPlaceOnTheCardAndNothingElseAndUndoesItAgain) {
  for (const Edit& edit : edits()) {
    SCOPED_TRACE(edit.what);
    TestStore store;
    store.open();
    UndoManager& undo = store.library.undoManager();
    Tree expected = sampleCard();
    edit.expect(expected);

    store.turn([&] { edit.run(store.library); });
    EXPECT_EQ(undo.undoActionName().toStdString(), edit.action);
    EXPECT_TRUE(store.library.hasUnsavedChanges());
    EXPECT_EQ(store.save(), "");
    EXPECT_FALSE(store.library.hasUnsavedChanges());
    EXPECT_EQ(difference(withoutIndexes(expected), withoutIndexes(store.card())), "");

    undo.undo();
    EXPECT_TRUE(store.library.hasUnsavedChanges());
    EXPECT_EQ(undo.redoActionName().toStdString(), edit.action);
    EXPECT_EQ(store.save(), "");
    EXPECT_EQ(difference(withoutIndexes(sampleCard()), withoutIndexes(store.card())), "");

    undo.redo();
    EXPECT_EQ(store.save(), "");
    EXPECT_EQ(difference(withoutIndexes(expected), withoutIndexes(store.card())), "");

    // The same value again is no edit.
    store.turn([&] {
      if (edit.what != std::string("exchange")) edit.run(store.library);
    });
    EXPECT_FALSE(store.library.hasUnsavedChanges());
    EXPECT_FALSE(undo.canRedo());
  }
}

TEST(Edit, WithoutItsRecordChangesAndRegistersNothing) {
  TestStore store;
  RolandLibrary& library = store.library;
  library.setTagName(0, "x");  // no card yet
  store.open();
  store.turn([&] {
    library.setKitLevel(3, 1);
    library.exchangePads(1, 0, 15);
    library.exchangePads(1, -1, 0);
    library.exchangePads(1, 3, 3);
    library.setPadSound(3, 0, 1);
    for (const int pad : {-1, 15}) {
      library.setPadSound(1, pad, 1);
      library.resetPad(1, pad);
      library.applySettingsToAllPads(1, pad, {&padSetting("padVolume")});
    }
    library.applySettingsToAllPads(1, 0, {});
    library.setWaveTag(300, 1);
    library.setTagName(-1, "x");
    library.setTagName(2, "x");
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

TEST(Edit, UndoOfTheOnlyEditLeavesTheKitDirty) {
  TestStore store;
  store.open();
  const Kit before = *store.library.kit(1);
  store.turn([&] { store.library.setPadLevel(1, 0, 3); });
  store.library.undoManager().undo();
  EXPECT_EQ(store.library.kit(1)->node, before.node);
  EXPECT_TRUE(store.library.kit(1)->isDirty);
}

TEST(Edit, ATagsUndoRewritesOnlyItsOwnName) {
  TestStore store;
  store.open();
  store.turn([&] { store.library.setTagName(0, "One"); });
  store.turn([&] { store.library.setTagName(1, "Two"); });
  UndoManager& undo = store.library.undoManager();
  undo.undo();
  undo.undo();
  EXPECT_EQ(store.library.tagList()->tagName(0), "Kick");
  undo.redo();
  EXPECT_EQ(store.library.tagList()->tagName(0), "One");
  EXPECT_EQ(store.library.tagList()->tagName(1), "Snare");
}

TEST(ApplyToAll, CopiesTheChosenSettingsInOneStep) {
  TestStore store;
  store.open();
  RolandLibrary& library = store.library;
  library.updatePad(1, 4, [](Pad& pad) {
    pad.node.setLeaf("MuteGrp", std::int64_t{12});
    pad.node.setLeaf("Reverse", std::int64_t{-2});
    pad.node.setLeaf("PadMidiCh", std::int64_t{99});
  });
  library.undoManager().endTurn();
  const Kit before = *library.kit(1);
  store.turn([&] {
    library.applySettingsToAllPads(
        1, 4, {&padSetting("padVolume"), &padSetting("muteGroup"), &padSetting("reverse"), &padSetting("midiChannel")});
  });
  for (int i = 0; i < 15; ++i) {
    const Pad pad = *library.kit(1)->pad(i);
    EXPECT_EQ(pad.muteGroup(), i == 4 ? 12 : 8);
    EXPECT_EQ(pad.node.intValue("Reverse", 0), i == 4 ? -2 : 1);
    EXPECT_EQ(pad.midiChannel(), 99);
    EXPECT_EQ(pad.node.child("WvPan"), nullptr);
    EXPECT_EQ(pad.note(), 60 + i);
  }
  library.undoManager().undo();
  EXPECT_EQ(library.kit(1)->node, before.node);
}

TEST(NewKit, TakesTheLowestFreeSlotAndStandsInOrder) {
  TestStore store;
  store.open();
  RolandLibrary& library = store.library;
  EXPECT_EQ(library.createKit(1, false), 0);
  EXPECT_EQ(library.createKit(1, true), 3);
  EXPECT_EQ(library.nextFreeKitSlot(), 5);
  EXPECT_EQ(library.kit(0)->name(), "Rock Cop");
  EXPECT_EQ(library.createKit(0, false), 5);
  EXPECT_EQ(library.kit(5)->name(), "Rock Cop");
  const Kit& blank = *library.kit(3);
  EXPECT_EQ(blank.name() + blank.subName(), "");
  EXPECT_EQ(blank.level(), 80);
  for (const Pad& pad : blank.pads()) {
    EXPECT_EQ(pad.wave(), -1);
    EXPECT_EQ(pad.subWave(), -1);
    EXPECT_EQ(pad.level(), 90);
  }
  EXPECT_FALSE(library.undoManager().canUndo());
  EXPECT_EQ(store.save(), "");
  Tree expected = sampleCard();
  std::string copy = replaced(expected[kit1], "<Nm4>0<", "<Nm4>32<");
  copy = replaced(replaced(copy, "<Nm5>0<", "<Nm5>67<"), "<Nm6>0<", "<Nm6>111<");
  copy = replaced(copy, "<Nm7>0<", "<Nm7>112<");
  // A new kit has no document of its own: nothing stands behind its root.
  EXPECT_EQ(store.card().at("KIT/kit000.spd") + "\r\n", copy);
}

TEST(NewKit, StopsAtAThousandAndNeedsAFirstOne) {
  TestStore store;
  Tree card = sampleCard();
  std::erase_if(card, [](const auto& file) { return file.first.starts_with("KIT/kit"); });
  card["KIT/kit000.spd"] = "<K></K>";
  store.open(card);
  while (store.library.createBlankKit()) {
  }
  EXPECT_EQ(store.library.kits().size(), 1000U);
  while (!store.library.kits().empty())
    store.library.deleteKit(store.library.kits().front().slot);
  EXPECT_EQ(store.library.createBlankKit(), std::nullopt);
}

TEST(Clipboard, PastesWholePadsOntoThoseThatTheTargetHas) {
  TestStore store;
  store.open();
  RolandLibrary& library = store.library;
  library.copyPads(1);
  library.setPadLevel(1, 0, 1);  // doesn't reach the clipboard
  library.undoManager().endTurn();
  library.pasteCopiedPads(2);
  EXPECT_EQ(library.kit(2)->padCount(), 3);
  EXPECT_EQ(library.kit(2)->pad(0)->wave(), 205);
  EXPECT_EQ(library.kit(2)->pad(0)->level(), 90);
  EXPECT_EQ(library.undoManager().undoActionName(), QStringLiteral("Pad Change"));  // the one before
  ASSERT_EQ(store.save(), "");
  library.pasteCopiedPads(2);
  library.pasteCopiedPads(4, std::vector<int>{});
  EXPECT_FALSE(library.hasUnsavedChanges());
  library.pasteCopiedPads(4, std::vector<int>{-1, 1, 40});
  EXPECT_EQ(library.kit(4)->pad(1)->wave(), 206);
  EXPECT_EQ(library.kit(4)->pad(0)->node.children().size(), 0U);
}

TEST(Undo, BelongsToTheRecordItWasMadeFor) {
  TestStore store;
  store.open();
  RolandLibrary& library = store.library;
  UndoManager& undo = library.undoManager();
  store.turn([&] { library.setKitLevel(1, 5); });
  store.turn([&] { library.setPadLevel(1, 0, 5); });
  library.deleteKit(1);
  library.deleteKit(2);
  EXPECT_EQ(library.createKit(4, false), 0);
  EXPECT_EQ(library.createKit(4, false), 1);
  const Kit reused = *library.kit(1);
  undo.undo();
  undo.undo();
  EXPECT_EQ(*library.kit(1), reused);
  EXPECT_FALSE(undo.canRedo());
}

TEST(Undo, FindsNothingOnAnotherCardAndWorksAgainOnItsOwn) {
  TestStore store;
  store.open();
  RolandLibrary& library = store.library;
  UndoManager& undo = library.undoManager();
  store.turn([&] { library.setTagName(0, "Other"); });
  store.turn([&] { library.setWaveTag(205, 1); });
  store.turn([&] { library.setKitLevel(1, 5); });
  ASSERT_EQ(store.save(), "");
  const Tree saved = store.card();
  store.mountCard("fat:another", sampleCard());
  library.load("/media/card");
  undo.undo();
  EXPECT_FALSE(library.hasUnsavedChanges());
  store.open(saved);
  undo.undo();
  undo.undo();
  EXPECT_EQ(library.wave(205)->tag(), 0);
  EXPECT_EQ(library.tagList()->tagName(0), "Kick");
}

// A kit that was made in a freed slot and never saved is gone after reading the card again; what was edited of it must
// not reach the kit that the card has there.
TEST(Undo, OfADroppedNewKitDoesNotReachTheOldOneInItsSlot) {
  TestStore store;
  store.open();
  RolandLibrary& library = store.library;
  store.turn([&] { library.setKitLevel(1, 5); });
  ASSERT_EQ(store.save(), "");
  library.deleteKit(1);
  while (library.createKit(2, false) != 1) {
  }
  store.turn([&] { library.setKitName(1, "Fresh"); });
  library.load("/media/card");
  library.undoManager().undo();
  EXPECT_FALSE(library.hasUnsavedChanges());
  library.undoManager().undo();  // the first edit was of the card's own kit
  EXPECT_EQ(library.kit(1)->level(), 80);
}

// Which of two kits a card holds after a cut save isn't known, so an old step may reach neither.
TEST(Undo, FindsNothingOnACardThatACutSaveMayHaveChanged) {
  TestStore store;
  store.open();
  RolandLibrary& library = store.library;
  store.turn([&] { library.setKitLevel(1, 5); });
  ASSERT_EQ(store.save(), "");
  library.deleteKit(1);
  while (library.createKit(2, false) != 1) {
  }
  store.files.setVolume("/media/card", {"fat:1234-ABCD", {1U << 30U, 4096}, true});
  ASSERT_NE(store.save(), "");
  library.load("/media/card");
  library.undoManager().undo();
  EXPECT_FALSE(library.hasUnsavedChanges());
}

TEST(Commands, PublishWhatChangedAndNothingForNoEdit) {
  TestStore store;
  store.open();
  std::vector<RolandLibrary::Property> told;
  QObject::connect(&store.library, &RolandLibrary::published,
                   [&](RolandLibrary::Property property) { told.push_back(property); });
  using P = RolandLibrary::Property;
  store.library.setKitLevel(1, 3);
  store.library.setKitLevel(1, 3);
  store.library.setWaveTag(205, 1);
  store.library.setTagName(0, "x");
  store.library.undoManager().undo();
  EXPECT_THAT(told, ElementsAre(P::kits, P::waves, P::tagList, P::tagList, P::waves, P::kits));
  told.clear();
  store.library.copyPads(1);
  store.library.setCopiedWaveIndex(1);
  store.library.setSelectedKitSlot(1);
  store.library.setSelectedKitSlot(1);
  store.library.setShowingShortcutsHelp(true);
  EXPECT_THAT(told, ElementsAre(P::copiedPads, P::copiedWaveIndex, P::selectedKitSlot, P::showingShortcutsHelp));
}

}  // namespace
}  // namespace tamboro::test
