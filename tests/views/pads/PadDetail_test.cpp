#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSlider>

#include "views/controls/DisclosureGroup.h"
#include "views/pads/PadDetailView.h"
#include "views/pads/SetAllPadSheet.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

constexpr Slot rock = 1;

class PadDetail : public ::testing::Test {
 protected:
  TestStore store;
  SamplePlayer player;
  PadDetailView view{store.library, player};

  PadDetail() {
    store.open();
    view.setPad(rock, 0);
    view.show();
    settle();
  }
  template<class Kind>
  Kind& find(const char* name, QWidget* in = nullptr) {
    auto* found = (in ? in : &view)->findChild<Kind*>(QString::fromLatin1(name));
    if (!found) throw std::runtime_error(std::string("no ") + name);
    return *found;
  }
  QComboBox& menu(const char* name) { return find<QComboBox>(name); }
  std::string text(const char* name) { return find<QLabel>(name).text().toStdString(); }
  Pad pad(int index = 0) { return *store.library.kit(rock)->pad(index); }
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
    QTest::mouseClick(&find<QCheckBox>(name), Qt::LeftButton);
    EXPECT_EQ(pad().node.intValue(leaf, -99), 1) << name;
    store.library.undoManager().endTurn();
    store.library.undoManager().undo();
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
  view.setPad(rock, 9);
  EXPECT_EQ(text("padTitle"), "Pad 10") << "trigger inputs count on";
  EXPECT_EQ(text("padSound"), "(none)");
  view.setPad(99, 0);
  EXPECT_EQ(text("padVolumeValue"), "100") << "a pad that isn't there shows the defaults";
  for (const auto& [stored, shown] : {std::pair{-1, "(none)"}, {-5, "(none)"}, {206, "Snare"}, {1234, "[1234]"}})
    EXPECT_EQ(subSoundText(store.library, stored).toStdString(), shown) << stored;
}

TEST_F(PadDetail, ValuesOutsideTheRowsAreShownAndKept) {
  const std::pair<const char*, std::int64_t> odd[] = {
      {"TrigType", 7}, {"MuteGrp", 12}, {"PadMidiCh", 17}, {"NoteNum", 200}, {"WvLevel", 250}};
  for (const auto& [leaf, value] : odd)
    store.library.updatePad(rock, 0, [&](Pad& stored) { stored.node.setLeaf(leaf, value); });
  const Pad stored = pad();
  view.setPad(rock, 1);
  EXPECT_EQ(menu("triggerTypeMenu").count(), 2) << "an added row goes with its value";
  view.setPad(rock, 0);
  settle();
  EXPECT_EQ(menu("triggerTypeMenu").currentText(), q("(7)"));
  for (const char* name : {"muteGroup", "midiChannel", "noteOctave"})
    EXPECT_EQ(menu(name).currentIndex(), -1) << name;
  EXPECT_EQ(menu("notePitch").currentText(), q("G#/Ab"));
  EXPECT_EQ(text("padVolumeValue"), "250");
  EXPECT_EQ(pad(), stored);
}

TEST_F(PadDetail, ADragEndsWhenThePadChangesAndSubStaysOpen) {
  auto& group = find<DisclosureGroup>("sub");
  QTest::keyClick(&find<QPushButton>("subTitle"), Qt::Key_Space);
  EXPECT_TRUE(find<QLabel>("subSound").isVisible());
  auto& slider = find<QSlider>("padVolumeSlider");
  QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(slider.width() / 4, slider.height() / 2));
  view.setPad(rock, 1);
  QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(slider.width() / 4, slider.height() / 2));
  EXPECT_FALSE(store.library.hasUnsavedChanges());
  EXPECT_TRUE(group.isExpanded());
  QTest::keyClick(&find<QPushButton>("subTitle"), Qt::Key_Left);
  EXPECT_FALSE(group.isExpanded());
}

TEST_F(PadDetail, TheSheetAppliesTheTickedSettingsInOneStep) {
  store.library.setPadLevel(rock, 13, 42);
  store.library.setPadPan(rock, 13, 3);
  view.setPad(rock, 13);
  store.library.undoManager().endTurn();
  QTest::mouseClick(&find<QPushButton>("applyToAllButton"), Qt::LeftButton);
  auto& sheet = find<SetAllPadSheet>("setAllPadSheet");
  EXPECT_EQ(find<QLabel>("sheetTitle", &sheet).text(), q("Apply Settings from Pad 14 to All Pads"));
  auto& apply = find<QPushButton>("applytoallButton", &sheet);
  const auto boxes = sheet.findChildren<QCheckBox*>();
  ASSERT_EQ(boxes.size(), 11);
  boxes.back()->click();
  boxes.back()->click();
  EXPECT_FALSE(apply.isEnabled()) << "nothing is ticked";
  boxes.front()->click();
  EXPECT_EQ(boxes.front()->text(), q("Pad Volume"));
  apply.click();
  settle();
  for (const int index : {0, 12, 14}) {
    EXPECT_EQ(pad(index).level(), 42) << index;
    EXPECT_EQ(pad(index).pan(), 15) << index;
  }
  store.library.undoManager().undo();
  EXPECT_EQ(pad(12).level(), 90);
  EXPECT_EQ(pad(0).level(), 90);
}

}  // namespace
}  // namespace tamboro::test
