#include <gtest/gtest.h>

#include "views/controls/DisclosureGroup.h"
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
TEST_F(KitEditor, OddValuesAreShownAndKept) {
  Tree card = sampleCard();
  const auto odd = [&](int slot, const std::string& elements, const std::string& pad) {
    card["KIT/kit0" + std::to_string(slot) + ".spd"] =
        "<KitPrm>" + elements + "<PadPrm>" + pad + "</PadPrm><PadPrm/></KitPrm>";
  };
  odd(20, "<Nm0>32</Nm0><Nm1>32</Nm1><Level>250</Level><Tempo>-5</Tempo>",
      "<Wv>205</Wv><NoteNum>999</NoteNum><TrigType>-4</TrigType><MuteGrp>12</MuteGrp><PadMidiCh>17</PadMidiCh>"
      "<WvLevel>250</WvLevel>");
  odd(21, "<Nm0>129345</Nm0><Level>-9223372036854775808</Level><Tempo>9223372036854775807</Tempo>", "");
  odd(22, "<Nm0>10</Nm0><Nm1>1114111</Nm1><Level>x</Level><Tempo/><Fx1Sw>1</Fx1Sw><Fx1Type>77</Fx1Type>", "");
  odd(23, "<Fx1Sw>1</Fx1Sw><Fx1Type>1</Fx1Type><Fx1Prm0>5000</Fx1Prm0><Fx1Prm1>5000</Fx1Prm1>", "");
  main.store.open(card);
  const std::pair<Slot, std::vector<std::pair<const char*, const char*>>> kits[] = {
      {20,
       {{"kitVolumeValue", "250"},
        {"kitTempoValue", "-0.5"},
        {"padVolumeValue", "250"},
        {"notePitch", "D#/Eb"},
        {"noteOctave", ""},
        {"triggerTypeMenu", "(-4)"},
        {"muteGroup", ""},
        {"midiChannel", ""}}},
      {21, {{"kitVolumeValue", "-9223372036854775808"}, {"kitTempoValue", "922337203685477632.0"}}},
      {22, {{"kitVolumeValue", "100"}, {"kitTempoValue", "120.0"}, {"fx1Type", ""}, {"triggerTypeMenu", "SHOT"}}},
      {23, {{"fx1Type", "Stereo Delay"}, {"fx1Param0Menu", "Pan"}, {"fx1Param1Value", "5000 ms"}}}};
  for (const auto& [slot, texts] : kits) {
    main.select(slot);
    main.find<DisclosureGroup>("effects").setExpanded(true);
    for (const int pad : {1, 0}) {
      library.setSelectedPadIndex(pad);
      main.settle();
    }
    for (const char* field : {"kitName", "kitSubName", "kitVolumeSlider", "padVolumeSlider"})
      main.find(field).setFocus();
    main.window.grab();
    EXPECT_EQ(name.text().toStdString(), library.kit(slot)->name());
    for (const auto& [control, text] : texts)
      EXPECT_EQ(main.shown(control), q(text)) << control;
  }
  EXPECT_FALSE(library.hasUnsavedChanges());
  EXPECT_FALSE(library.undoManager().canUndo());
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
  library.setSelectedPadIndex(3);
  main.select(std::nullopt);
  main.select(2);
  EXPECT_EQ(library.selectedPadIndex(), 0) << "it has pads 0 to 2";
}

TEST_F(KitEditor, TabReachesWhatStandsOverThePadsAndShowsIt) {
  main.window.resize(1200, 420);
  main.settle();
  auto& area = main.find<QScrollArea>("kitScroll");
  area.verticalScrollBar()->setValue(area.verticalScrollBar()->maximum());
  main.find("newKitButton").setFocus();
  for (const std::string next : {"kitName", "kitSubName", "kitVolumeSlider", "kitTempoSlider", "padGrid", "pad9"}) {
    main.key(Qt::Key_Tab);
    EXPECT_EQ(main.focus(), next);
    const QWidget* focused = main.window.focusWidget();
    const QRect place(focused->mapTo(area.viewport(), QPoint()), focused->size());
    EXPECT_TRUE(next == "padGrid" || area.viewport()->rect().contains(place)) << next;
  }
}

TEST_F(KitEditor, SlidersSpeakAndTakeTheShownNumbers) {
  const auto spoken = [&](const char* slider) {
    return QAccessible::queryAccessibleInterface(&main.find(slider))->valueInterface();
  };
  QAccessibleValueInterface* tempo = spoken("kitTempoSlider");
  EXPECT_EQ(tempo->currentValue().toDouble(), 120.5);
  for (const auto& [asked, stored] : {std::pair{98.76, 98.8}, {std::nan(""), 98.8}, {1e30, 300.0}}) {
    tempo->setCurrentValue(asked);
    EXPECT_EQ(library.kit(1)->tempoBPM(), stored);
  }
  spoken("padPanSlider")->setCurrentValue(-3);
  EXPECT_EQ(library.kit(1)->pad(0)->pan(), 12);
}

}  // namespace
}  // namespace tamboro::test
