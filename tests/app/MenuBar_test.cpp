#include "app/MenuBar.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QSignalSpy>

#include "app/StoreUndoKeys.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

/// The main window with its menu bar, as the program has it.
struct Program : MainWindow {
  MenuBar& menus;
  StoreUndoKeys keys;

  Program() : menus(*new MenuBar(store.library)), keys(store.library.undoManager()) { window.setMenuBar(&menus); }
  QAction& row(const char* name) { return *menus.findChild<QAction*>(QString::fromLatin1(name)); }
  std::string enabledRows() {
    std::string rows;
    for (const char* name :
         {"newKit", "save", "undo", "redo", "copySound", "pasteSound", "goToKit1", "goToKit3", "goToKit4", "goToKit9",
          "preferences", "keyboardShortcuts", "checkForUpdates", "about", "quit"}) {
      if (row(name).isEnabled()) rows += std::string(rows.empty() ? "" : " ") + name;
    }
    return rows;
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
    QTest::keyClick(&window, key, modifiers);
  }
};

TEST(MenuBar, RowsFollowTheStoreAtOnce) {
  Program program;
  RolandLibrary& library = program.store.library;
  program.show();
  const std::string always = " preferences keyboardShortcuts checkForUpdates about quit";
  const std::string kits = " goToKit1 goToKit3" + always;
  EXPECT_EQ(program.enabledRows(), "newKit" + always);
  program.store.open();
  EXPECT_EQ(program.enabledRows(), "newKit" + kits);
  library.setSelectedKitSlot(1);
  EXPECT_EQ(program.enabledRows(), "newKit copySound" + kits);
  library.setSelectedPadIndex(5);  // holds no sound
  EXPECT_EQ(program.enabledRows(), "newKit" + kits);
  library.setCopiedWaveIndex(205);
  EXPECT_EQ(program.enabledRows(), "newKit pasteSound" + kits);
  library.setSelectedKitSlot(std::nullopt);
  EXPECT_EQ(program.enabledRows(), "newKit" + kits);
  library.setKitLevel(1, 12);
  EXPECT_EQ(program.enabledRows(), "newKit save undo" + kits);
  library.undoManager().undo();
  EXPECT_EQ(program.enabledRows(), "newKit save redo" + kits);
  library.createBlankKit();
  EXPECT_EQ(program.enabledRows(), "newKit save redo goToKit1 goToKit3 goToKit4" + always);
}

TEST(MenuBar, UndoAndRedoNameTheirStep) {
  Program program;
  program.showCard();
  const auto texts = [&] { return program.row("undo").text() + QLatin1Char('|') + program.row("redo").text(); };
  EXPECT_EQ(texts(), QStringLiteral("Undo|Redo"));
  program.store.turn([&] { program.store.library.setKitLevel(1, 12); });
  program.store.turn([&] { program.store.library.setPadLevel(1, 0, 12); });
  EXPECT_EQ(texts(), QStringLiteral("Undo Pad Change|Redo"));
  program.press(Qt::Key_Z);
  EXPECT_EQ(texts(), QStringLiteral("Undo Kit Change|Redo Pad Change"));
  program.press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(texts(), QStringLiteral("Undo Pad Change|Redo"));
}

TEST(MenuBar, UndoReachesTheStoreFromATextFieldAndNeverTheField) {
  Program program;
  program.showCard();
  auto* field = new QLineEdit(&program.find("workspace"));
  field->show();
  field->setFocus();
  program.settle();
  const auto level = [&] { return program.store.library.kit(1)->level(); };
  const auto before = level();
  program.store.turn([&] { program.store.library.setKitLevel(1, 12); });
  QTest::keyClicks(field, QStringLiteral("abc"));
  QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(level(), before);
  QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier);  // nothing is left to undo
  EXPECT_EQ(field->text(), QStringLiteral("abc"));
  QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(level(), 12);
  EXPECT_EQ(field->text(), QStringLiteral("abc"));
}

TEST(MenuBar, CommandSHasOneOwner) {
  Program program;
  program.showCard();
  EXPECT_EQ(program.row("save").text(), QStringLiteral("Save to SPD-SX\tCtrl+S")) << "the row shows the key";
  EXPECT_TRUE(program.row("save").shortcut().isEmpty()) << "and the button owns it";
  program.store.library.setKitLevel(1, 12);
  program.swapCard();
  program.pressSave();
  EXPECT_EQ(program.store.jobs.waiting(), 1U);
  program.store.jobs.runAll();
  EXPECT_EQ(program.prompts.alerts.size(), 1U) << "the button's path reports";
}

TEST(MenuBar, SaveRowByHandDropsFailuresAndWaitsBehindASave) {
  Program program;
  program.showCard();
  RolandLibrary& library = program.store.library;
  library.setKitLevel(1, 12);
  program.row("save").trigger();
  EXPECT_TRUE(program.row("save").isEnabled()) << "only what is unsaved counts";
  library.setKitLevel(2, 34);
  program.row("save").trigger();
  program.store.jobs.runAll();
  EXPECT_FALSE(library.hasUnsavedChanges()) << "the second save followed the first";

  library.setKitLevel(1, 56);
  program.swapCard();
  program.row("save").trigger();
  program.store.jobs.runAll();
  EXPECT_TRUE(library.hasUnsavedChanges());
  EXPECT_TRUE(program.prompts.alerts.empty());
}

TEST(MenuBar, GoToKitCountsExistingKitsInSlotOrder) {
  Program program;
  program.showCard();
  program.press(Qt::Key_3);
  EXPECT_EQ(program.store.library.selectedKitSlot(), 4) << "kits 1, 2 and 4";
  program.press(Qt::Key_1);
  EXPECT_EQ(program.store.library.selectedKitSlot(), 1);
  program.press(Qt::Key_4);
  EXPECT_EQ(program.store.library.selectedKitSlot(), 1) << "there is no fourth";
}

TEST(MenuBar, ACopiedSoundCanBePastedManyTimes) {
  Program program;
  program.showCard();
  RolandLibrary& library = program.store.library;
  library.setSelectedKitSlot(1);
  program.row("copySound").trigger();
  EXPECT_EQ(library.copiedWaveIndex(), 205);
  library.setSelectedKitSlot(2);
  for (const int pad : {1, 2}) {
    library.setSelectedPadIndex(pad);
    program.row("pasteSound").trigger();
    ASSERT_NE(library.selectedWave(), nullptr);
    EXPECT_EQ(library.selectedWave()->id(), 205);
  }
}

TEST(MenuBar, KeysForHelpPreferencesAndCards) {
  Program program;
  program.showCard();
  for (const auto& [key, modifier] : {std::pair(Qt::Key_Slash, Qt::ControlModifier), {Qt::Key_F1, Qt::NoModifier}}) {
    program.store.library.setShowingShortcutsHelp(false);
    program.settle();
    program.press(key, modifier);
    EXPECT_TRUE(program.store.library.showingShortcutsHelp()) << key;
  }
  program.store.library.setShowingShortcutsHelp(false);
  program.settle();
  QSignalSpy preferences(&program.menus, &MenuBar::preferencesRequested);
  program.press(Qt::Key_Comma);
  EXPECT_EQ(preferences.count(), 1);
  program.press(Qt::Key_O);
  EXPECT_EQ(program.store.panel.open(), 1U);
}

}  // namespace
}  // namespace tamboro::test
