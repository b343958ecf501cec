#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QSlider>

#include "views/controls/DisclosureGroup.h"
#include "views/pads/PadDetailView.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

/// The settings of the first kit's pads.
struct PadDetail : ::testing::Test, MainWindow {
  PadDetail() { showCard(); }
  QComboBox& menu(const char* name) { return find<QComboBox>(name); }
  Pad pad(int index = 0) { return *library.kit(1)->pad(index); }
  void show(int index) {
    library.setSelectedPadIndex(index);
    settle();
  }
  /// Chooses a row as the menu itself does it when a row is clicked.
  void choose(const char* name, const char* title) {
    const int row = menu(name).findText(q(title));
    menu(name).setCurrentIndex(row);
    Q_EMIT menu(name).activated(row);
  }
};

TEST_F(PadDetail, EachControlWritesItsLeaf) {
  const struct {
    const char* menu;
    const char* row;
    const char* leaf;
    std::int64_t stored;
  } menus[] = {{"muteGroup", "8", "MuteGrp", 8},           {"muteGroup", "Off", "MuteGrp", 0},
               {"notePitch", "C#/Db", "NoteNum", 61},      {"noteOctave", "Octave 9", "NoteNum", 121},
               {"poly", "MONO", "VoiceAsgn", 0},           {"poly", "POLY", "VoiceAsgn", 1},
               {"triggerTypeMenu", "GATE", "TrigType", 1}, {"outputMenu", "Phones Only", "OutAsgn", 4},
               {"midiChannel", "1", "PadMidiCh", 1},       {"midiChannel", "Global", "PadMidiCh", -1}};
  for (const auto& row : menus) {
    choose(row.menu, row.row);
    EXPECT_EQ(pad().node.intValue(row.leaf, -99), row.stored) << row.menu << " " << row.row;
  }
  const std::pair<const char*, const char*> switches[] = {
      {"loop", "Loop"}, {"tempoSync", "TempoSync"}, {"dynamics", "Dynamics"}, {"reverse", "Reverse"}};
  for (const auto& [name, leaf] : switches) {
    find<QCheckBox>(name).click();
    EXPECT_EQ(pad().node.intValue(leaf, -99), 1) << name;
    library.undoManager().endTurn();
    library.undoManager().undo();
    settle();
    EXPECT_FALSE(find<QCheckBox>(name).isChecked()) << name;
  }
  find<DisclosureGroup>("sub").setExpanded(true);
  const struct {
    const char* name;
    const char* leaf;
    std::int64_t stored;
    const char* shown;
  } sliders[] = {{"padVolume", "WvLevel", 89, "89"},
                 {"padPan", "WvPan", 14, "L1"},
                 {"subVolume", "SubWvLevel", 99, "99"},
                 {"subPan", "SubWvPan", 14, "L1"}};
  for (const auto& row : sliders) {
    QTest::keyClick(&find<QSlider>((std::string(row.name) + "Slider").c_str()), Qt::Key_Left);
    EXPECT_EQ(pad().node.intValue(row.leaf, -99), row.stored) << row.name;
    EXPECT_EQ(text((std::string(row.name) + "Value").c_str()), row.shown);
  }
}

TEST_F(PadDetail, ShowsWhatWasStoredNotWhatWasAskedFor) {
  choose("noteOctave", "Octave 9");
  choose("notePitch", "A");
  choose("notePitch", "A");  // cut to the number that is there: the store says nothing
  EXPECT_EQ(pad().note(), 127);
  EXPECT_EQ(menu("notePitch").currentText(), q("G"));
  EXPECT_EQ(menu("noteOctave").currentText(), q("Octave 9"));
  show(9);
  EXPECT_EQ(text("padTitle"), "Pad 10") << "trigger inputs count on";
  EXPECT_EQ(text("padSound"), "(none)");
  for (const auto& [stored, shown] : {std::pair{-1, "(none)"}, {-5, "(none)"}, {206, "Snare"}, {1234, "[1234]"}})
    EXPECT_EQ(subSoundText(library, stored).toStdString(), shown) << stored;
}

TEST_F(PadDetail, ValuesOutsideTheRowsAreShownAndKept) {
  const std::pair<const char*, std::int64_t> odd[] = {
      {"TrigType", 7}, {"MuteGrp", 12}, {"PadMidiCh", 17}, {"NoteNum", 200}, {"WvLevel", 250}};
  for (const auto& [leaf, value] : odd)
    library.updatePad(1, 0, [&](Pad& stored) { stored.node.setLeaf(leaf, value); });
  const Pad stored = pad();
  show(1);
  EXPECT_EQ(menu("triggerTypeMenu").count(), 2) << "an added row goes with its value";
  show(0);
  EXPECT_EQ(menu("triggerTypeMenu").currentText(), q("(7)"));
  for (const char* name : {"muteGroup", "midiChannel", "noteOctave"})
    EXPECT_EQ(menu(name).currentIndex(), -1) << name;
  EXPECT_EQ(menu("notePitch").currentText(), q("G#/Ab"));
  EXPECT_EQ(text("padVolumeValue"), "250");
  EXPECT_EQ(pad(), stored);
}

TEST_F(PadDetail, ADragEndsWhenThePadChangesAndSubStaysOpen) {
  QTest::keyClick(&find("subTitle"), Qt::Key_Space);
  EXPECT_TRUE(find("subSound").isVisible());
  auto& slider = find("padVolumeSlider");
  QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(slider.width() / 4, slider.height() / 2));
  show(1);
  QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(slider.width() / 4, slider.height() / 2));
  EXPECT_FALSE(library.hasUnsavedChanges());
  EXPECT_TRUE(find("subSound").isVisible());
}

TEST_F(PadDetail, TheSheetAppliesTheTickedSettingsInOneStep) {
  library.setPadLevel(1, 13, 42);
  library.setPadPan(1, 13, 3);
  show(13);
  library.undoManager().endTurn();
  click("applyToAllButton");
  EXPECT_EQ(text("sheetTitle"), "Apply Settings from Pad 14 to All Pads");
  auto& apply = find<QPushButton>("applytoallButton");
  const auto boxes = find("setAllPadSheet").findChildren<QCheckBox*>();
  ASSERT_EQ(boxes.size(), 11);
  boxes.back()->click();
  boxes.back()->click();
  EXPECT_FALSE(apply.isEnabled()) << "nothing is ticked";
  boxes.front()->click();
  EXPECT_EQ(boxes.front()->text(), q("Pad Volume"));
  apply.click();
  for (const int index : {0, 12, 14}) {
    EXPECT_EQ(pad(index).level(), 42) << index;
    EXPECT_EQ(pad(index).pan(), 15) << index;
  }
  library.undoManager().undo();
  EXPECT_EQ(pad(12).level(), 90);
}

}  // namespace
}  // namespace tamboro::test
