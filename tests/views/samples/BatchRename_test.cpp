#include "views/samples/BatchRename.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPushButton>

#include "views/controls/Stepper.h"
#include "views/samples/BatchRenameSheet.h"
#include "views/samples/RenamePreview.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

using ::testing::ElementsAre;

TEST(BatchRename, SortsByPresentNamesAndNumbersFromTheStart) {
  std::vector<Wave> waves;
  for (const auto& [slot, name] : {std::pair{1, "B"}, {2, "A"}, {4, "a"}, {5, "A"}, {6, "x"}})
    waves.push_back({2, slot, newWaveNode(name, 0, "")});
  EXPECT_EQ(renameRows(waves, {205, 204, 202, 201, 999}),
            (std::vector<RenameRow>{{202, "A"}, {205, "A"}, {201, "B"}, {204, "a"}}));
  const RenamePattern pattern{q(" Long snare name "), 9998};
  EXPECT_EQ(pattern.newName(9'999), q(" Long snare name  19997"));
  EXPECT_TRUE(pattern.isUsable());
  EXPECT_FALSE(RenamePattern{q(" \t ")}.isUsable());
}

/// The sheet over the small card's Kick 205, Snare 206 and Tom 207.
struct Renaming : ::testing::Test {
  TestStore store;
  QWidget window;
  QPointer<BatchRenameSheet> sheet;
  std::optional<std::set<WaveId>> selection;

  Renaming() {
    store.open();
    sheet = new BatchRenameSheet(
        store.library, {207, 206, 205}, [this](std::set<WaveId> now) { selection = std::move(now); }, &window);
    window.show();
    sheet->open();
    settle();
  }
  template<class Kind = QWidget>
  Kind& find(const char* name) {
    return *sheet->findChild<Kind*>(q(name));
  }
  void type(const char* pattern) {
    auto& field = find<QLineEdit>("namePattern");
    field.selectAll();
    QTest::keyClicks(&field, q(pattern));
  }
  std::vector<std::string> preview() {
    std::vector<std::string> lines;
    const QAbstractItemModel& rows = *find<RenamePreview>("renamePreview").model();
    for (int row = 0; row < rows.rowCount(); ++row)
      lines.push_back(rows.index(row, 0).data(Qt::AccessibleTextRole).toString().toStdString());
    return lines;
  }
};

TEST_F(Renaming, ShowsThenRenamesAllInOneStep) {
  EXPECT_EQ(find<QLabel>("sheetTitle").text(), q("Rename 3 Sounds"));
  QTest::keyClick(&find<Stepper>("startNumber"), Qt::Key_Up);
  type("Drum and bass");
  EXPECT_THAT(preview(), ElementsAre("Kick becomes Drum and bass 2", "Snare becomes Drum and bass 3",
                                     "Tom becomes Drum and bass 4"));
  store.library.deleteWave(206);
  store.library.setWaveName(205, "Zz");
  store.library.undoManager().endTurn();
  settle();
  type("New");
  EXPECT_THAT(preview(), ElementsAre("Tom becomes New 2", "Zz becomes New 3")) << "it follows the store";
  store.turn([&] { QTest::keyClick(&find<QLineEdit>("namePattern"), Qt::Key_Return); });
  EXPECT_EQ(store.library.wave(207)->name(), "New 2");
  EXPECT_EQ(store.library.wave(205)->name(), "New 3");
  EXPECT_EQ(selection, std::set<WaveId>{});
  store.library.undoManager().undo();
  EXPECT_EQ(store.library.wave(207)->name(), "Tom");
  EXPECT_EQ(store.library.wave(205)->name(), "Zz");
}

TEST_F(Renaming, BlanksNameNothingAndCancelChangesNothing) {
  type("  ");
  EXPECT_FALSE(find<QPushButton>("renameButton").isEnabled());
  QTest::keyClick(&find<QLineEdit>("namePattern"), Qt::Key_Return);
  EXPECT_TRUE(sheet->isVisible());
  type(" x");
  EXPECT_TRUE(find<QPushButton>("renameButton").isEnabled());
  find<QPushButton>("cancelButton").click();
  EXPECT_FALSE(store.library.hasUnsavedChanges());
  EXPECT_EQ(selection, std::nullopt);
}

}  // namespace
}  // namespace tamboro::test
