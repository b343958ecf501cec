#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "views/controls/MenuPicker.h"
#include "views/controls/Stepper.h"
#include "views/samples/RenamePreview.h"
#include "views/samples/WaveBrowserView.h"
#include "views/samples/WaveColumn.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The small card, whose Kick has a measure.
Tree loopCard() {
  Tree card = sampleCard();
  std::string& kick = card["WAVE/PRM/02/05.spd"];
  kick = replaced(kick, "<Tempo>900", "<Measure>0</Measure><Tempo>900");
  return card;
}

constexpr RowKey row(WaveId id) {
  return {0, id};
}

/// The sample list: Factory 1, Kick 205, Snare 206 and Tom 207 stand by name in that order.
struct WaveBrowser : ::testing::Test {
  MainWindow main;
  RolandLibrary& library = main.library;
  WaveBrowserView& view = main.find<WaveBrowserView>("waveBrowserView");
  ListInWindow sounds{main, main.find<RowList>("waveList"), "waveMenu"};

  WaveBrowser() { main.showCard(loopCard()); }
  void search(const char* text) {
    main.find<QLineEdit>("waveSearchText").setText(q(text));
    settle();
  }
  void filter(std::int64_t tag) {
    Q_EMIT main.find<MenuPicker>("waveTagFilter").chosen(tag);
    settle();
  }
  std::string caption() { return main.text("waveCount"); }
  QString cell(WaveId id, int column, int role = Qt::DisplayRole) const {
    return sounds.cell(row(id), column).data(role).toString();
  }
  void press(WaveId id, int column) { sounds.click(row(id), column); }
  void pick(WaveId id, Qt::KeyboardModifiers keys = {}) { sounds.click(row(id), waveColumn("name"), keys); }
};

TEST_F(WaveBrowser, FiltersByTextAndTagAndFollowsTheCard) {
  EXPECT_EQ(sounds.rows(), "1 205 206 207 ");
  search("KI");
  EXPECT_EQ(sounds.rows(), "205 ");
  EXPECT_EQ(caption(), "1 sounds");
  filter(1);
  EXPECT_TRUE(main.find("noWaves").isVisible());
  search("");
  filter(0);
  EXPECT_EQ(sounds.rows(), "1 205 ");
  library.setWaveTag(207, 0);
  library.setWaveTag(205, 1);
  library.setWaveName(1, "aaa");
  library.setTagName(0, "");
  settle();
  EXPECT_EQ(sounds.rows(), "207 1 ");
  EXPECT_EQ(cell(207, waveColumn("tag")), q("Tag 0"));
  EXPECT_EQ(main.shown("waveTagFilter"), q("Tag 0"));
}

TEST_F(WaveBrowser, SelectionOutlivesFilteringAndDeletion) {
  pick(205);
  EXPECT_FALSE(main.find("renameSelectedButton").isVisible());
  pick(207, Qt::ControlModifier);
  EXPECT_EQ(caption(), "2 selected");
  EXPECT_TRUE(main.find("renameSelectedButton").isVisible());
  search("snare");
  pick(206, Qt::ControlModifier);
  EXPECT_THAT(view.selection(), ElementsAre(205, 206, 207)) << "two of them hidden";
  search("");
  EXPECT_EQ(sounds.list.selectedKeys().size(), 3U) << "shown again, selected again";
  library.deleteWave(205);
  settle();
  EXPECT_EQ(caption(), "2 selected") << "what is gone is passed over";
  search("snare");
  pick(206);
  EXPECT_THAT(view.selection(), ElementsAre(206)) << "a plain click lets go of what is hidden";
}

TEST_F(WaveBrowser, CellsArePressedWithoutSelecting) {
  main.select(2);
  library.setSelectedPadIndex(1);
  settle();
  press(205, waveColumn("add"));
  EXPECT_EQ(library.kit(2)->pad(1)->wave(), 205);
  EXPECT_EQ(cell(205, waveColumn("add"), Qt::ToolTipRole), q("Assign to pad 2 in Jazz"));
  for (const char* rows : {"1 205 + 206 207 ", "1 205 206 207 "}) {
    press(205, waveColumn("loop"));
    EXPECT_EQ(sounds.rows(), rows);
  }
  EXPECT_THAT(view.selection(), IsEmpty());
  press(206, waveColumn("loop"));
  EXPECT_EQ(sounds.rows(), "1 205 206 207 ") << "without a measure there is no button";
  press(1, waveColumn("remove"));
  EXPECT_TRUE(main.prompts.alerts.empty()) << "a factory sample";
  EXPECT_THAT(view.selection(), ElementsAre(1)) << "where no control is, the row is clicked";
}

TEST_F(WaveBrowser, TheTagMenuBeginsAtTheTagAndChangesIt) {
  press(205, waveColumn("tag"));
  auto* menu = &main.find<QMenu>("waveTagMenu");
  EXPECT_EQ(entries(*menu), "Kick|Snare");
  ASSERT_NE(menu->activeAction(), nullptr);
  EXPECT_EQ(menu->activeAction()->text(), q("Kick"));
  MainWindow::choose(*menu, "Snare");
  EXPECT_EQ(library.wave(205)->tag(), 1);

  Tree card = sampleCard();
  std::string& tags = card["SYSTEM/tag_list.spd"] = "<TagList>";
  for (int tag = 0; tag < 1200; ++tag)
    tags += "<TagPrm/>";
  tags += "</TagList>";
  main.store.open(card);
  settle();
  press(207, waveColumn("tag"));
  menu = &main.find<QMenu>("waveTagMenu");
  EXPECT_EQ(entries(*menu), "0 – 499|500 – 999|1000 – 1199") << "a long list would hold up the window";
  QMenu& part = *menu->actions().back()->menu();
  Q_EMIT part.aboutToShow();
  MainWindow::choose(part, "Tag 1100");
  EXPECT_EQ(library.wave(207)->tag(), 1100);
}

TEST_F(WaveBrowser, ActsOnItsRowByKeysAndByMenu) {
  main.select(2);
  pick(205);
  sounds.key(Qt::Key_Return);
  EXPECT_EQ(library.kit(2)->pad(0)->wave(), 205);
  sounds.key(Qt::Key_F2);
  auto* field = &main.find<QLineEdit>("waveNameField");
  QTest::keyClicks(field, q("Zebra crossing"));
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(library.wave(205)->name(), "Zebra crossi");
  sounds.doubleClick(row(206), waveColumn("number"));
  sounds.doubleClick(row(206), waveColumn("name"));
  EXPECT_EQ(main.find<QLineEdit>("waveNameField").text(), q("Snare")) << "on the name alone";
  const auto choose = [&](WaveId id, const char* entry) {
    MainWindow::choose(sounds.menu(row(id), waveColumn("number")), entry);
  };
  choose(206, "Copy Sound");
  EXPECT_EQ(library.copiedWaveIndex(), 206);
  choose(206, "Add to Selected Pad");
  EXPECT_EQ(library.kit(2)->pad(0)->wave(), 206);
  choose(207, "Duplicate Sound");
  main.store.jobs.runAll();
  settle();
  EXPECT_EQ(cell(200, waveColumn("name")), q("Tom Copy"));
  EXPECT_EQ(cell(200, waveColumn("pending"), Qt::ToolTipRole), q("Not saved to the card yet"));
}

TEST_F(WaveBrowser, DeletesWhenConfirmed) {
  pick(1);
  sounds.key(Qt::Key_Delete);
  EXPECT_TRUE(main.prompts.alerts.empty()) << "a factory sample";
  for (const std::size_t button : {1U, 0U}) {
    pick(205);
    sounds.key(Qt::Key_Delete);
    const Alert& question = main.prompts.alerts.at(0).first;
    EXPECT_EQ(question.title, q("\"Kick\" is used in: Rock – pad 1. Delete anyway?"));
    EXPECT_EQ(question.buttons[0].role, AlertButton::Role::destructive);
    main.prompts.press(button);
    settle();
    EXPECT_EQ(sounds.rows(), button == 0 ? "1 206 207 " : "1 205 206 207 ");
  }
}

TEST_F(WaveBrowser, LoopSectionWritesAndReadsBack) {
  library.setSelectedPadIndex(5);
  pick(205);
  press(205, waveColumn("loop"));
  EXPECT_EQ(main.find<Stepper>("waveTempo").text(), q("90.0"));
  QTest::keyClick(&main.find("waveTempo"), Qt::Key_Up);
  EXPECT_EQ(library.wave(205)->tempo(), 910);
  QTest::keyClick(&main.find("waveBeat"), Qt::Key_Down);
  EXPECT_EQ(library.wave(205)->beat(), 3);
  const auto type = [&](const char* name, const char* text) -> QLineEdit& {
    auto& field = main.find<QLineEdit>(name);
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, q(text));
    return field;
  };
  QLineEdit& start = type("waveStart", "-640909");
  library.setWaveEnd(205, 7);
  settle();
  EXPECT_EQ(start.text(), q("-640909")) << "a refresh leaves the edit alone";
  EXPECT_EQ(main.find<QLineEdit>("waveEnd").text(), q("7"));
  QTest::keyClick(&start, Qt::Key_Return);
  EXPECT_EQ(library.wave(205)->start(), -640909);
  EXPECT_EQ(library.kit(1)->pad(5)->wave(), -1) << "Return in a field is none on its row";
  QTest::keyClick(&type("waveEnd", "9"), Qt::Key_Return);
  EXPECT_EQ(library.wave(205)->end(), 9);
}

TEST_F(WaveBrowser, ImportsUnderTheFilteredTagAndTellsTheLastFailure) {
  writeFile(main.store.files, "/home/Zoom.wav", "audio");
  filter(1);
  main.click("importWavButton");
  main.click("importWavButton");
  ASSERT_EQ(main.prompts.files.size(), 1U) << "one panel at a time";
  main.prompts.files[0].second({"/home/gone.wav", "/home/Zoom.wav", "/home/lost.wav"});
  EXPECT_EQ(main.text("importProgress"), "Importing 1 of 3…");
  do
    settle();
  while (main.store.jobs.runWork() || main.store.jobs.deliver());
  EXPECT_EQ(caption(), "2 sounds");
  ASSERT_EQ(main.prompts.alerts.size(), 1U) << "once, when the batch has ended";
  EXPECT_EQ(main.prompts.alerts[0].first.title, q("Couldn't Import"));
  EXPECT_TRUE(main.prompts.alerts[0].first.text.contains(q("lost")));
  main.prompts.press(0);
  EXPECT_FALSE(main.find("importProgress").isVisible());
}

TEST_F(WaveBrowser, BatchRenameShowsThenRenamesAllInOneStep) {
  for (const WaveId id : {205, 206, 207})
    pick(id, Qt::ControlModifier);
  main.click("renameSelectedButton");
  auto& pattern = main.find<QLineEdit>("namePattern");
  const auto type = [&](const char* text) {
    pattern.selectAll();
    QTest::keyClicks(&pattern, q(text));
  };
  type("  ");
  QTest::keyClick(&pattern, Qt::Key_Return);
  EXPECT_TRUE(pattern.isVisible()) << "blanks name nothing";
  QTest::keyClick(&main.find("startNumber"), Qt::Key_Up);
  library.deleteWave(206);
  library.setWaveName(205, "Zz");
  library.undoManager().endTurn();
  settle();
  type("New");
  EXPECT_EQ(main.window.findChild<RenamePreview*>()->model()->index(0, 0).data(Qt::AccessibleTextRole).toString(),
            q("Tom becomes New 2"))
      << "it follows the store";
  main.store.turn([&] { QTest::keyClick(&pattern, Qt::Key_Return); });
  EXPECT_EQ(library.wave(207)->name(), "New 2");
  EXPECT_EQ(library.wave(205)->name(), "New 3");
  settle();
  EXPECT_THAT(view.selection(), IsEmpty());
  EXPECT_EQ(main.focus(), "waveList") << "not the button beside the one that went";
  library.undoManager().undo();
  EXPECT_EQ(library.wave(207)->name(), "Tom");
  EXPECT_EQ(library.wave(205)->name(), "Zz");
}

}  // namespace
}  // namespace tamboro::test
