#include "views/window/ContentView.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>

#include "platform/FolderBookmark.h"
#include "views/window/MainWindow.h"
#include "views/window/NoticeStack.h"

namespace tamboro::test {
namespace {

std::string middleTitle(MainWindow& main) {
  auto& name = main.find<QLineEdit>("kitName");
  if (name.isVisible()) return name.text().toStdString();
  for (QLabel* title : main.find("kitEditorColumn").findChildren<QLabel*>()) {
    if (title->isVisible()) return title->text().toStdString();
  }
  return {};
}

void remember(MainWindow& main, std::optional<std::int64_t> slot) {
  main.store.mountCard("fat:1234-ABCD", sampleCard());
  main.store.defaults.setBytes(RolandLibrary::bookmarkKey, *makeBookmark("/media/card"));
  if (slot) main.store.defaults.setInteger(ContentView::lastKitSlotKey, *slot);
}

TEST(ContentView, ShowsWelcomeUntilACardOpens) {
  MainWindow main;
  main.show();
  EXPECT_TRUE(main.find("welcomeView").isVisible());
  EXPECT_FALSE(main.find("workspace").isVisible());
  EXPECT_FALSE(main.find("welcomeError").isVisible());
  EXPECT_EQ(main.window.windowTitle(), QStringLiteral("Tamboro"));
  main.store.library.openDroppedFolder("/home");
  main.settle();
  EXPECT_EQ(main.text("welcomeError"), main.store.library.lastError()->toStdString());
  EXPECT_TRUE(main.find("welcomeError").isVisible());
  QTest::mouseClick(&main.find("chooseFolderButton"), Qt::LeftButton);
  EXPECT_EQ(main.store.panel.requests.size(), 1U);
  main.store.open();
  main.settle();
  EXPECT_FALSE(main.find("welcomeView").isVisible());
  EXPECT_TRUE(main.find("workspace").isVisible());
}

TEST(ContentView, RestoresCardAndKitWhenItFirstAppears) {
  struct Case {
    std::optional<std::int64_t> remembered;
    std::int64_t selected;
    std::string title;
  };
  // Without a remembered kit the list selects its first one.
  for (const Case& c : {Case{2, 2, "Jazz"}, Case{77, 77, "Select a Kit"}, Case{std::nullopt, 1, "Rock"}}) {
    MainWindow main;
    remember(main, c.remembered);
    main.settle();
    EXPECT_FALSE(main.store.library.isLoaded()) << "before the window is there";
    main.show();
    EXPECT_TRUE(main.store.library.isLoaded());
    EXPECT_EQ(main.store.library.selectedKitSlot(), c.selected);
    EXPECT_EQ(middleTitle(main), c.title);
    // Once only: a window that comes back keeps what was selected since.
    main.store.library.setSelectedKitSlot(std::nullopt);
    main.window.hide();
    main.show();
    EXPECT_EQ(main.store.library.selectedKitSlot(), std::nullopt);
  }
}

TEST(ContentView, StartKeepsASelectionAndPassesOverAnotherKind) {
  MainWindow selected;
  remember(selected, 2);
  selected.store.library.setSelectedKitSlot(4);
  selected.store.defaults.setInteger(ContentView::lastKitSlotKey, 2);
  selected.show();
  EXPECT_EQ(selected.store.library.selectedKitSlot(), 4);

  MainWindow text;
  remember(text, std::nullopt);
  text.store.defaults.setText(ContentView::lastKitSlotKey, QStringLiteral("2"));
  text.show();
  EXPECT_EQ(text.store.library.selectedKitSlot(), 1) << "the list's own first selection";
}

TEST(ContentView, RemembersTheLastRealKit) {
  MainWindow main;
  main.showCard();
  main.store.library.setSelectedKitSlot(4);
  EXPECT_EQ(main.store.defaults.integer(ContentView::lastKitSlotKey), 4);
  main.store.library.setSelectedKitSlot(std::nullopt);
  main.settle();
  EXPECT_EQ(main.store.defaults.integer(ContentView::lastKitSlotKey), 4);
}

TEST(ContentView, MiddleFollowsTheSelectedKit) {
  MainWindow main;
  main.showCard();
  main.store.library.setSelectedKitSlot(1);
  main.settle();
  EXPECT_EQ(middleTitle(main), "Rock");
  main.store.library.setKitName(1, "");
  main.settle();
  EXPECT_EQ(middleTitle(main), "");
  main.store.library.deleteKit(1);
  main.settle();
  EXPECT_EQ(middleTitle(main), "Select a Kit");
}

TEST(ContentView, StatusLineCountsAndTellsOfChanges) {
  MainWindow main;
  main.showCard();
  EXPECT_EQ(main.text("kitCount"), "3 kits");
  EXPECT_EQ(main.text("sampleCount"), "4 samples");
  EXPECT_FALSE(main.find("unsavedMark").isVisible());
  main.store.library.deleteKit(1);
  main.store.library.deleteKit(2);
  for (const int id : {205, 206, 207})
    main.store.library.deleteWave(id);
  main.settle();
  EXPECT_EQ(main.text("kitCount"), "1 kit");
  EXPECT_EQ(main.text("sampleCount"), "1 sample");
  EXPECT_TRUE(main.find("unsavedMark").isVisible());
  main.store.library.deleteKit(4);
  main.settle();
  EXPECT_EQ(main.text("kitCount"), "0 kits");
}

TEST(ContentView, SaveButtonShowsEachState) {
  MainWindow main;
  main.showCard();
  auto& button = main.find<QPushButton>("saveButton");
  const int width = button.width();
  const auto expect = [&](const char* text, bool enabled, const char* help) {
    main.settle();
    EXPECT_EQ(button.text(), QString::fromUtf8(text));
    EXPECT_EQ(button.isEnabled(), enabled);
    EXPECT_EQ(button.toolTip(), QString::fromUtf8(help));
    EXPECT_EQ(button.width(), width) << text;
    EXPECT_EQ(button.accessibleName(), QStringLiteral("Save"));
  };
  expect("Save", false, "No changes to save");
  main.store.library.setKitLevel(1, 12);
  expect("Save ●", true, "Save changes to the SPD-SX card (⌘S)");
#ifndef Q_OS_MACOS
  EXPECT_EQ(button.accessibleDescription(), QStringLiteral("Save changes to the SPD-SX card (Ctrl+S)"));
#endif
  QTest::mouseClick(&button, Qt::LeftButton);
  expect("", false, "Save changes to the SPD-SX card (⌘S)");
  main.store.jobs.runAll();
  expect("Save", false, "No changes to save");
}

TEST(ContentView, CommandSReachesSaveFromATextFieldAndRightAfterAnEdit) {
  MainWindow main;
  main.showCard();
  auto* field = new QLineEdit(&main.find("workspace"));
  field->show();
  field->setFocus();
  main.settle();
  main.store.library.setKitLevel(1, 12);  // no event is delivered between the edit and the key
  QTest::keyClick(field, Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(main.store.jobs.waiting(), 1U);
  EXPECT_EQ(field->text(), QString());
}

TEST(ContentView, CommandSRestsDuringASave) {
  MainWindow main;
  main.showCard();
  main.store.library.setKitLevel(1, 12);
  main.pressSave();
  main.store.library.setKitLevel(2, 34);
  main.pressSave();
  QTest::mouseClick(&main.find("saveButton"), Qt::LeftButton);
  main.store.jobs.runAll();
  EXPECT_TRUE(main.store.library.hasUnsavedChanges()) << "a second save was waiting";
  EXPECT_FALSE(main.store.library.kit(1)->isDirty);
  main.pressSave();
  main.store.jobs.runAll();
  EXPECT_FALSE(main.store.library.hasUnsavedChanges());
  main.pressSave();
  EXPECT_EQ(main.store.jobs.waiting(), 0U) << "nothing is left to save";
}

TEST(ContentView, TellsOfAFailedSaveOnce) {
  MainWindow main;
  main.showCard();
  main.store.library.setKitLevel(1, 12);
  main.swapCard();
  main.pressSave();
  main.store.jobs.runAll();
  ASSERT_EQ(main.prompts.alerts.size(), 1U);
  const Alert alert = main.prompts.alerts.front().first;
  EXPECT_EQ(alert.title, QStringLiteral("Couldn't Save"));
  EXPECT_FALSE(alert.text.isEmpty());
  EXPECT_EQ(main.content.showingExportError(), alert.text);
  ASSERT_EQ(alert.buttons.size(), 1U);
  EXPECT_EQ(alert.buttons[0].title, QStringLiteral("OK"));
  main.prompts.press(0);
  EXPECT_EQ(main.content.showingExportError(), std::nullopt);
  EXPECT_TRUE(main.find("saveButton").isEnabled()) << "the edits wait for another try";
}

TEST(ContentView, AsksWhoseChangesStayWhereOthersHaveChangedTheCard) {
  const std::size_t readAgain = 1;
  const std::size_t saveAnyway = 2;
  for (const std::size_t button : {std::size_t{0}, readAgain, saveAnyway}) {
    MainWindow main;
    main.showCard();
    main.store.library.setKitLevel(1, 12);
    const std::string theirs = replaced(main.store.card().at("KIT/kit001.spd"), "<Level>80<", "<Level>55<");
    writeFile(main.store.files, TestStore::root / "KIT/kit001.spd", theirs);
    main.pressSave();
    main.store.jobs.runAll();
    ASSERT_EQ(main.prompts.alerts.size(), 1U);
    const Alert alert = main.prompts.alerts.front().first;
    EXPECT_EQ(alert.title, QStringLiteral("Couldn't Save"));
    EXPECT_TRUE(alert.text.startsWith(
        QStringLiteral("The instrument or another program has changed 1 file since the card was read.")));
    ASSERT_EQ(alert.buttons.size(), 3U);
    EXPECT_EQ(alert.buttons[readAgain].title, QStringLiteral("Read Again"));
    EXPECT_EQ(alert.buttons[saveAnyway].title, QStringLiteral("Save Anyway"));
    main.prompts.press(button);
    main.store.jobs.runAll();
    EXPECT_EQ(main.store.library.kit(1)->level(), button == readAgain ? 55 : 12);
    EXPECT_EQ(main.store.library.hasUnsavedChanges(), button == 0);
    EXPECT_EQ(main.store.card().at("KIT/kit001.spd") == theirs, button != saveAnyway);
  }
}

TEST(ContentView, TellsOverTheOpenCardWhyAnotherDidNotOpen) {
  MainWindow main;
  main.show();
  main.store.library.openDroppedFolder("/home");
  main.store.open();
  main.settle();
  EXPECT_EQ(main.text("cardLocation"), "/media/card/Roland/SPD-SX");
  auto& notices = main.find<NoticeStack>("notices");
  EXPECT_FALSE(notices.isVisible()) << "the welcome screen told it";
  main.store.library.openDroppedFolder("/home");
  main.settle();
  EXPECT_TRUE(main.find("workspace").isVisible());
  EXPECT_EQ(main.text("noticeText"), main.store.library.lastError()->toStdString());
  EXPECT_TRUE(notices.isVisible());
  main.store.open();
  main.settle();
  EXPECT_FALSE(notices.isVisible());
  main.store.library.openDroppedFolder("/home");
  main.settle();
  QTest::mouseClick(&main.find("closeNoticeButton"), Qt::LeftButton);
  EXPECT_FALSE(notices.isVisible());
}

/// Two notices, the first replaced, with an action each.
TEST(NoticeStack, StandsInItsOrderInTheTabOrderToo) {
  MainWindow main;
  main.showCard();
  auto& notices = main.find<NoticeStack>("notices");
  std::string ran;
  const auto notice = [&](const QString& text) {
    return Notice{.text = text, .actions = {{text, [&ran, text] { ran += text.toStdString(); }}}};
  };
  notices.put(QStringLiteral("first"), notice(QStringLiteral("A")));
  notices.put(QStringLiteral("second"), notice(QStringLiteral("B")));
  notices.put(QStringLiteral("first"), notice(QStringLiteral("C")));
  main.settle();
  main.find("tagsButton").setFocus();
  QStringList reached;
  for (int step = 0; step < 5; ++step) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    auto* button = qobject_cast<QPushButton*>(QApplication::focusWidget());
    reached << (button ? button->text() : QStringLiteral("-"));
  }
  EXPECT_EQ(reached.mid(0, 4), (QStringList{QStringLiteral("C"), {}, QStringLiteral("B"), {}}));
  EXPECT_TRUE(main.find("kitColumn").isAncestorOf(QApplication::focusWidget()));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
  EXPECT_FALSE(notices.holds(QStringLiteral("second")));
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QTest::mouseClick(&main.find("noticeAction0"), Qt::LeftButton);
  EXPECT_EQ(ran, "C");
  EXPECT_FALSE(notices.isVisible());
}

TEST(ContentView, SheetsComeAndGoWithTheirProperties) {
  MainWindow main;
  main.showCard();
  QTest::keyClick(&main.window, Qt::Key_T, Qt::ControlModifier);
  EXPECT_TRUE(main.content.showingTagEditor());
  QTest::keyClick(&main.find<QDialog>("tagEditor"), Qt::Key_Escape);
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(main.content.showingTagEditor());

  main.store.library.setShowingShortcutsHelp(true);
  main.settle();
  QTest::mouseClick(main.find<QDialog>("shortcutsHelp").findChild<QPushButton*>(), Qt::LeftButton);
  EXPECT_FALSE(main.store.library.showingShortcutsHelp());
  main.store.library.setShowingShortcutsHelp(true);
  main.settle();
  EXPECT_TRUE(main.find<QDialog>("shortcutsHelp").isVisible()) << "it opens a second time";
}

TEST(ContentView, ColumnsAreReadFromKitsToSamples) {
  MainWindow main;
  main.showCard();
  QAccessibleInterface* columns = QAccessible::queryAccessibleInterface(&main.find("columns"));
  QStringList names;
  for (int child = 0; child < columns->childCount(); ++child)
    names << columns->child(child)->text(QAccessible::Name);
  EXPECT_EQ(names.mid(0, 3),
            (QStringList{QStringLiteral("Kits"), QStringLiteral("Kit"), QStringLiteral("Sample Library")}));
}

TEST(ContentView, SidebarGivesWayInANarrowWindow) {
  MainWindow main;
  main.showCard();
  auto& columns = main.find<QSplitter>("columns");
  const QList<int> before = columns.sizes();
  EXPECT_EQ(before, (QList<int>{204, 568, 426}));
  auto& kits = main.find("kitList");
  kits.setFocus();
  main.window.resize(900, 600);
  main.settle();
  EXPECT_EQ(main.window.width(), 900);
  EXPECT_FALSE(kits.isVisible());
  EXPECT_EQ(main.window.focusWidget(), &main.find("padGrid"));
  main.content.setKitListShown(true);
  main.settle();
  EXPECT_EQ(main.window.focusWidget(), &kits);
  EXPECT_EQ(columns.sizes()[0] + columns.sizes()[1] + columns.sizes()[2] + 2, 900) << "none is pushed out";
  EXPECT_GE(columns.sizes()[0], 190);
  EXPECT_GE(columns.sizes()[2], 396);
  main.window.resize(1200, 800);
  main.settle();
  EXPECT_EQ(columns.sizes(), before);
  main.content.setKitListShown(false);
  EXPECT_FALSE(kits.isVisible());
  main.find<QPushButton>("kitListButton").click();
  EXPECT_TRUE(kits.isVisible());
}

TEST(ContentView, WhatAWideWindowHasMoreGoesToTheSamples) {
  MainWindow main;
  main.showCard();
  main.window.resize(2560, 1400);
  main.settle();
  EXPECT_EQ(main.find<QSplitter>("columns").sizes(), (QList<int>{204, 900, 2560 - 2 - 204 - 900}));
}

TEST(ContentView, KeysLeadToTheColumnsAndTheirSearchFields) {
  MainWindow main;
  main.showCard();
  const auto focus = [&] { return main.window.focusWidget()->objectName().toStdString(); };
  const auto search = [&] {
    main.content.search();
    return focus();
  };
  const auto walk = [&](int step) {
    main.content.walkColumns(step);
    return focus();
  };
  EXPECT_EQ(focus(), "padGrid");
  EXPECT_EQ(search(), "waveSearchText");
  EXPECT_EQ(walk(-1), "padGrid");
  EXPECT_EQ(walk(-1), "kitList");
  EXPECT_EQ(search(), "kitSearchText");
  EXPECT_EQ(walk(-1), "waveList");
  EXPECT_EQ(walk(1), "kitList");
  main.content.setKitListShown(false);
  EXPECT_EQ(focus(), "padGrid") << "it left with the column";
  EXPECT_EQ(walk(-1), "waveList");
}

}  // namespace
}  // namespace tamboro::test
