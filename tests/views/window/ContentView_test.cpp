#include "views/window/ContentView.h"

#include <gtest/gtest.h>

#include "platform/FolderBookmark.h"
#include "views/window/MainWindow.h"
#include "views/window/NoticeStack.h"

namespace tamboro::test {
namespace {

TEST(ContentView, TellsWhereTheUserLooksWhyACardDidNotOpen) {
  MainWindow main;
  main.show();
  EXPECT_FALSE(main.find("welcomeError").isVisible());
  const auto fail = [&] {
    main.library.openDroppedFolder("/home");
    main.settle();
    return main.library.lastError()->toStdString();
  };
  EXPECT_EQ(main.text("welcomeError"), fail());
  main.store.open();
  main.settle();
  EXPECT_FALSE(main.find("welcomeView").isVisible());
  EXPECT_FALSE(main.find("notices").isVisible()) << "the welcome screen told it";
  EXPECT_EQ(main.text("cardLocation"), "/media/card/Roland/SPD-SX");
  EXPECT_EQ(main.text("noticeText"), fail());
  EXPECT_TRUE(main.find("notices").isVisible());
  EXPECT_TRUE(main.find("workspace").isVisible());
  main.store.open();
  main.settle();
  EXPECT_FALSE(main.find("notices").isVisible());
}

TEST(ContentView, RestoresCardAndKitWhenItFirstAppears) {
  using Remembered = std::optional<std::int64_t>;
  // A kit that is gone stays chosen and isn't shown; without a remembered one the list selects its first.
  for (const auto& [remembered, selected, isShown] :
       {std::tuple{Remembered(2), 2, true}, {Remembered(77), 77, false}, {Remembered(), 1, true}}) {
    MainWindow main;
    main.store.mountCard("fat:1234-ABCD", sampleCard());
    main.store.defaults.setBytes(RolandLibrary::bookmarkKey, *makeBookmark("/media/card"));
    if (remembered) main.store.defaults.setInteger(ContentView::lastKitSlotKey, *remembered);
    main.settle();
    EXPECT_FALSE(main.library.isLoaded()) << "before the window is there";
    main.show();
    EXPECT_EQ(main.library.selectedKitSlot(), selected);
    EXPECT_EQ(main.find("kitEditor").isVisible(), isShown);
    main.select(std::nullopt);
    main.window.hide();
    main.show();
    EXPECT_EQ(main.library.selectedKitSlot(), std::nullopt) << "once only";
  }
}

TEST(ContentView, SelectsTheFirstKitWithTheKitListPutAway) {
  MainWindow main;
  main.content.setKitListShown(false);
  main.show();
  main.store.open();
  settle();
  EXPECT_FALSE(main.find("kitList").isVisible());
  EXPECT_EQ(main.library.selectedKitSlot(), 1);
}

TEST(ContentView, FollowsTheSelectedKitAndCounts) {
  MainWindow main;
  main.showCard();
  EXPECT_EQ(main.text("sampleCount"), "4 samples");
  EXPECT_FALSE(main.find("unsavedMark").isVisible());
  main.library.deleteKit(1);
  main.library.deleteKit(2);
  main.settle();
  EXPECT_EQ(main.text("kitCount"), "1 kit");
  EXPECT_TRUE(main.find("unsavedMark").isVisible());
  EXPECT_FALSE(main.find("kitEditor").isVisible());
  main.select(4);
  EXPECT_EQ(main.find<QLineEdit>("kitName").text(), q("Odd"));
  main.select(std::nullopt);
  EXPECT_EQ(main.store.defaults.integer(ContentView::lastKitSlotKey), 4) << "the last real kit";
}

TEST(ContentView, SaveButtonAndItsKeyShowAndRestDuringASave) {
  MainWindow main;
  main.showCard();
  auto& button = main.find<QPushButton>("saveButton");
  const auto expect = [&](const char* text, bool enabled) {
    main.settle();
    EXPECT_EQ(button.text(), q(text));
    EXPECT_EQ(button.isEnabled(), enabled);
  };
  expect("Save", false);
  main.pressSave();
  EXPECT_EQ(main.store.jobs.waiting(), 0U);
  main.library.setKitLevel(1, 12);
  expect("Save ●", true);
  auto& name = main.find<QLineEdit>("kitName");
  QTest::keyClick(&name, Qt::Key_X);  // no event is delivered between the edit and the key
  QTest::keyClick(&name, Qt::Key_S, Qt::ControlModifier);
  expect("", false);
  main.library.setKitLevel(2, 34);
  main.pressSave();
  button.click();
  main.store.jobs.runAll();
  EXPECT_TRUE(main.library.hasUnsavedChanges()) << "a second save was waiting";
  EXPECT_FALSE(main.library.kit(1)->isDirty);
  main.pressSave();
  main.store.jobs.runAll();
  expect("Save", false);
}

TEST(ContentView, AsksWhoseChangesStayWhereOthersHaveChangedTheCard) {
  const std::size_t readAgain = 1;
  const std::size_t saveAnyway = 2;
  for (const std::size_t button : {std::size_t{0}, readAgain, saveAnyway}) {
    MainWindow main;
    main.showCard();
    main.library.setKitLevel(1, 12);
    const std::string theirs = replaced(main.store.card().at("KIT/kit001.spd"), "<Level>80<", "<Level>55<");
    writeFile(main.store.files, TestStore::root / "KIT/kit001.spd", theirs);
    main.pressSave();
    main.store.jobs.runAll();
    const Alert& alert = main.prompts.alerts.at(0).first;
    EXPECT_TRUE(alert.text.contains(q("has changed 1 file")));
    EXPECT_EQ(alert.buttons.at(readAgain).title, q("Read Again"));
    main.prompts.press(button);
    main.store.jobs.runAll();
    EXPECT_EQ(main.library.kit(1)->level(), button == readAgain ? 55 : 12);
    EXPECT_EQ(main.library.hasUnsavedChanges(), button == 0);
    EXPECT_EQ(main.store.card().at("KIT/kit001.spd") == theirs, button != saveAnyway);
  }
}

TEST(NoticeStack, StandsInItsOrderInTheTabOrderToo) {
  MainWindow main;
  main.showCard();
  auto& notices = main.find<NoticeStack>("notices");
  std::string ran;
  for (const char* text : {"A", "B", "C"})  // the last in the place of the second
    notices.put(q(text[0] == 'A' ? "first" : "second"),
                {.text = q(text), .actions = {{q(text), [&ran, text] { ran += text; }}}});
  main.settle();
  main.find("tagsButton").setFocus();
  QStringList reached;
  for (int step = 0; step < 4; ++step) {
    main.key(Qt::Key_Tab);
    reached << static_cast<QPushButton*>(main.window.focusWidget())->text();
  }
  EXPECT_EQ(reached, (QStringList{q("A"), {}, q("C"), {}}));
  main.key(Qt::Key_Escape);
  EXPECT_FALSE(notices.holds(q("second")));
  main.click("noticeAction0");
  EXPECT_EQ(ran, "A");
}

TEST(ContentView, SheetsComeAndGoWithTheirProperties) {
  MainWindow main;
  main.showCard();
  QTest::keyClick(&main.window, Qt::Key_T, Qt::ControlModifier);
  EXPECT_TRUE(main.content.showingTagEditor());
  QTest::keyClick(&main.find("tagEditor"), Qt::Key_Escape);
  main.settle();
  EXPECT_FALSE(main.content.showingTagEditor());
  main.library.setShowingShortcutsHelp(true);
  main.settle();
  QTest::keyClick(&main.find("shortcutsHelp"), Qt::Key_Return);
  EXPECT_FALSE(main.library.showingShortcutsHelp());
  main.library.setShowingShortcutsHelp(true);  // while the closed sheet still lives
  QApplication::processEvents();
  main.settle();
  EXPECT_TRUE(main.find("shortcutsHelp").isVisible());
  main.library.setShowingShortcutsHelp(false);
  main.settle();
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "the property closes it too";
}

TEST(ContentView, SidebarGivesWayInANarrowWindow) {
  MainWindow main;
  main.showCard();
  const QList<int> before = main.find<QSplitter>("columns").sizes();
  auto& kits = main.find("kitList");
  kits.setFocus();
  main.window.resize(900, 600);
  main.settle();
  EXPECT_FALSE(kits.isVisible());
  EXPECT_EQ(main.focus(), "padGrid");
  main.content.setKitListShown(true);
  main.settle();
  EXPECT_TRUE(kits.isVisible());
  EXPECT_LT(main.find("sampleColumn").geometry().right(), 900) << "none is pushed out";
  main.window.resize(1200, 800);
  main.settle();
  EXPECT_EQ(main.find<QSplitter>("columns").sizes(), before);
}

TEST(ContentView, KeysLeadToTheColumnsAndTheirSearchFields) {
  MainWindow main;
  main.showCard();
  main.content.search();
  std::string reached = main.focus();
  for (const int step : {-1, -1, -1, 1}) {
    main.content.walkColumns(step);
    reached += " " + main.focus();
  }
  main.content.search();
  EXPECT_EQ(reached + " " + main.focus(), "waveSearchText padGrid kitList waveList kitList kitSearchText");
  main.content.setKitListShown(false);
  EXPECT_EQ(main.focus(), "padGrid") << "it left with the column";
  main.content.walkColumns(-1);
  EXPECT_EQ(main.focus(), "waveList");
}

}  // namespace
}  // namespace tamboro::test
