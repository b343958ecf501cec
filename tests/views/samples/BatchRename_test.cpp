#include "views/samples/BatchRename.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPushButton>

#include "views/controls/Stepper.h"
#include "views/look/Look.h"
#include "views/samples/BatchRenameSheet.h"
#include "views/samples/RenamePreview.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

using ::testing::ElementsAre;

std::vector<Wave> waves(const std::vector<std::pair<WaveId, std::string>>& names) {
  std::vector<Wave> all;
  for (const auto& [id, name] : names)
    all.push_back({id / 100, id % 100, newWaveNode(name, 0, "")});
  return all;
}

TEST(BatchRename, SortsByPresentNamesAndNumbersFromTheStart) {
  const auto rows = renameRows(waves({{201, "B"}, {202, "A"}, {203, "C"}, {204, "a"}, {205, "A"}, {206, "x"}}),
                               {205, 204, 203, 202, 201, 999});
  EXPECT_EQ(rows, (std::vector<RenameRow>{{202, "A"}, {205, "A"}, {201, "B"}, {203, "C"}, {204, "a"}}));
  const RenamePattern pattern{QStringLiteral(" Long snare name "), 9998};
  EXPECT_EQ(pattern.newName(0), QStringLiteral(" Long snare name  9998"));
  EXPECT_EQ(pattern.newName(9'999), QStringLiteral(" Long snare name  19997"));
  EXPECT_TRUE(pattern.isUsable());
  EXPECT_FALSE(RenamePattern{QStringLiteral(" \t ")}.isUsable());
}

/// The sheet over the small card's samples: 1 Factory, 205 Kick, 206 Snare, 207 Tom.
struct Renaming {
  TestStore store;
  QWidget window;
  QPointer<BatchRenameSheet> sheet;
  std::optional<std::set<WaveId>> selection;

  explicit Renaming(std::vector<WaveId> ids, const Tree& card = sampleCard()) {
    store.open(card);
    sheet = new BatchRenameSheet(
        store.library, std::move(ids), [this](std::set<WaveId> now) { selection = std::move(now); }, &window);
    window.show();
    sheet->open();
    MainWindow::settle();
  }
  template<class Kind = QWidget>
  Kind& find(const char* name) {
    return *sheet->findChild<Kind*>(QString::fromLatin1(name));
  }
  QPushButton& button() { return find<QPushButton>("renameButton"); }
  void type(const char* pattern) {
    auto& field = find<QLineEdit>("namePattern");
    field.selectAll();
    QTest::keyClicks(&field, QString::fromUtf8(pattern));
  }
  std::vector<std::string> preview() {
    std::vector<std::string> lines;
    const QAbstractItemModel& rows = *find<RenamePreview>("renamePreview").model();
    for (int row = 0; row < rows.rowCount(); ++row)
      lines.push_back(rows.index(row, 0).data(Qt::AccessibleTextRole).toString().toStdString());
    return lines;
  }
  std::vector<std::string> names() const {
    std::vector<std::string> all;
    for (const Wave& wave : store.library.waves())
      all.push_back(wave.name());
    return all;
  }
};

TEST(BatchRenameSheet, ShowsThenRenamesAllInOneStep) {
  Renaming renaming({207, 206, 205});
  EXPECT_EQ(renaming.find<QLabel>("sheetTitle").text(), QStringLiteral("Rename 3 Sounds"));
  EXPECT_THAT(renaming.preview(), ElementsAre("Kick becomes Name 1", "Snare becomes Name 2", "Tom becomes Name 3"));
  renaming.type("Kick");
  QTest::keyClick(&renaming.find<Stepper>("startNumber"), Qt::Key_Up);
  renaming.type("Drum and bass");
  EXPECT_THAT(renaming.preview(), ElementsAre("Kick becomes Drum and bass 2", "Snare becomes Drum and bass 3",
                                              "Tom becomes Drum and bass 4"));
  renaming.type("Tom");
  EXPECT_FALSE(renaming.store.library.hasUnsavedChanges());
  renaming.store.turn([&] { QTest::keyClick(&renaming.find<QLineEdit>("namePattern"), Qt::Key_Return); });
  EXPECT_THAT(renaming.names(), ElementsAre("Factory", "Tom 2", "Tom 3", "Tom 4"));
  EXPECT_EQ(renaming.selection, std::set<WaveId>{});
  renaming.store.library.undoManager().undo();
  EXPECT_THAT(renaming.names(), ElementsAre("Factory", "Kick", "Snare", "Tom"));
  EXPECT_FALSE(renaming.store.library.undoManager().canUndo());
  MainWindow::settle();
  EXPECT_FALSE(renaming.sheet && renaming.sheet->isVisible());
}

TEST(BatchRenameSheet, BlanksNameNothingAndCancelChangesNothing) {
  Renaming renaming({205, 206});
  renaming.type("  ");
  EXPECT_FALSE(renaming.button().isEnabled());
  QTest::keyClick(&renaming.find<QLineEdit>("namePattern"), Qt::Key_Return);
  EXPECT_TRUE(renaming.sheet->isVisible());
  renaming.type(" x");
  EXPECT_TRUE(renaming.button().isEnabled());
  renaming.find<QPushButton>("cancelButton").click();
  EXPECT_FALSE(renaming.store.library.hasUnsavedChanges());
  EXPECT_EQ(renaming.selection, std::nullopt);
}

TEST(BatchRenameSheet, FollowsTheStore) {
  Renaming renaming({205, 206, 207});
  renaming.type("New");
  renaming.store.library.deleteWave(206);
  renaming.store.library.setWaveName(205, "Zz");
  MainWindow::settle();
  EXPECT_EQ(renaming.find<QLabel>("sheetTitle").text(), QStringLiteral("Rename 2 Sounds"));
  EXPECT_THAT(renaming.preview(), ElementsAre("Tom becomes New 1", "Zz becomes New 2"));
}

TEST(BatchRenameSheet, ManyRowsAreNoWidgets) {
  Renaming few({205, 206});
  Tree card = sampleCard();
  std::vector<WaveId> ids;
  for (WaveId id = 300; id < 2'300; ++id) {
    char file[32];
    std::snprintf(file, sizeof file, "WAVE/PRM/%02d/%02d.spd", static_cast<int>(id / 100), static_cast<int>(id % 100));
    card[file] = card.at("WAVE/PRM/02/05.spd");
    ids.push_back(id);
  }
  Renaming many(ids, card);
  EXPECT_EQ(many.preview().back(), "Kick becomes Name 2000");
  EXPECT_EQ(many.sheet->findChildren<QWidget*>().size(), few.sheet->findChildren<QWidget*>().size());
  EXPECT_EQ(many.find("renamePreview").height(), Look::px(160));
  EXPECT_LT(few.find("renamePreview").height(), Look::px(80));
}

}  // namespace
}  // namespace tamboro::test
