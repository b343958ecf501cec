#include "views/window/ContentView.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>

#include "platform/FolderBookmark.h"
#include "views/window/MainWindow.h"
#include "views/window/NoticeStack.h"

namespace tamboro::test {
namespace {

TEST(ContentView, ShowsWelcomeUntilACardOpens) {
  MainWindow main;
  main.show();
  EXPECT_TRUE(main.find("welcomeView").isVisible());
  EXPECT_FALSE(main.find("welcomeError").isVisible());
  main.library.openDroppedFolder("/home");
  main.settle();
  EXPECT_EQ(main.text("welcomeError"), main.library.lastError()->toStdString());
  main.click("chooseFolderButton");
  EXPECT_EQ(main.store.panel.requests.size(), 1U);
  main.store.open();
  main.settle();
  EXPECT_FALSE(main.find("welcomeView").isVisible());
  EXPECT_TRUE(main.find("workspace").isVisible());
  EXPECT_FALSE(main.find("notices").isVisible()) << "the welcome screen told it";
}

TEST(ContentView, RestoresCardAndKitWhenItFirstAppears) {
  struct Case {
    std::optional<std::int64_t> remembered;
    std::optional<Slot> chosen;
    Slot selected;
    bool isShown;
  };
  // Without a remembered kit the list selects its first one.
  for (const Case& c : {Case{2, {}, 2, true}, Case{77, {}, 77, false}, Case{{}, {}, 1, true}, Case{2, 4, 4, true}}) {
    MainWindow main;
    main.store.mountCard("fat:1234-ABCD", sampleCard());
    main.store.defaults.setBytes(RolandLibrary::bookmarkKey, *makeBookmark("/media/card"));
    if (c.chosen) main.library.setSelectedKitSlot(c.chosen);
    if (c.remembered) main.store.defaults.setInteger(ContentView::lastKitSlotKey, *c.remembered);
    main.settle();
    EXPECT_FALSE(main.library.isLoaded()) << "before the window is there";
    main.show();
    EXPECT_EQ(main.library.selectedKitSlot(), c.selected);
    EXPECT_EQ(main.find("kitEditor").isVisible(), c.isShown);
    // Once only: a window that comes back keeps what was selected since.
    main.select(std::nullopt);
    main.window.hide();
    main.show();
    EXPECT_EQ(main.library.selectedKitSlot(), std::nullopt);
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
  EXPECT_EQ(main.text("kitCount"), "3 kits");
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
  const auto expect = [&](const char* text, bool enabled, const char* help) {
    main.settle();
    EXPECT_EQ(button.text(), q(text));
    EXPECT_EQ(button.isEnabled(), enabled);
    EXPECT_EQ(button.toolTip(), q(help));
    EXPECT_EQ(button.accessibleName(), q("Save"));
  };
  expect("Save", false, "No changes to save");
  main.pressSave();
  EXPECT_EQ(main.store.jobs.waiting(), 0U);
  main.library.setKitLevel(1, 12);
  expect("Save ●", true, "Save changes to the SPD-SX card (⌘S)");
  auto& name = main.find<QLineEdit>("kitName");
  QTest::keyClick(&name, Qt::Key_X);  // no event is delivered between the edit and the key
  QTest::keyClick(&name, Qt::Key_S, Qt::ControlModifier);
  expect("", false, "Save changes to the SPD-SX card (⌘S)");
  main.library.setKitLevel(2, 34);
  main.pressSave();
  button.click();
  main.store.jobs.runAll();
  EXPECT_TRUE(main.library.hasUnsavedChanges()) << "a second save was waiting";
  EXPECT_FALSE(main.library.kit(1)->isDirty);
  main.pressSave();
  main.store.jobs.runAll();
  expect("Save", false, "No changes to save");
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
    ASSERT_EQ(main.prompts.alerts.size(), 1U);
    EXPECT_TRUE(main.prompts.alerts.front().first.text.contains(q("has changed 1 file")));
    ASSERT_EQ(main.prompts.alerts.front().first.buttons.size(), 3U);
    EXPECT_EQ(main.prompts.alerts.front().first.buttons[readAgain].title, q("Read Again"));
    main.prompts.press(button);
    main.store.jobs.runAll();
    EXPECT_EQ(main.library.kit(1)->level(), button == readAgain ? 55 : 12);
    EXPECT_EQ(main.library.hasUnsavedChanges(), button == 0);
    EXPECT_EQ(main.store.card().at("KIT/kit001.spd") == theirs, button != saveAnyway);
  }
}

TEST(ContentView, TellsOverTheOpenCardWhyAnotherDidNotOpen) {
  MainWindow main;
  main.showCard();
  EXPECT_EQ(main.text("cardLocation"), "/media/card/Roland/SPD-SX");
  main.library.openDroppedFolder("/home");
  main.settle();
  EXPECT_TRUE(main.find("workspace").isVisible());
  EXPECT_EQ(main.text("noticeText"), main.library.lastError()->toStdString());
  EXPECT_TRUE(main.find("notices").isVisible());
  main.store.open();
  main.settle();
  EXPECT_FALSE(main.find("notices").isVisible());
}

/// Two notices, the second replaced, with an action each.
TEST(NoticeStack, StandsInItsOrderInTheTabOrderToo) {
  MainWindow main;
  main.showCard();
  auto& notices = main.find<NoticeStack>("notices");
  std::string ran;
  for (const char* text : {"A", "B", "C"})
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
  EXPECT_FALSE(notices.isVisible());
}

TEST(ContentView, SheetsComeAndGoWithTheirProperties) {
  MainWindow main;
  main.showCard();
  QTest::keyClick(&main.window, Qt::Key_T, Qt::ControlModifier);
  EXPECT_TRUE(main.content.showingTagEditor());
  QTest::keyClick(&main.find<QDialog>("tagEditor"), Qt::Key_Escape);
  main.settle();
  EXPECT_FALSE(main.content.showingTagEditor());
  for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
    main.library.setShowingShortcutsHelp(true);
    main.settle();
    QTest::keyClick(&main.find<QDialog>("shortcutsHelp"), key);
    EXPECT_FALSE(main.library.showingShortcutsHelp()) << key;
    main.settle();
  }
  main.library.setShowingShortcutsHelp(true);
  main.settle();
  main.find<QDialog>("shortcutsHelp").reject();
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
  auto& columns = main.find<QSplitter>("columns");
  const QList<int> before = columns.sizes();
  auto& kits = main.find("kitList");
  kits.setFocus();
  main.window.resize(900, 600);
  main.settle();
  EXPECT_EQ(main.window.width(), 900);
  EXPECT_FALSE(kits.isVisible());
  EXPECT_EQ(main.focus(), "padGrid");
  main.content.setKitListShown(true);
  main.settle();
  EXPECT_EQ(main.focus(), "kitList");
  EXPECT_EQ(columns.sizes()[0] + columns.sizes()[1] + columns.sizes()[2] + 2, 900) << "none is pushed out";
  EXPECT_LT(main.find("sampleColumn").geometry().right(), 900);
  main.window.resize(1200, 800);
  main.settle();
  EXPECT_EQ(columns.sizes(), before);
  main.click("kitListButton");
  EXPECT_FALSE(kits.isVisible());
  main.window.resize(2560, 1400);
  main.click("kitListButton");
  EXPECT_EQ(columns.sizes()[1], 900) << "what a wide window has more goes to the samples";
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
