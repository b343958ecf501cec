#include "views/kits/KitEditor.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QWheelEvent>

#include "views/controls/DisclosureGroup.h"
#include "views/controls/EditField.h"
#include "views/controls/ElidedLabel.h"
#include "views/controls/ThrottledSlider.h"
#include "views/look/LookPaint.h"

namespace tamboro::test {
namespace {

TEST(KitEditorView, FieldsWriteAtEachChangeAndShowWhatWasStored) {
  KitEditor main;
  auto& name = main.find<QLineEdit>("kitName");
  EXPECT_EQ(name.text(), QStringLiteral("Rock"));
  name.setFocus();
  name.setCursorPosition(0);
  QTest::keyClicks(&name, QStringLiteral("ab"));
  EXPECT_EQ(main.library.kit(1)->name(), "abRock");
  QTest::keyClicks(&name, QStringLiteral("cde"));
  EXPECT_EQ(name.text(), QStringLiteral("abcdeRoc")) << "the ninth character pushes the last one out";
  EXPECT_EQ(name.cursorPosition(), 5);
  name.end(false);
  const Kit before = *main.library.kit(1);
  QTest::keyClicks(&name, QStringLiteral("x"));
  EXPECT_EQ(name.text(), QStringLiteral("abcdeRoc")) << "nothing was stored and nobody told";
  EXPECT_EQ(*main.library.kit(1), before);

  auto& subName = main.find<QLineEdit>("kitSubName");
  subName.setFocus();
  subName.selectAll();
  QTest::keyClick(&subName, Qt::Key_Backspace);
  EXPECT_EQ(main.library.kit(1)->subName(), "");
  EXPECT_EQ(subName.placeholderText(), QStringLiteral("Subtitle"));
  main.library.setKitName(1, "");
  main.settle();
  EXPECT_EQ(name.text(), QString());
  EXPECT_EQ(name.placeholderText(), QStringLiteral("Kit Name"));
  main.library.setKitName(1, "\uFEFFab");
  main.settle();
  name.end(false);
  QTest::keyClicks(&name, QStringLiteral("c"));
  EXPECT_EQ(main.library.kit(1)->name(), "\uFEFFabc") << "a mark that the toolkit drops when it reads";
}

TEST(KitEditorView, ARefreshKeepsCursorSelectionAndComposition) {
  KitEditor main;
  auto& name = main.find<QLineEdit>("kitName");
  name.setFocus();
  name.setSelection(3, -2);  // the cursor at 1
  main.library.setKitName(1, "Funk");
  main.settle();
  EXPECT_EQ(name.text(), QStringLiteral("Funk"));
  EXPECT_EQ(name.selectedText(), QStringLiteral("un"));
  EXPECT_EQ(name.cursorPosition(), 1);

  name.deselect();
  QInputMethodEvent composing(QStringLiteral("か"), {});
  QApplication::sendEvent(&name, &composing);
  main.library.setKitName(1, "Soul");
  main.settle();
  EXPECT_EQ(name.text(), QStringLiteral("Funk")) << "it would end the composition";
  QInputMethodEvent dropped;
  QApplication::sendEvent(&name, &dropped);
  EXPECT_EQ(name.text(), QStringLiteral("Soul"));
}

TEST(KitEditorView, LookingAtOddKitsChangesNothing) {
  Tree card = sampleCard();
  const auto odd = [&](int slot, const std::string& elements) {
    card["KIT/kit0" + std::to_string(slot) + ".spd"] =
        kitFile(4, "<PadPrm><Wv>205</Wv><NoteNum>999</NoteNum></PadPrm>", elements);
  };
  odd(20, nameCells("Nm", U"   ") + "<Level>250</Level><Tempo>-5</Tempo>");
  odd(21, nameCells("Nm", U"\U0001F941") + "<Level>-9223372036854775808</Level><Tempo>9223372036854775807</Tempo>");
  odd(22, nameCells("Nm", U"תופים") + "<Level>x</Level>");
  odd(23, nameCells("Nm", U"ＷＷＷＷＷＷＷＷ") + "<Tempo/>");
  odd(24, nameCells("Nm", U"a\nb\t\U0010FFFF"));
  KitEditor main(20, card);
  const Tree before = main.store.card();
  struct Case {
    Slot slot;
    const char* volume;
    const char* tempo;
  };
  for (const Case& c : {Case{20, "250", "-0.5"}, Case{21, "-9223372036854775808", "922337203685477632.0"},
                        Case{22, "100", "120.0"}, Case{23, "100", "120.0"}, Case{24, "100", "120.0"}}) {
    main.select(c.slot);
    main.find("kitName").setFocus();
    main.find("kitSubName").setFocus();
    main.find("kitVolumeSlider").setFocus();
    main.settle();
    main.window.grab();
    EXPECT_EQ(main.find<QLineEdit>("kitName").text().toStdString(), main.library.kit(c.slot)->name());
    EXPECT_EQ(main.text("kitVolumeValue"), c.volume);
    EXPECT_EQ(main.text("kitTempoValue"), c.tempo);
  }
  EXPECT_FALSE(main.library.hasUnsavedChanges());
  EXPECT_FALSE(main.library.undoManager().canUndo());
  EXPECT_EQ(main.find<QSlider>("kitVolumeSlider").value(), 100);
  main.select(21);
  EXPECT_TRUE(main.find<ElidedLabel>("kitTempoValue").shownText().endsWith(QChar(0x2026))) << "no digit cut silently";
}

TEST(KitEditorView, NamesStandOnTheColumnsEdgeWhicheverWayTheyRun) {
  Tree card = sampleCard();
  card["KIT/kit020.spd"] = kitFile(1, "<PadPrm/>", nameCells("Nm", U"תופים"));
  KitEditor main(20, card);
  auto& name = main.find<QLineEdit>("kitName");
  EXPECT_EQ(name.alignment() & Qt::AlignHorizontal_Mask, Qt::AlignLeft | Qt::AlignAbsolute);
  main.window.setLayoutDirection(Qt::RightToLeft);
  EXPECT_EQ(name.alignment() & Qt::AlignHorizontal_Mask, Qt::AlignRight | Qt::AlignAbsolute);
}

TEST(KitEditorView, AppearingKeepsThePadAndAChangeOfKitStartsAtTheFirst) {
  KitEditor main;
  main.library.setSelectedPadIndex(11);
  main.select(std::nullopt);
  EXPECT_FALSE(main.find("kitEditor").isVisible());
  main.select(1);
  EXPECT_EQ(main.library.selectedPadIndex(), 11);
  main.find("kitName").setFocus();
  main.select(4);
  EXPECT_EQ(main.library.selectedPadIndex(), 0);
  EXPECT_TRUE(main.find<KitEditorView>("kitEditor").gridFocused());
  main.select(std::nullopt);
  main.library.setSelectedPadIndex(3);
  main.select(2);  // it has pads 0 to 2
  EXPECT_EQ(main.library.selectedPadIndex(), 0);
  EXPECT_EQ(main.library.recentKitSlots(), (std::vector<Slot>{2, 4, 1}));
  EXPECT_EQ(main.find("kitEditor").accessibleName(), QStringLiteral("Jazz"));
}

TEST(KitEditorView, TabReachesWhatStandsOverThePadsAndShowsIt) {
  KitEditor main;
  main.window.resize(1200, 420);
  main.settle();
  auto& area = main.find<QScrollArea>("kitScroll");
  const auto isInSight = [&] {
    const QWidget* focused = main.window.focusWidget();
    return area.viewport()->rect().contains(QRect(focused->mapTo(area.viewport(), QPoint()), focused->size()));
  };
  area.verticalScrollBar()->setValue(area.verticalScrollBar()->maximum());
  main.find("newKitButton").setFocus();
  for (const char* next : {"kitName", "kitSubName", "kitVolumeSlider", "kitTempoSlider", "padGrid", "pad9"}) {
    main.key(Qt::Key_Tab);
    EXPECT_EQ(main.window.focusWidget()->objectName(), QString::fromLatin1(next));
    EXPECT_TRUE(next == std::string_view("padGrid") || isInSight()) << next;
  }
  QTest::mouseClick(area.viewport(), Qt::LeftButton, {}, QPoint(4, 4));
  EXPECT_EQ(main.window.focusWidget()->objectName(), QStringLiteral("padGrid")) << "a click beside everything";
}

TEST(KitEditorView, SlidersEditTheKit) {
  KitEditor main;
  auto& tempo = main.find<QSlider>("kitTempoSlider");
  EXPECT_EQ(main.text("kitTempoValue"), "120.5");
  tempo.setFocus();
  main.key(Qt::Key_Right);
  EXPECT_EQ(main.library.kit(1)->tempoBPM(), 120.6);
  main.find("kitVolumeSlider").setFocus();
  main.key(Qt::Key_Left);
  EXPECT_EQ(main.library.kit(1)->level(), 79);
  main.library.undoManager().undo();
  main.settle();
  EXPECT_EQ(main.text("kitVolumeValue"), "80");
}

TEST(KitEditorView, EverySectionStandsOnTheColumnsEdgeWithRoomForRings) {
  KitEditor main;
  main.find<DisclosureGroup>("effects").setExpanded(true);
  main.settle();
  const QWidget& column = main.find("kitSections");
  const auto left = [&](const char* name) { return main.find(name).mapTo(&column, QPoint()).x(); };
  const int edge = left("pad0");
  for (const char* plain : {"kitVolumeTitle", "triggerHeading", "padDetail"})
    EXPECT_EQ(left(plain), edge) << plain;
  for (const char* ringed : {"kitVolumeSlider", "fx1Switch", "effectsTitle"})
    EXPECT_EQ(left(ringed), edge - ringRoom) << ringed;
  const QWidget& track = main.find("kitVolumeSlider");
  EXPECT_TRUE(track.parentWidget()->rect().contains(track.geometry())) << "the ring would be cut";
}

TEST(KitEditorView, SlidersSpeakAndTakeTheShownNumbers) {
  KitEditor main;
  const auto spoken = [&](const char* name) {
    return QAccessible::queryAccessibleInterface(&main.find(name))->valueInterface();
  };
  QAccessibleValueInterface* tempo = spoken("kitTempoSlider");
  EXPECT_EQ(tempo->currentValue().toDouble(), 120.5);
  EXPECT_EQ(tempo->minimumValue().toDouble(), 20);
  EXPECT_EQ(tempo->maximumValue().toDouble(), 300);
  EXPECT_EQ(tempo->minimumStepSize().toDouble(), 0.1);
  tempo->setCurrentValue(98.76);
  EXPECT_EQ(main.library.kit(1)->tempoBPM(), 98.8);
  tempo->setCurrentValue(QStringLiteral("fast"));
  tempo->setCurrentValue(std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(main.library.kit(1)->tempoBPM(), 98.8);
  tempo->setCurrentValue(1e30);
  EXPECT_EQ(main.library.kit(1)->tempoBPM(), 300);
  QAccessibleValueInterface* pan = spoken("padPanSlider");
  EXPECT_EQ(pan->currentValue().toDouble(), 0) << "centre";
  EXPECT_EQ(pan->minimumValue().toDouble(), -15);
  pan->setCurrentValue(-3);
  EXPECT_EQ(main.elementText(0, "WvPan"), "12");
  EXPECT_EQ(main.text("padPanValue"), "L3");
}

/// A slider over 0 to 100 that lists what it reports.
struct Slider {
  std::vector<double> commits;
  ThrottledSlider slider{QStringLiteral("test"),
                         {.title = QStringLiteral("Test"),
                          .format = [](double value) { return QString::number(value); },
                          .commit = [this](double value) { commits.push_back(value); }}};
  QSlider& track = *slider.findChild<QSlider*>();
  QLabel& text = *slider.findChild<QLabel*>(QStringLiteral("testValue"));

  Slider() {
    slider.resize(300, 40);
    slider.show();
    slider.setValue(50);
    MainWindow::settle();
  }
  QPoint at(int percent) { return {11 + (track.width() - 22) * percent / 100, track.height() / 2}; }
  void press(int percent) { QTest::mousePress(&track, Qt::LeftButton, {}, at(percent)); }
  void drag(int percent) {
    QMouseEvent move(QEvent::MouseMove, at(percent), track.mapToGlobal(at(percent)), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&track, &move);
  }
  void release(int percent) { QTest::mouseRelease(&track, Qt::LeftButton, {}, at(percent)); }
};

TEST(ThrottledSlider, ReportsOnceADrag) {
  Slider s;
  s.press(50);
  s.release(50);
  EXPECT_EQ(s.commits, std::vector<double>{}) << "nothing moved";
  s.press(50);
  s.drag(80);
  EXPECT_NEAR(s.slider.liveValue().value_or(0), 80, 2);
  EXPECT_EQ(s.text.text(), QString::number(*s.slider.liveValue()));
  s.slider.setValue(10);  // another edit comes in
  EXPECT_EQ(s.text.text(), QString::number(*s.slider.liveValue()));
  s.drag(90);
  EXPECT_EQ(s.commits.size(), 0U);
  s.release(90);
  ASSERT_EQ(s.commits.size(), 1U);
  EXPECT_NEAR(s.commits[0], 90, 2);
  EXPECT_EQ(s.slider.liveValue(), std::nullopt);
}

TEST(ThrottledSlider, APressAnywhereOnTheKnobLeavesItAndAMoveGoesOnFromThere) {
  Slider s;
  const QPoint offCentre(5, 0);
  QTest::mousePress(&s.track, Qt::LeftButton, {}, s.at(50) + offCentre);
  EXPECT_EQ(s.track.value(), 50);
  QTest::mouseRelease(&s.track, Qt::LeftButton, {}, s.at(50) + offCentre);
  EXPECT_EQ(s.commits.size(), 0U);
  QTest::mousePress(&s.track, Qt::LeftButton, {}, s.at(50) + offCentre);
  QTest::mouseMove(&s.track, s.at(80) + offCentre);
  s.release(80);
  ASSERT_EQ(s.commits.size(), 1U);
  EXPECT_NEAR(s.commits[0], 80, 1);
}

TEST(ThrottledSlider, ReportsADragBackToTheSameValueAndAPressOnTheGrooveOnce) {
  Slider s;
  s.press(50);
  s.drag(70);
  s.drag(50);
  s.release(50);
  EXPECT_EQ(s.commits.size(), 1U);
  s.press(20);
  s.drag(25);
  s.release(25);
  EXPECT_EQ(s.commits.size(), 2U);
}

TEST(ThrottledSlider, ADroppedDragReportsNothing) {
  Slider s;
  s.press(50);
  s.drag(70);
  s.slider.cancelDrag();
  s.slider.setValue(30);
  s.drag(80);
  s.release(80);
  EXPECT_EQ(s.commits.size(), 0U);
  EXPECT_EQ(s.track.value(), 30);
}

TEST(ThrottledSlider, ReportsEachStepOfKeysAndOfTheWheelWithFocus) {
  Slider s;
  s.slider.activateWindow();
  s.track.setFocus();
  QTest::keyClick(&s.track, Qt::Key_Right);
  QTest::keyClick(&s.track, Qt::Key_Right);
  EXPECT_EQ(s.commits, (std::vector<double>{51, 52}));
  const auto wheel = [&] {
    QWheelEvent event(s.at(50), s.track.mapToGlobal(s.at(50)), {}, {0, 120}, Qt::NoButton, {}, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(&s.track, &event);
  };
  wheel();
  EXPECT_EQ(s.commits.size(), 3U);
  s.track.clearFocus();
  wheel();
  EXPECT_EQ(s.commits.size(), 3U);
}

TEST(ThrottledSlider, AValueBeyondTheRangeStandsAsTextAndStays) {
  Slider s;
  s.slider.setValue(150);
  EXPECT_EQ(s.text.text(), QStringLiteral("150"));
  EXPECT_EQ(s.track.value(), 100);
  QTest::keyClick(&s.track, Qt::Key_Right);
  EXPECT_EQ(s.commits.size(), 0U);
}

}  // namespace
}  // namespace tamboro::test
