#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "support/TemporaryFolder.h"
#include "views/pads/PadCell.h"
#include "views/pads/PadGridMoves.h"
#include "views/samples/WaveColumn.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

TEST(PadGridMoves, ArrowsStayWithinTheMainPads) {
  const struct {
    int padCount, from;
    std::array<std::optional<int>, 4> to;  // up, down, left, right
  } cases[] = {{15, 4, {1, 7, 3, 5}},
               {15, 0, {0, 3, 0, 1}},
               {15, 8, {5, 8, 7, 8}},
               {15, 9, {}},
               // The row below ends before it.
               {5, 2, {2, 2, 1, 2}}};
  for (const auto& c : cases) {
    for (std::size_t move = 0; move < 4; ++move)
      EXPECT_EQ(padAfterMove(c.from, static_cast<PadMove>(move), c.padCount), c.to[move]) << c.from << " by " << move;
  }
}

struct PadGrid : ::testing::Test, MainWindow {
  PadGrid() { showCard(); }
  PadCell& pad(int index) { return find<PadCell>("pad" + std::to_string(index)); }
  Pad stored(int index) const { return *library.kit(1)->pad(index); }
  void click(int index) { MainWindow::click(pad(index).objectName().toUtf8()); }
  QMenu& menu(int index) { return MainWindow::menu(pad(index), QPoint(5, 5), "padMenu"); }
};

TEST_F(PadGrid, ShowsThePadsThatAKitHas) {
  Tree card = sampleCard();
  std::string pads;
  for (int count = 0; count <= 17; ++count) {
    card["KIT/kit1" + std::to_string(10 + count) + ".spd"] = "<KitPrm>\n" + pads + "</KitPrm>\n";
    pads += "\t<PadPrm/>\n";
  }
  store.open(card);
  for (const int count : {0, 4, 9, 10, 13, 17}) {
    select(110 + count);
    for (int index = 0; index < 15; ++index)
      EXPECT_EQ(pad(index).isVisible(), index < count) << index << " of " << count;
  }
  EXPECT_FALSE(library.hasUnsavedChanges());
  EXPECT_EQ(entries(*menu(0).findChild<QMenu*>(q("exchangeMenu"))),
            "Pad 2|Pad 3|Pad 4|Pad 5|Pad 6|Pad 7|Pad 8|Pad 9|Trig 1|Trig 2|Trig 3|Trig 4|FS 1|FS 2")
      << "a pad beyond the instrument's has no name";
}

TEST_F(PadGrid, MouseKeysAndAssistiveToolsChooseAPad) {
  find("kitName").setFocus();
  click(12);
  EXPECT_EQ(library.selectedPadIndex(), 12);
  EXPECT_TRUE(pad(12).isSelected());
  EXPECT_FALSE(pad(0).isSelected());
  EXPECT_EQ(focus(), "padGrid") << "it ends typing";
  QKeyEvent press(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier);
  QApplication::sendEvent(&find("padGrid"), &press);
  EXPECT_TRUE(press.isAccepted()) << "it would scroll";
  EXPECT_EQ(library.selectedPadIndex(), 12);
  for (const Qt::Key step : {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Space})
    key(step);
  EXPECT_EQ(library.selectedPadIndex(), 10);
  QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&pad(0));
  EXPECT_EQ(spoken->text(QAccessible::Description), q("[205] C4 (middle C)"));
  spoken->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  settle();
  EXPECT_EQ(library.selectedPadIndex(), 0);
  EXPECT_TRUE(spoken->state().checked);
}

TEST_F(PadGrid, TheMenuOffersWhatThePadAllows) {
  library.setPadSound(1, 3, 999);
  EXPECT_EQ(entries(menu(0)), "Copy Sound|Play|-|Remove Sound from Pad|-|Exchange With|Reset Pad");
  EXPECT_EQ(entries(menu(3)), "-|Exchange With|Reset Pad") << "a sample that isn't there";
  choose(menu(0), "Copy Sound");
  EXPECT_EQ(entries(menu(0)), "Copy Sound|Play|-|Remove Sound from Pad|Paste Sound|-|Exchange With|Reset Pad");
  choose(menu(2), "Paste Sound");
  EXPECT_EQ(stored(2).wave(), 205);
  choose(menu(0), "Remove Sound from Pad");
  EXPECT_EQ(stored(0).wave(), -1);
  choose(*menu(2).findChild<QMenu*>(q("exchangeMenu")), "FS 2");
  EXPECT_EQ(stored(14).wave(), 205);
}

TEST_F(PadGrid, KeysCopyAndPasteWhereTheyAre) {
  key(Qt::Key_C, Qt::ControlModifier);
  key(Qt::Key_Tab);
  key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(stored(9).wave(), 205) << "where the keyboard is, selected or not";
}

TEST_F(PadGrid, ResetAsksFirst) {
  for (const auto& [index, title, button] : {std::tuple{10, "Reset Trig 2?", std::size_t{1}}, {4, "Reset 5?", 0}}) {
    choose(menu(index), "Reset Pad");
    EXPECT_EQ(prompts.alerts.front().first.title, q(title));
    EXPECT_EQ(prompts.alerts.front().first.buttons[0].role, AlertButton::Role::destructive);
    EXPECT_EQ(stored(index).level(), 90);
    prompts.press(button);
    EXPECT_EQ(stored(index).level(), button == 0 ? 100 : 90);
  }
}

TEST_F(PadGrid, ADropAssignsItsWholeNumberAndRefusesTheRest) {
  const std::pair<const char*, std::optional<WaveId>> cases[] = {
      {"299", 299}, {"+7", 7}, {"kick", {}}, {"", {}}, {" 205", {}}, {"2.5", {}}, {"9223372036854775808", {}}};
  for (const auto& [text, id] : cases) {
    library.setPadSound(1, 5, 206);
    QMimeData data;
    data.setText(q(text));
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&pad(5), &enter);
    EXPECT_EQ(enter.isAccepted(), id.has_value()) << text;
    QDropEvent let(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    if (enter.isAccepted()) QApplication::sendEvent(&pad(5), &let);
    EXPECT_EQ(stored(5).wave(), id.value_or(206)) << text;
  }
  EXPECT_EQ(library.selectedPadIndex(), 0) << "a drop selects nothing";
  EXPECT_FALSE(pad(5).isDropTarget());
}

/// A card whose first pad's sample is a sound that lies on the disk, and an audio device that swallows it.
struct Preview : PadGrid {
  static constexpr std::uint32_t bytes = 20 * 44100;  // ten seconds: longer than a case
  TemporaryFolder folder;

  Preview() {
    qputenv("SDL_AUDIODRIVER", "dummy");
    const Path root = folder.path() / "Roland/SPD-SX";
    store.files.mount(folder.path(), {});
    writeTree(store.files, root, sampleCard());
    std::filesystem::create_directories(root / "WAVE/DATA/02");
    std::ofstream(root / "WAVE/DATA/02/kick.wav", std::ios::binary)
        << "RIFF" << number(36 + bytes) << "WAVEfmt " << number(16) << number(0x00010001) << number(44100)
        << number(88200) << number(0x00100002) << "data" << number(bytes) << std::string(bytes, '\1');
    library.load(folder.path());
    select(1);
  }
  static std::string number(std::uint32_t value) {
    std::string text;
    for (int shift = 0; shift < 32; shift += 8)
      text += static_cast<char>(value >> shift & 0xFF);
    return text;
  }
  /// What plays now; silences it.
  std::optional<WaveId> played() {
    const auto id = player.playingIndex();
    player.stop();
    return id;
  }
};

TEST_F(Preview, DoubleClickAndArrowsPlayWhereAClickDoesNot) {
  click(0);
  EXPECT_EQ(played(), std::nullopt);
  QTest::mouseDClick(&pad(0), Qt::LeftButton);
  EXPECT_EQ(played(), 205);
  key(Qt::Key_Right);  // its sample has no file
  EXPECT_EQ(played(), std::nullopt);
  key(Qt::Key_Left);
  key(Qt::Key_Left);
  EXPECT_EQ(played(), 205) << "at the edge the same pad sounds again";
  choose(menu(0), "Play");
  EXPECT_EQ(played(), 205);
}

TEST_F(Preview, ButtonAndRowPlayStopAndFollowThePlayer) {
  ListInWindow sounds{*this, find<RowList>("waveList"), "waveMenu"};
  const auto spoken = [&] { return sounds.cell({0, 205}, waveColumn("play")).data(Qt::AccessibleTextRole).toString(); };
  auto& button = find<QPushButton>("playButton");
  button.click();
  EXPECT_EQ(player.playingIndex(), 205);
  EXPECT_EQ(button.text(), q("Stop"));
  EXPECT_EQ(spoken(), q("Stop"));
  sounds.click({0, 205}, waveColumn("play"));
  EXPECT_EQ(player.playingIndex(), std::nullopt);
  EXPECT_EQ(button.text(), q("Play"));
  EXPECT_EQ(spoken(), q("Play"));
  sounds.click({0, 205}, waveColumn("name"));
  sounds.key(Qt::Key_Space);
  EXPECT_EQ(player.playingIndex(), 205);
  sounds.click({0, 205}, waveColumn("remove"));
  EXPECT_EQ(player.playingIndex(), 205);
  prompts.press(0);
  EXPECT_EQ(player.playingIndex(), std::nullopt) << "deleted, nothing else could stop it";
}

}  // namespace
}  // namespace tamboro::test
