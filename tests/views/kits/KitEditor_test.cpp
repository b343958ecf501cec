#include <gtest/gtest.h>

#include <QAccessible>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>

#include "views/controls/ElidedLabel.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

struct KitEditor : ::testing::Test {
  MainWindow main;
  RolandLibrary& library = main.library;
  QLineEdit& name = main.find<QLineEdit>("kitName");

  KitEditor() { main.showCard(); }
};

TEST_F(KitEditor, FieldsWriteAtEachChangeAndShowWhatWasStored) {
  name.setFocus();
  name.setCursorPosition(0);
  QTest::keyClicks(&name, q("ab"));
  EXPECT_EQ(library.kit(1)->name(), "abRock");
  QTest::keyClicks(&name, q("cde"));
  EXPECT_EQ(name.text(), q("abcdeRoc")) << "the ninth character pushes the last one out";
  EXPECT_EQ(name.cursorPosition(), 5);
  name.end(false);
  QTest::keyClicks(&name, q("x"));
  EXPECT_EQ(name.text(), q("abcdeRoc")) << "nothing was stored and nobody told";
  auto& subName = main.find<QLineEdit>("kitSubName");
  subName.selectAll();
  QTest::keyClick(&subName, Qt::Key_Backspace);
  EXPECT_EQ(library.kit(1)->subName(), "");
  library.setKitName(1, "\uFEFFab");
  main.settle();
  name.end(false);
  QTest::keyClicks(&name, q("c"));
  EXPECT_EQ(library.kit(1)->name(), "\uFEFFabc") << "a mark that the toolkit drops when it reads";
}

TEST_F(KitEditor, ARefreshKeepsCursorSelectionAndComposition) {
  name.setFocus();
  name.setSelection(3, -2);  // the cursor at 1
  library.setKitName(1, "Funk");
  main.settle();
  EXPECT_EQ(name.selectedText(), q("un"));
  EXPECT_EQ(name.cursorPosition(), 1);
  name.deselect();
  QInputMethodEvent composing(q("か"), {});
  QApplication::sendEvent(&name, &composing);
  library.setKitName(1, "Soul");
  main.settle();
  EXPECT_EQ(name.text(), q("Funk")) << "it would end the composition";
  QInputMethodEvent dropped;
  QApplication::sendEvent(&name, &dropped);
  EXPECT_EQ(name.text(), q("Soul"));
}

/// Every screen that shows a kit or one of its pads.
TEST_F(KitEditor, LookingAtOddKitsChangesNothing) {
  Tree card = sampleCard();
  const std::string pads = "<PadPrm><Wv>205</Wv><NoteNum>999</NoteNum><TrigType>-4</TrigType></PadPrm><PadPrm/>";
  const auto odd = [&](int slot, const std::string& elements) {
    card["KIT/kit0" + std::to_string(slot) + ".spd"] = "<KitPrm>" + elements + pads + "</KitPrm>";
  };
  odd(20, "<Nm0>32</Nm0><Nm1>32</Nm1><Level>250</Level><Tempo>-5</Tempo>");
  odd(21, "<Nm0>129345</Nm0><Level>-9223372036854775808</Level><Tempo>9223372036854775807</Tempo>");
  odd(22, "<Nm0>10</Nm0><Nm1>1114111</Nm1><Level>x</Level><Tempo/><Fx1Sw>1</Fx1Sw><Fx1Type>77</Fx1Type>");
  main.store.open(card);
  const std::tuple<Slot, const char*, const char*> kits[] = {
      {20, "250", "-0.5"}, {21, "-9223372036854775808", "922337203685477632.0"}, {22, "100", "120.0"}};
  for (const auto& [slot, volume, tempo] : kits) {
    main.select(slot);
    for (const int pad : {1, 0}) {
      library.setSelectedPadIndex(pad);
      main.settle();
    }
    for (const char* field : {"kitName", "kitSubName", "kitVolumeSlider", "padVolumeSlider"})
      main.find(field).setFocus();
    main.window.grab();
    EXPECT_EQ(name.text().toStdString(), library.kit(slot)->name());
    EXPECT_EQ(main.text("kitVolumeValue"), volume);
    EXPECT_EQ(main.text("kitTempoValue"), tempo);
  }
  EXPECT_FALSE(library.hasUnsavedChanges());
  EXPECT_FALSE(library.undoManager().canUndo());
  main.select(21);
  EXPECT_TRUE(main.find<ElidedLabel>("kitTempoValue").shownText().endsWith(QChar(0x2026))) << "no digit cut silently";
}

TEST_F(KitEditor, AppearingKeepsThePadAndAChangeOfKitStartsAtTheFirst) {
  library.setSelectedPadIndex(11);
  main.select(std::nullopt);
  main.select(1);
  EXPECT_EQ(library.selectedPadIndex(), 11);
  name.setFocus();
  main.select(4);
  EXPECT_EQ(library.selectedPadIndex(), 0);
  EXPECT_EQ(main.focus(), "padGrid");
  main.select(std::nullopt);
  library.setSelectedPadIndex(3);
  main.select(2);  // it has pads 0 to 2
  EXPECT_EQ(library.selectedPadIndex(), 0);
  EXPECT_EQ(library.recentKitSlots(), (std::vector<Slot>{2, 4, 1}));
}

TEST_F(KitEditor, TabReachesWhatStandsOverThePadsAndShowsIt) {
  main.window.resize(1200, 420);
  main.settle();
  auto& area = main.find<QScrollArea>("kitScroll");
  area.verticalScrollBar()->setValue(area.verticalScrollBar()->maximum());
  main.find("newKitButton").setFocus();
  for (const char* next : {"kitName", "kitSubName", "kitVolumeSlider", "kitTempoSlider", "padGrid", "pad9"}) {
    main.key(Qt::Key_Tab);
    EXPECT_EQ(main.focus(), next);
    const QWidget* focused = main.window.focusWidget();
    const QRect place(focused->mapTo(area.viewport(), QPoint()), focused->size());
    EXPECT_TRUE(next == std::string_view("padGrid") || area.viewport()->rect().contains(place)) << next;
  }
  QTest::mouseClick(area.viewport(), Qt::LeftButton, {}, QPoint(4, 4));
  EXPECT_EQ(main.focus(), "padGrid") << "a click beside everything";
}

TEST_F(KitEditor, SlidersEditSpeakAndTakeTheShownNumbers) {
  QTest::keyClick(&main.find("kitVolumeSlider"), Qt::Key_Left);
  EXPECT_EQ(library.kit(1)->level(), 79);
  const auto spoken = [&](const char* slider) {
    return QAccessible::queryAccessibleInterface(&main.find(slider))->valueInterface();
  };
  QAccessibleValueInterface* tempo = spoken("kitTempoSlider");
  EXPECT_EQ(tempo->currentValue().toDouble(), 120.5);
  EXPECT_EQ(tempo->minimumValue().toDouble(), 20);
  tempo->setCurrentValue(98.76);
  EXPECT_EQ(library.kit(1)->tempoBPM(), 98.8);
  tempo->setCurrentValue(std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(library.kit(1)->tempoBPM(), 98.8);
  tempo->setCurrentValue(1e30);
  EXPECT_EQ(library.kit(1)->tempoBPM(), 300);
  EXPECT_EQ(spoken("padPanSlider")->currentValue().toDouble(), 0) << "centre";
  spoken("padPanSlider")->setCurrentValue(-3);
  EXPECT_EQ(library.kit(1)->pad(0)->pan(), 12);
}

}  // namespace
}  // namespace tamboro::test
