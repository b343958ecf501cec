#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QTest>

#include "audio/SamplePlayer.h"
#include "support/TestStore.h"
#include "views/Settle.h"
#include "views/controls/DisclosureGroup.h"
#include "views/controls/RawEnumPicker.h"
#include "views/look/LookPaint.h"
#include "views/pads/PadDetailView.h"
#include "views/pads/SetAllPadSheet.h"

namespace tamboro::test {
namespace {

using test::settle;

constexpr Slot rock = 1;
constexpr Slot odd = 4;

/// Chooses a row as the menu itself does it when a row is clicked.
void choose(QComboBox& menu, const QString& text) {
  const int row = menu.findText(text);
  ASSERT_GE(row, 0) << text.toStdString();
  menu.setCurrentIndex(row);
  Q_EMIT menu.activated(row);
}

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
  Pad pad(Slot slot = rock, int index = 0) { return *store.library.kit(slot)->pad(index); }
  void put(const elements::IntegerLeaf& leaf, std::int64_t value) {
    store.library.updatePad(rock, 0, [&](Pad& stored) { stored.node.setLeaf(leaf.name, value); });
    settle();
  }
};

TEST_F(PadDetail, EachMenuWritesItsLeaf) {
  const struct {
    const char* menu;
    const char* row;
    elements::IntegerLeaf leaf;
    std::int64_t stored;
  } cases[] = {
      {"muteGroup", "8", padSetting("muteGroup").leaf, 8},
      {"muteGroup", "Off", padSetting("muteGroup").leaf, 0},
      {"notePitch", "C#/Db", padSetting("note").leaf, 61},
      {"noteOctave", "Octave 9", padSetting("note").leaf, 121},
      {"notePitch", "A", padSetting("note").leaf, 127},
      {"notePitch", "A", padSetting("note").leaf, 127},  // cut to the number that is there: the store says nothing
      {"notePitch", "C", padSetting("note").leaf, 120},
      {"noteOctave", "Octave -1", padSetting("note").leaf, 0},
      {"poly", "MONO", padSetting("poly").leaf, 0},
      {"poly", "POLY", padSetting("poly").leaf, 1},
      {"triggerTypeMenu", "GATE", padSetting("triggerType").leaf, 1},
      {"outputMenu", "Phones Only", padSetting("output").leaf, 4},
      {"midiChannel", "1", padSetting("midiChannel").leaf, 1},
      {"midiChannel", "Global", padSetting("midiChannel").leaf, -1},
  };
  for (const auto& row : cases) {
    choose(menu(row.menu), QString::fromLatin1(row.row));
    EXPECT_EQ(row.leaf.read(pad().node), row.stored) << row.menu << " " << row.row;
  }
  choose(menu("noteOctave"), QStringLiteral("Octave 9"));
  choose(menu("notePitch"), QStringLiteral("A"));
  choose(menu("notePitch"), QStringLiteral("A"));
  EXPECT_EQ(menu("notePitch").currentText(), QStringLiteral("G")) << "what was stored, not what was asked for";
  EXPECT_EQ(menu("noteOctave").currentText(), QStringLiteral("Octave 9"));
}

TEST_F(PadDetail, EachSwitchAndSliderWritesItsLeaf) {
  const struct {
    const char* name;
    elements::IntegerLeaf leaf;
  } switches[] = {{"loop", padSetting("loop").leaf},
                  {"tempoSync", padSetting("tempoSync").leaf},
                  {"dynamics", padSetting("dynamics").leaf},
                  {"reverse", padSetting("reverse").leaf}};
  for (const auto& row : switches) {
    QTest::mouseClick(&find<QCheckBox>(row.name), Qt::LeftButton);
    EXPECT_EQ(row.leaf.read(pad().node), 1) << row.name;
    store.library.undoManager().endTurn();
    store.library.undoManager().undo();
    settle();
    EXPECT_FALSE(find<QCheckBox>(row.name).isChecked()) << row.name;
  }
  find<DisclosureGroup>("sub").setExpanded(true);
  const struct {
    const char* name;
    const char* text;
    elements::IntegerLeaf leaf;
    std::int64_t stored;
    const char* shown;
  } sliders[] = {{"padVolumeSlider", "padVolumeValue", padSetting("padVolume").leaf, 91, "91"},
                 {"padPanSlider", "padPanValue", padSetting("padPan").leaf, 16, "R1"},
                 {"subVolumeSlider", "subVolumeValue", padSetting("subVolume").leaf, 100, "100"},
                 {"subPanSlider", "subPanValue", padSetting("subPan").leaf, 16, "R1"}};
  for (const auto& row : sliders) {
    auto& slider = find<QSlider>(row.name);
    if (slider.value() == slider.maximum()) QTest::keyClick(&slider, Qt::Key_Left);
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_EQ(row.leaf.read(pad().node), row.stored) << row.name;
    EXPECT_EQ(text(row.text), row.shown);
  }
}

TEST_F(PadDetail, ShowsWhatIsStored) {
  EXPECT_EQ(text("padTitle"), "Pad 1");
  EXPECT_EQ(text("padSound"), "Kick");
  EXPECT_EQ(text("padPanValue"), "CENTER");
  EXPECT_EQ(menu("notePitch").currentText(), QStringLiteral("C"));
  EXPECT_EQ(menu("noteOctave").currentText(), QStringLiteral("Octave 4"));
  EXPECT_FALSE(find<QLabel>("middleC").isHidden());
  view.setPad(rock, 1);
  EXPECT_EQ(text("padSound"), "Snare");
  EXPECT_EQ(menu("notePitch").currentText(), QStringLiteral("C#/Db"));
  EXPECT_TRUE(find<QLabel>("middleC").isHidden());
  view.setPad(rock, 9);
  EXPECT_EQ(text("padTitle"), "Pad 10") << "trigger inputs count on";
  EXPECT_EQ(text("padSound"), "(none)");
  EXPECT_TRUE(find<QPushButton>("playButton").isHidden());
  view.setPad(99, 0);
  EXPECT_EQ(text("padVolumeValue"), "100") << "a pad that isn't there shows the defaults";
  EXPECT_EQ(menu("poly").currentText(), QStringLiteral("POLY"));
}

TEST_F(PadDetail, ValuesOutsideTheRowsAreShownAndKept) {
  put(padSetting("triggerType").leaf, 7);
  put(padSetting("muteGroup").leaf, 12);
  put(padSetting("midiChannel").leaf, 17);
  put(padSetting("note").leaf, 200);
  put(padSetting("padVolume").leaf, 250);
  EXPECT_EQ(menu("triggerTypeMenu").currentText(), QStringLiteral("(7)"));
  for (const char* name : {"muteGroup", "midiChannel", "noteOctave"})
    EXPECT_EQ(menu(name).currentIndex(), -1) << name;
  EXPECT_EQ(menu("notePitch").currentText(), QStringLiteral("G#/Ab"));
  EXPECT_EQ(text("padVolumeValue"), "250");
  const Pad stored = pad();
  view.setPad(rock, 1);
  EXPECT_EQ(menu("triggerTypeMenu").count(), 2) << "the added row goes with its value";
  view.setPad(rock, 0);
  settle();
  EXPECT_EQ(pad(), stored);
  choose(menu("triggerTypeMenu"), QStringLiteral("SHOT"));
  EXPECT_EQ(menu("triggerTypeMenu").count(), 2);
}

TEST_F(PadDetail, ShowingPadsChangesNothing) {
  for (const Slot slot : {rock, Slot{2}, odd})
    for (int index = 0; index < 16; ++index) {
      view.setPad(slot, index);
      store.library.setSelectedPadIndex(index);
      settle();
    }
  EXPECT_FALSE(store.library.hasUnsavedChanges());
  EXPECT_FALSE(store.library.undoManager().canUndo());
}

TEST_F(PadDetail, SubSoundIsNamedNumberedOrNone) {
  for (const auto& [stored, shown] : {std::pair{-1, "(none)"}, {-5, "(none)"}, {206, "Snare"}, {1234, "[1234]"}})
    EXPECT_EQ(subSoundText(store.library, stored).toStdString(), shown) << stored;
}

TEST_F(PadDetail, SubStaysOpenAndADragEndsWhenThePadChanges) {
  auto& group = find<DisclosureGroup>("sub");
  EXPECT_FALSE(group.isExpanded());
  EXPECT_FALSE(find<QLabel>("subSound").isVisible());
  QTest::keyClick(&find<QPushButton>("subTitle"), Qt::Key_Space);
  EXPECT_TRUE(find<QLabel>("subSound").isVisible());
  auto& slider = find<QSlider>("padVolumeSlider");
  QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(slider.width() / 4, slider.height() / 2));
  view.setPad(rock, 1);
  QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(slider.width() / 4, slider.height() / 2));
  EXPECT_TRUE(group.isExpanded());
  EXPECT_FALSE(store.library.hasUnsavedChanges());
  QTest::keyClick(&find<QPushButton>("subTitle"), Qt::Key_Left);
  EXPECT_FALSE(group.isExpanded());
  QTest::keyClick(&find<QPushButton>("subTitle"), Qt::Key_Right);
  EXPECT_TRUE(group.isExpanded());
}

TEST_F(PadDetail, SheetAppliesTheTickedSettings) {
  store.library.setPadLevel(rock, 13, 42);
  store.library.setPadPan(rock, 13, 3);
  view.setPad(rock, 13);
  store.library.undoManager().endTurn();
  auto& open = find<QPushButton>("applyToAllButton");
  for (int time = 0; time < 2; ++time) {
    QTest::mouseClick(&open, Qt::LeftButton);
    settle();
    auto& sheet = find<SetAllPadSheet>("setAllPadSheet");
    EXPECT_EQ(find<QLabel>("sheetTitle", &sheet).text(), QStringLiteral("Apply Settings from Pad 14 to All Pads"));
    auto& apply = find<QPushButton>("applytoallButton", &sheet);
    EXPECT_FALSE(apply.isEnabled()) << "nothing is ticked at first";
    const auto boxes = sheet.findChildren<QCheckBox*>();
    ASSERT_EQ(boxes.size(), 11);
    EXPECT_EQ(boxes.front()->text(), QStringLiteral("Pad Volume"));
    EXPECT_EQ(boxes.back()->text(), QStringLiteral("MIDI Channel"));
    boxes.front()->click();
    EXPECT_TRUE(apply.isEnabled());
    if (time == 0) {
      boxes.front()->click();
      EXPECT_FALSE(apply.isEnabled());
      auto& cancel = find<QPushButton>("cancelButton", &sheet);
      EXPECT_EQ(apply.x() - cancel.geometry().right() - 1 + 2 * ringRoom, Look::px(8));
      cancel.click();
      EXPECT_EQ(pad().level(), 90);
    } else {
      QTest::keyClick(&sheet, Qt::Key_Return);
    }
    settle();
  }
  EXPECT_EQ(view.findChild<SetAllPadSheet*>(), nullptr);
  for (int index = 0; index < 15; ++index) {
    EXPECT_EQ(pad(rock, index).level(), 42) << index;
    EXPECT_EQ(pad(rock, index).pan(), index == 13 ? 3 : 15) << index;
  }
  store.library.undoManager().undo();
  EXPECT_EQ(pad(rock, 12).level(), 90);
  EXPECT_EQ(pad(rock, 0).level(), 90) << "one step for all pads";
}

TEST_F(PadDetail, CaptionsStandAtTheLeadingEdge) {
  const auto side = [&](const char* name) { return find<QLabel>(name).alignment() & Qt::AlignHorizontal_Mask; };
  for (const auto& [direction, edge] : {std::pair{Qt::LeftToRight, Qt::AlignLeft}, {Qt::RightToLeft, Qt::AlignRight}}) {
    view.setLayoutDirection(direction);
    for (const char* name : {"padTitle", "padSoundTitle", "padVolumeTitle", "outputMenuTitle"})
      EXPECT_EQ(side(name), edge | Qt::AlignAbsolute) << name;
  }
}

TEST_F(PadDetail, ControlsAreNamedForAssistiveTools) {
  for (const QWidget* control : view.findChildren<QWidget*>()) {
    const bool isOfMenu = control->window() != view.window();
    if (control->focusPolicy() == Qt::NoFocus || isOfMenu) continue;  // a menu's list has the menu's name
    const auto* button = qobject_cast<const QAbstractButton*>(control);
    EXPECT_FALSE(control->objectName().isEmpty()) << control->metaObject()->className();
    EXPECT_TRUE(!control->accessibleName().isEmpty() || (button && !button->text().isEmpty()))
        << control->objectName().toStdString();
  }
}

}  // namespace
}  // namespace tamboro::test
