#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QMimeData>
#include <QPushButton>
#include <fstream>

#include "support/TemporaryFolder.h"
#include "views/pads/PadCell.h"
#include "views/pads/PadGridMoves.h"
#include "views/samples/WaveColumn.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

TEST(PadGridMoves, ArrowsStayWithinTheMainPads) {
  struct Case {
    int from;
    std::array<std::optional<int>, 4> to;  // up, down, left, right
    int padCount = 15;
  };
  const std::vector<Case> cases{{4, {1, 7, 3, 5}},
                                {0, {0, 3, 0, 1}},
                                {8, {5, 8, 7, 8}},
                                {9, {}},
                                // The row below ends before it, or isn't there.
                                {2, {2, 2, 1, 2}, 5},
                                {4, {1, 4, 3, 4}, 5}};
  for (const Case& c : cases) {
    for (std::size_t move = 0; move < 4; ++move)
      EXPECT_EQ(padAfterMove(c.from, static_cast<PadMove>(move), c.padCount), c.to[move]) << c.from << " by " << move;
  }
}

TEST(PadGridMoves, ADroppedTextIsAWholeNumberAndNothingElse) {
  const std::vector<std::pair<const char*, std::optional<WaveId>>> cases{
      {"205", 205},
      {"+7", 7},
      {"-1", -1},
      {"007", 7},
      {"", std::nullopt},
      {"+", std::nullopt},
      {"+-5", std::nullopt},
      {" 205", std::nullopt},
      {"2.5", std::nullopt},
      {"٢", std::nullopt},
      {"-9223372036854775808", std::numeric_limits<WaveId>::min()},
      {"9223372036854775808", std::nullopt},
  };
  for (const auto& [text, id] : cases)
    EXPECT_EQ(droppedWaveId(QString::fromUtf8(text)), id) << '"' << text << '"';
}

struct PadGrid : ::testing::Test {
  MainWindow main;
  RolandLibrary& library = main.library;

  PadGrid() { main.showCard(); }
  PadCell& pad(int index) { return main.find<PadCell>(qPrintable(QStringLiteral("pad%1").arg(index))); }
  Pad stored(int index) const { return *library.kit(1)->pad(index); }
  void click(int index) {
    QTest::mouseClick(&pad(index), Qt::LeftButton);
    settle();
  }
  QMenu& menu(int index) { return main.menu(pad(index), QPoint(5, 5), "padMenu"); }
};

TEST_F(PadGrid, ShowsTheGroupsThatAKitHas) {
  Tree card = sampleCard();
  std::string pads;
  for (int count = 0; count <= 17; ++count) {
    card["KIT/kit1" + std::to_string(10 + count) + ".spd"] = "<KitPrm>\n" + pads + "</KitPrm>\n";
    pads += "\t<PadPrm/>\n";
  }
  main.store.open(card);
  for (const int count : {0, 4, 9, 10, 13, 17}) {
    main.select(110 + count);
    for (int index = 0; index < 15; ++index)
      EXPECT_EQ(pad(index).isVisible(), index < count) << index << " of " << count;
    EXPECT_EQ(main.find("triggerHeading").isVisible(), count > 9);
    EXPECT_EQ(main.find("footswitchHeading").isVisible(), count > 13);
  }
  EXPECT_FALSE(library.hasUnsavedChanges());
  EXPECT_EQ(pad(3).y(), pad(0).geometry().bottom() + 9);
  EXPECT_EQ(pad(13).x(), pad(0).x()) << "groups stand on the same edges";
  EXPECT_EQ(entries(*menu(0).findChild<QMenu*>(q("exchangeMenu"))),
            "Pad 2|Pad 3|Pad 4|Pad 5|Pad 6|Pad 7|Pad 8|Pad 9|Trig 1|Trig 2|Trig 3|Trig 4|FS 1|FS 2")
      << "a pad beyond the instrument's has no name";
}

TEST_F(PadGrid, APadTellsSoundAndNoteAndIsPressed) {
  main.select(2);
  const auto spoken = [&](int index) { return QAccessible::queryAccessibleInterface(&pad(index)); };
  EXPECT_EQ(spoken(0)->text(QAccessible::Name), q("Pad 1, Snare"));
  EXPECT_EQ(spoken(2)->text(QAccessible::Description), q("[999] D#/Eb4"));
  spoken(1)->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  settle();
  EXPECT_EQ(library.selectedPadIndex(), 1);
  EXPECT_TRUE(spoken(1)->state().checked);
  EXPECT_TRUE(spoken(1)->state().focused) << "by the grid that has it";
}

TEST_F(PadGrid, MouseAndKeysChooseAPad) {
  main.find("kitName").setFocus();
  click(12);
  EXPECT_EQ(library.selectedPadIndex(), 12);
  EXPECT_TRUE(pad(12).isSelected());
  EXPECT_FALSE(pad(0).isSelected());
  EXPECT_EQ(main.focus(), "padGrid") << "it ends typing";
  QKeyEvent press(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier);
  QApplication::sendEvent(&main.find("padGrid"), &press);
  EXPECT_TRUE(press.isAccepted()) << "it would scroll";
  EXPECT_EQ(library.selectedPadIndex(), 12);
  main.key(Qt::Key_Tab);
  main.key(Qt::Key_Tab);
  main.key(Qt::Key_Space);
  EXPECT_EQ(library.selectedPadIndex(), 10);
}

TEST_F(PadGrid, CopiesAndPastesTheSoundOfThePadInUse) {
  main.key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(library.copiedWaveIndex(), 205);
  main.key(Qt::Key_Right);
  main.key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(stored(1).wave(), 205);
  main.key(Qt::Key_Tab);
  main.key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(stored(9).wave(), 205) << "where the keyboard is, selected or not";
}

TEST_F(PadGrid, TheMenuOffersWhatThePadAllows) {
  library.setPadSound(1, 3, 999);
  EXPECT_EQ(entries(menu(0)), "Copy Sound|Play|-|Remove Sound from Pad|-|Exchange With|Reset Pad");
  EXPECT_EQ(entries(menu(3)), "-|Exchange With|Reset Pad") << "a sample that isn't there";
  MainWindow::choose(menu(0), "Copy Sound");
  EXPECT_EQ(entries(menu(0)), "Copy Sound|Play|-|Remove Sound from Pad|Paste Sound|-|Exchange With|Reset Pad");
  MainWindow::choose(menu(2), "Paste Sound");
  EXPECT_EQ(stored(2).wave(), 205);
  MainWindow::choose(menu(0), "Remove Sound from Pad");
  EXPECT_EQ(stored(0).wave(), -1);
  MainWindow::choose(*menu(2).findChild<QMenu*>(q("exchangeMenu")), "FS 2");
  EXPECT_EQ(stored(14).wave(), 205);
}

TEST_F(PadGrid, ResetAsksFirst) {
  MainWindow::choose(menu(10), "Reset Pad");
  EXPECT_EQ(main.prompts.alerts.front().first.title, q("Reset Trig 2?"));
  main.prompts.press(1);
  MainWindow::choose(menu(4), "Reset Pad");
  EXPECT_EQ(main.prompts.alerts.front().first.title, q("Reset 5?"));
  EXPECT_EQ(main.prompts.alerts.front().first.buttons[0].role, AlertButton::Role::destructive);
  EXPECT_EQ(stored(4).level(), 90);
  main.prompts.press(0);
  EXPECT_EQ(stored(4).level(), 100);
  EXPECT_EQ(stored(10).level(), 90) << "cancelled";
}

TEST_F(PadGrid, ADropAssignsItsNumberAndRefusesTheRest) {
  const auto drop = [&](int index, const char* text) {
    QMimeData data;
    data.setText(q(text));
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&pad(index), &enter);
    QDropEvent let(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    if (enter.isAccepted()) QApplication::sendEvent(&pad(index), &let);
    return enter.isAccepted();
  };
  EXPECT_FALSE(drop(0, "kick"));
  EXPECT_FALSE(library.hasUnsavedChanges());
  EXPECT_TRUE(drop(5, "299"));
  EXPECT_EQ(stored(5).wave(), 299);
  EXPECT_EQ(library.selectedPadIndex(), 0) << "a drop selects nothing";
  EXPECT_FALSE(pad(5).isDropTarget());
}

/// A card whose first pad's sample is a sound that lies on the disk, and an audio device that swallows it.
struct Preview : PadGrid {
  static constexpr std::uint32_t bytes = 20 * 44100;  // ten seconds: longer than a case
  TemporaryFolder folder;
  SamplePlayer& player = main.player;

  Preview() {
    qputenv("SDL_AUDIODRIVER", "dummy");
    const Path root = folder.path() / "Roland/SPD-SX";
    main.store.files.mount(folder.path(), {});
    writeTree(main.store.files, root, sampleCard());
    std::filesystem::create_directories(root / "WAVE/DATA/02");
    std::ofstream(root / "WAVE/DATA/02/kick.wav", std::ios::binary)
        << "RIFF" << number(36 + bytes) << "WAVEfmt " << number(16) << number(0x00010001) << number(44100)
        << number(88200) << number(0x00100002) << "data" << number(bytes) << std::string(bytes, '\1');
    library.load(folder.path());
    main.select(1);
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
  main.key(Qt::Key_Right);  // its sample has no file
  EXPECT_EQ(played(), std::nullopt);
  main.key(Qt::Key_Left);
  main.key(Qt::Key_Left);
  EXPECT_EQ(played(), 205) << "at the edge the same pad sounds again";
  MainWindow::choose(menu(0), "Play");
  EXPECT_EQ(played(), 205);
}

TEST_F(Preview, ButtonAndRowPlayStopAndFollowThePlayer) {
  ListInWindow sounds{main, main.find<RowList>("waveList"), "waveMenu"};
  const auto spoken = [&] { return sounds.cell({0, 205}, waveColumn("play")).data(Qt::AccessibleTextRole).toString(); };
  auto& button = main.find<QPushButton>("playButton");
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
  button.click();
  EXPECT_EQ(played(), std::nullopt);
  click(2);
  EXPECT_TRUE(button.isHidden()) << "without a sound";
  sounds.click({0, 205}, waveColumn("play"));
  sounds.click({0, 205}, waveColumn("remove"));
  EXPECT_EQ(player.playingIndex(), 205);
  main.prompts.press(0);
  EXPECT_EQ(player.playingIndex(), std::nullopt) << "deleted, nothing else could stop it";
}

}  // namespace
}  // namespace tamboro::test
