#include "app/MenuBar.h"

#include <gtest/gtest.h>

#include "app/StoreUndoKeys.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

/// The main window with its menu bar, as the program has it.
struct MenuBarTest : testing::Test, MainWindow {
  MenuBar& menus = *new MenuBar(library);
  StoreUndoKeys keys{library.undoManager()};

  MenuBarTest() { window.setMenuBar(&menus); }
  QAction& row(const char* name) { return *menus.findChild<QAction*>(QString::fromLatin1(name)); }
  std::string enabledRows() {
    std::string rows;
    for (const char* name : {"newKit", "save", "undo", "redo", "copySound", "pasteSound", "goToKit3", "goToKit4"})
      if (row(name).isEnabled()) rows += std::string(" ") + name;
    return rows;
  }
};

TEST_F(MenuBarTest, RowsFollowTheStoreAtOnce) {
  show();
  EXPECT_EQ(enabledRows(), " newKit");
  store.open();
  const std::pair<std::function<void()>, const char*> steps[] = {
      {[&] { library.setSelectedKitSlot(1); }, " newKit copySound goToKit3"},
      {[&] { library.setSelectedPadIndex(5); }, " newKit goToKit3"},  // it holds no sound
      {[&] { library.setCopiedWaveIndex(205); }, " newKit pasteSound goToKit3"},
      {[&] { library.setSelectedKitSlot(std::nullopt); }, " newKit goToKit3"},
      {[&] { library.setKitLevel(1, 12); }, " newKit save undo goToKit3"},
      {[&] { library.undoManager().undo(); }, " newKit save redo goToKit3"},
      {[&] { library.createBlankKit(); }, " newKit save redo goToKit3 goToKit4"}};
  for (const auto& [step, enabled] : steps) {
    step();
    EXPECT_EQ(enabledRows(), enabled);
  }
}

TEST_F(MenuBarTest, UndoNamesItsStepAndReachesTheStoreFromATextFieldAndNeverTheField) {
  showCard();
  const auto texts = [&] { return row("undo").text() + QLatin1Char('|') + row("redo").text(); };
  store.turn([&] { library.setKitLevel(1, 12); });
  store.turn([&] { library.setPadLevel(1, 0, 12); });
  EXPECT_EQ(texts(), q("Undo Pad Change|Redo"));
  auto& field = find<QLineEdit>("waveSearchText");
  field.setFocus();
  QTest::keyClicks(&field, q("abc"));
  key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(texts(), q("Undo Kit Change|Redo Pad Change"));
  key(Qt::Key_Z, Qt::ControlModifier);
  key(Qt::Key_Z, Qt::ControlModifier);  // nothing is left to undo
  EXPECT_EQ(library.kit(1)->level(), 80);
  EXPECT_EQ(field.text(), q("abc"));
  key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(library.kit(1)->level(), 12);
  EXPECT_EQ(field.text(), q("abc"));
}

TEST_F(MenuBarTest, TheKeyThatSavesHasOneOwnerWhichReports) {
  showCard();
  EXPECT_EQ(row("save").text(), q("Save to SPD-SX\tCtrl+S")) << "the row shows the key";
  library.setKitLevel(1, 12);
  swapCard();
  row("save").trigger();
  store.jobs.runAll();
  EXPECT_TRUE(prompts.alerts.empty()) << "the row by hand drops failures";
  pressSave();
  EXPECT_EQ(store.jobs.waiting(), 1U);
  store.jobs.runAll();
  EXPECT_EQ(prompts.alerts.size(), 1U);
}

TEST_F(MenuBarTest, KeysGoToKitsHelpAndCards) {
  showCard();
  for (const Qt::Key kit : {Qt::Key_3, Qt::Key_4}) {
    key(kit, Qt::ControlModifier);
    EXPECT_EQ(library.selectedKitSlot(), 4) << "kits 1, 2 and 4 exist, and no fourth";
  }
  key(Qt::Key_O, Qt::ControlModifier);
  EXPECT_EQ(store.panel.open(), 1U);
  key(Qt::Key_F1);
  EXPECT_TRUE(library.showingShortcutsHelp());
}

}  // namespace
}  // namespace tamboro::test
