#include <gtest/gtest.h>

#include "views/controls/DisclosureGroup.h"
#include "views/pads/PadDetailView.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

/// The settings of the first kit's pads.
struct PadDetail : ::testing::Test, MainWindow {
  PadDetail() { showCard(); }
  Pad pad(int index = 0) { return *library.kit(1)->pad(index); }
  void show(int index) {
    library.setSelectedPadIndex(index);
    settle();
  }
};

TEST_F(PadDetail, EachControlWritesItsLeafAndFollowsTheStore) {
  find<DisclosureGroup>("sub").setExpanded(true);
  const struct {
    const char* control;
    const char* row;
    const char* leaf;
    std::int64_t stored;
  } cases[] = {{"padVolumeSlider", nullptr, "WvLevel", 89},
               {"padPanSlider", nullptr, "WvPan", 14},
               {"muteGroup", "8", "MuteGrp", 8},
               {"notePitch", "C#/Db", "NoteNum", 61},
               {"noteOctave", "Octave 9", "NoteNum", 120},
               {"loop", nullptr, "Loop", 1},
               {"tempoSync", nullptr, "TempoSync", 1},
               {"dynamics", nullptr, "Dynamics", 1},
               {"reverse", nullptr, "Reverse", 1},
               {"poly", "MONO", "VoiceAsgn", 0},
               {"triggerTypeMenu", "GATE", "TrigType", 1},
               {"outputMenu", "Phones Only", "OutAsgn", 4},
               {"midiChannel", "1", "PadMidiCh", 1},
               {"subVolumeSlider", nullptr, "SubWvLevel", 99},
               {"subPanSlider", nullptr, "SubWvPan", 14}};
  for (const auto& c : cases) {
    const QString before = shown(c.control);
    store.turn([&] { use(c.control, c.row); });
    EXPECT_EQ(pad().node.intValue(c.leaf, -99), c.stored) << c.control;
    library.undoManager().undo();
    settle();
    EXPECT_EQ(shown(c.control), before) << c.control;
  }
}

TEST_F(PadDetail, ShowsWhatWasStoredNotWhatWasAskedFor) {
  use("noteOctave", "Octave 9");
  use("notePitch", "A");
  use("notePitch", "A");  // cut to the number that is there: the store says nothing
  EXPECT_EQ(pad().note(), 127);
  EXPECT_EQ(shown("notePitch"), q("G"));
  show(9);
  EXPECT_EQ(text("padTitle"), "Pad 10") << "trigger inputs count on";
  EXPECT_EQ(text("padSound"), "(none)");
  for (const auto& [stored, shown] : {std::pair{-1, "(none)"}, {-5, "(none)"}, {206, "Snare"}, {1234, "[1234]"}})
    EXPECT_EQ(subSoundText(library, stored).toStdString(), shown) << stored;
}

TEST_F(PadDetail, NothingIsWrittenByTheWheelInPassingOrByADragThatOutlivedItsPad) {
  auto& slider = find("padVolumeSlider");
  for (QWidget* passed : {&find("poly"), &slider}) {
    QWheelEvent wheel(QPointF(5, 5), passed->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(passed, &wheel);
  }
  EXPECT_FALSE(library.hasUnsavedChanges());
  QTest::keyClick(&find("subTitle"), Qt::Key_Space);
  QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(slider.width() / 4, slider.height() / 2));
  show(1);
  QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(slider.width() / 4, slider.height() / 2));
  EXPECT_FALSE(library.hasUnsavedChanges());
  EXPECT_TRUE(find("subSound").isVisible()) << "what was unfolded stays so";
}

TEST_F(PadDetail, TheSheetAppliesTheTickedSettingsInOneStep) {
  library.setPadLevel(1, 13, 42);
  library.setPadPan(1, 13, 3);
  show(13);
  library.undoManager().endTurn();
  click("applyToAllButton");
  EXPECT_EQ(text("sheetTitle"), "Apply Settings from Pad 14 to All Pads");
  const auto boxes = find("setAllPadSheet").findChildren<QCheckBox*>();
  ASSERT_EQ(boxes.size(), 11);
  boxes.front()->click();
  EXPECT_EQ(boxes.front()->text(), q("Pad Volume"));
  click("applytoallButton");
  for (const int index : {0, 12, 14}) {
    EXPECT_EQ(pad(index).level(), 42) << index;
    EXPECT_EQ(pad(index).pan(), 15) << index;
  }
  library.undoManager().undo();
  EXPECT_EQ(pad(12).level(), 90);
}

}  // namespace
}  // namespace tamboro::test
