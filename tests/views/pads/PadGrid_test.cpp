#include <gtest/gtest.h>

#include <QAccessible>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPushButton>

#include "views/kits/KitEditor.h"
#include "views/pads/PadGridMoves.h"

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
                                {2, {2, 5, 1, 2}},
                                {8, {5, 8, 7, 8}},
                                {9, {}},
                                {14, {}},
                                // The row below ends before it, or isn't there.
                                {2, {2, 2, 1, 2}, 5},
                                {4, {1, 4, 3, 4}, 5},
                                {0, {0, 0, 0, 0}, 1}};
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
      {"9223372036854775807", std::numeric_limits<WaveId>::max()},
      {"-9223372036854775808", std::numeric_limits<WaveId>::min()},
      {"9223372036854775808", std::nullopt},
      {"", std::nullopt},
      {"+", std::nullopt},
      {"-", std::nullopt},
      {"+-5", std::nullopt},
      {"--5", std::nullopt},
      {" 205", std::nullopt},
      {"205\n", std::nullopt},
      {"2.5", std::nullopt},
      {"0x10", std::nullopt},
      {"٢", std::nullopt},
  };
  for (const auto& [text, id] : cases)
    EXPECT_EQ(droppedWaveId(QString::fromUtf8(text)), id) << '"' << text << '"';
}

TEST(PadGridMoves, NamesBreakWhereTheyMayAndEvenly) {
  const std::vector<std::pair<const char*, const char*>> cases{
      {"Kick Dp", "Kick Dp"},             // fits
      {"Kick Deep", "Kick|Deep"},         // at the blank
      {"A BB CC DD", "A BB|CC DD"},       // the evener of three blanks
      {"MMMMMMMMMMM", "MMMMMM|MMMMM"},    // nowhere to break
      {"A MMMMMMMMMM", "A MMMM|MMMMMM"},  // at the blank the rest wouldn't fit
      {"AAAA-BBBB", "AAAA-|BBBB"},
      {"", ""},
      {"            ", "            "},
      {"AAAAAAAAAAAAAAAAAAAAAA", "AAAAAAAAAAA|AAAAAAAAAAA"},      // too long either way
      {"🥁🥁🥁🥁🥁🥁", "🥁🥁🥁|🥁🥁🥁"},  // never within a character
  };
  const auto length = [](const QString& text) { return static_cast<double>(text.size()); };
  for (const auto& [name, lines] : cases)
    EXPECT_EQ(padNameLines(QString::fromUtf8(name), 7, length).join(QLatin1Char('|')).toStdString(), lines) << name;
}

TEST(PadGrid, ShowsTheGroupsThatAKitHas) {
  Tree card = sampleCard();
  const std::array<int, 6> counts{0, 4, 9, 10, 13, 17};
  for (const int count : counts)
    card["KIT/kit1" + std::to_string(count) + ".spd"] =
        kitFile(count, count == 13 ? "<PadPrm>leaf</PadPrm>" : "<PadPrm/>");
  KitEditor main(1, card);
  for (const int count : counts) {
    main.select(count < 10 ? 10 + count : 100 + count);
    ASSERT_NE(main.library.selectedKit(), nullptr);
    for (int index = 0; index < 15; ++index)
      EXPECT_EQ(main.pad(index).isVisible(), index < count) << index << " of " << count;
    EXPECT_EQ(main.find("triggerHeading").isVisible(), count > 9);
    EXPECT_EQ(main.find("footswitchHeading").isVisible(), count > 13);
    EXPECT_FALSE(main.library.hasUnsavedChanges());
  }
  const QRect first = main.pad(0).geometry();
  EXPECT_EQ(main.pad(4).x(), first.right() + 9);
  EXPECT_EQ(main.pad(3).y(), first.bottom() + 9);
  for (const int index : {3, 9, 13})
    EXPECT_EQ(main.pad(index).x(), first.x()) << "groups stand on the same edges";
  EXPECT_EQ(main.pad(12).geometry().right(), main.find("padGrid").width() - 9);
  EXPECT_EQ(main.pad(8).accessibleDescription(), QStringLiteral("[-1] C4 (middle C)"));
}

TEST(PadGrid, GrowsWithNamesThatBreakInANarrowColumnOnly) {
  Tree card = sampleCard();
  std::string pads;
  // One length for each row: whatever the font, some row is higher here than at the preferred width.
  for (int index = 0; index < 15; ++index)
    pads += "<PadPrm><Wv>" + std::to_string(300 + index / 3) + "</Wv></PadPrm>\n";
  for (std::size_t row = 0; row < 5; ++row)
    card["WAVE/PRM/03/0" + std::to_string(row) + ".spd"] =
        "<WvPrm>" + nameCells("Nm", std::u32string(8 + row, U'M')) + "</WvPrm>";
  card["KIT/kit020.spd"] = "<KitPrm>\n" + pads + "</KitPrm>\n";
  KitEditor main(20, card);
  EXPECT_EQ(main.pad(0).accessibleName(), QStringLiteral("Pad 1, MMMMMMMM"));
  EXPECT_GE(main.find("padGrid").height(), main.pad(14).geometry().bottom() + 9);
}

TEST(PadGrid, AMirroredWindowTurnsNoTextRound) {
  KitEditor main;
  const QImage before = main.pad(2).grab().toImage();
  main.window.setLayoutDirection(Qt::RightToLeft);
  main.settle();
  EXPECT_EQ(main.pad(2).grab().toImage(), before) << "[-1] D4";
}

TEST(PadGrid, APadIsAButtonThatTellsSoundAndNote) {
  KitEditor main(2);
  struct Case {
    int pad;
    const char* name;
    const char* note;
  };
  for (const Case& c : {Case{0, "Pad 1, Snare", "[206] C#/Db4"}, Case{1, "Pad 2, no sound", "[-1] D4"},
                        Case{2, "Pad 3, no sound", "[999] D#/Eb4"}}) {
    QAccessibleInterface* pad = QAccessible::queryAccessibleInterface(&main.pad(c.pad));
    EXPECT_EQ(pad->text(QAccessible::Name).toStdString(), c.name);
    EXPECT_EQ(pad->text(QAccessible::Description).toStdString(), c.note);
    EXPECT_TRUE(pad->role() == QAccessible::Button || pad->role() == QAccessible::CheckBox) << pad->role();
    EXPECT_EQ(pad->state().checked, c.pad == 0);
  }
  QAccessible::queryAccessibleInterface(&main.pad(1))
      ->actionInterface()
      ->doAction(QAccessibleActionInterface::toggleAction());
  main.settle();
  EXPECT_EQ(main.library.selectedPadIndex(), 1);
  EXPECT_TRUE(QAccessible::queryAccessibleInterface(&main.pad(1))->state().focused) << "by the grid that has it";
}

TEST(PadGrid, ClickSelectsAndEndsTyping) {
  KitEditor main;
  main.find("kitName").setFocus();
  QTest::mouseClick(&main.pad(12), Qt::LeftButton);
  main.settle();
  EXPECT_EQ(main.library.selectedPadIndex(), 12);
  EXPECT_TRUE(main.pad(12).isSelected());
  EXPECT_FALSE(main.pad(0).isSelected());
  EXPECT_TRUE(main.find("padGrid").hasFocus());
  QTest::mouseClick(&main.pad(3), Qt::RightButton);
  EXPECT_EQ(main.library.selectedPadIndex(), 12);
}

TEST(PadGrid, PadsBeyondTheMainOnesAreReachedByTab) {
  KitEditor main;
  main.key(Qt::Key_Tab);
  main.key(Qt::Key_Tab);
  main.key(Qt::Key_Space);
  EXPECT_EQ(main.library.selectedPadIndex(), 10);
}

TEST(PadGrid, CopiesAndPastesTheSoundOfThePadInUse) {
  KitEditor main;
  const auto key = [&](Qt::Key pressed) {
    QTest::keyClick(main.window.focusWidget(), pressed, Qt::ControlModifier);
    main.settle();
  };
  key(Qt::Key_C);
  EXPECT_EQ(main.library.copiedWaveIndex(), 205);
  main.key(Qt::Key_Right);
  main.library.setCopiedWaveIndex(207);
  key(Qt::Key_V);
  EXPECT_EQ(main.elementText(1, "Wv"), "207");
  main.key(Qt::Key_Tab);
  key(Qt::Key_V);
  EXPECT_EQ(main.elementText(9, "Wv"), "207") << "where the keyboard is, selected or not";
}

TEST(PadGrid, ArrowsFromATriggerInputAreUsedUpWithoutEffect) {
  KitEditor main;
  main.library.setSelectedPadIndex(10);
  main.settle();
  for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right}) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(&main.find("padGrid"), &press);
    EXPECT_TRUE(press.isAccepted());
    EXPECT_EQ(main.library.selectedPadIndex(), 10);
  }
}

/// A card whose first pad's sample is a sound that lies on the disk, and an audio device that swallows it.
class Preview : public ::testing::Test {
 protected:
  static constexpr std::uint32_t bytes = 20 * 44100;  // ten seconds: longer than a case

  Preview() {
    qputenv("SDL_AUDIODRIVER", "dummy");
    const Path root = folder_ / "Roland/SPD-SX";
    main_.store.files.mount(folder_.path(), {});
    writeTree(main_.store.files, root, sampleCard());
    std::filesystem::create_directories(root / "WAVE/DATA/02");
    std::ofstream(root / "WAVE/DATA/02/kick.wav", std::ios::binary)
        << "RIFF" << number(36 + bytes) << "WAVEfmt " << number(16) << number(0x00010001) << number(44100)
        << number(88200) << number(0x00100002) << "data" << number(bytes) << std::string(bytes, '\1');
    main_.library.load(folder_.path());
    main_.select(1);
  }
  static std::string number(std::uint32_t value) {
    std::string text;
    for (int shift = 0; shift < 32; shift += 8)
      text += static_cast<char>(value >> shift & 0xFF);
    return text;
  }
  /// What plays now; silences it.
  std::optional<WaveId> played() {
    const auto id = main_.player.playingIndex();
    main_.player.stop();
    return id;
  }

  TemporaryFolder folder_;
  KitEditor main_{4};
};

TEST_F(Preview, DoubleClickAndArrowsPlayWhereAClickDoesNot) {
  QTest::mouseClick(&main_.pad(0), Qt::LeftButton);
  EXPECT_EQ(played(), std::nullopt);
  QTest::mouseDClick(&main_.pad(0), Qt::LeftButton);
  EXPECT_EQ(played(), 205);
  main_.key(Qt::Key_Up);
  EXPECT_EQ(played(), 205) << "at an edge the same pad sounds again";
  main_.key(Qt::Key_Right);  // its sample has no file
  EXPECT_EQ(main_.library.selectedPadIndex(), 1);
  EXPECT_EQ(played(), std::nullopt);
  main_.key(Qt::Key_Left);
  main_.key(Qt::Key_Left);
  EXPECT_EQ(played(), 205) << "no toggle: a second press restarts";
}

TEST_F(Preview, ThePadsButtonStopsWhatItPlays) {
  auto& button = main_.find<QPushButton>("playButton");
  EXPECT_EQ(button.text(), QStringLiteral("Play"));
  button.click();
  EXPECT_EQ(main_.player.playingIndex(), 205);
  EXPECT_EQ(button.text(), QStringLiteral("Stop"));
  button.click();
  EXPECT_EQ(main_.player.playingIndex(), std::nullopt);
  EXPECT_EQ(button.text(), QStringLiteral("Play"));
  button.click();
  QTest::mouseClick(&main_.pad(2), Qt::LeftButton);  // without a sound
  main_.settle();
  EXPECT_TRUE(button.isHidden());
  QTest::mouseClick(&main_.pad(0), Qt::LeftButton);
  main_.settle();
  EXPECT_EQ(button.text(), QStringLiteral("Stop")) << "it plays on";
  main_.player.stop();
  EXPECT_EQ(button.text(), QStringLiteral("Play")) << "also where the sound ends by itself";
}

std::string rows(const QMenu& menu) {
  QStringList titles;
  for (const QAction* row : menu.actions())
    titles << (row->isSeparator() ? QStringLiteral("-") : row->text());
  return titles.join(QLatin1Char('|')).toStdString();
}

QMenu& openMenu(KitEditor& main, int pad) {
  QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), main.pad(pad).mapToGlobal(QPoint(5, 5)));
  QApplication::sendEvent(&main.pad(pad), &event);
  return *main.window.findChildren<QMenu*>(QStringLiteral("padMenu")).last();
}

void choose(QMenu& menu, const QString& title) {
  for (QAction* row : menu.actions()) {
    if (row->text() == title) row->trigger();
  }
  menu.close();
}

TEST(PadMenu, OffersWhatThePadAllows) {
  KitEditor main;
  EXPECT_EQ(rows(openMenu(main, 0)), "Copy Sound|Play|-|Remove Sound from Pad|-|Exchange With|Reset Pad");
  EXPECT_EQ(rows(openMenu(main, 2)), "-|Exchange With|Reset Pad");
  main.library.setPadSound(1, 3, 999);
  EXPECT_EQ(rows(openMenu(main, 3)), "-|Exchange With|Reset Pad") << "a sample that isn't there";
  choose(openMenu(main, 0), QStringLiteral("Copy Sound"));
  EXPECT_EQ(main.library.copiedWaveIndex(), 205);
  EXPECT_EQ(rows(openMenu(main, 0)), "Copy Sound|Play|-|Remove Sound from Pad|Paste Sound|-|Exchange With|Reset Pad");
  QMenu& menu = openMenu(main, 2);
  EXPECT_EQ(rows(menu), "Paste Sound|-|Exchange With|Reset Pad");
  EXPECT_EQ(menu.actions().first()->toolTip(), QStringLiteral("Paste the copied sound here"));
  choose(menu, QStringLiteral("Paste Sound"));
  EXPECT_EQ(main.elementText(2, "Wv"), "205");
  choose(openMenu(main, 0), QStringLiteral("Remove Sound from Pad"));
  EXPECT_EQ(main.elementText(0, "Wv"), "-1");
}

TEST(PadMenu, ExchangesWithEveryOtherPadThatHasAName) {
  Tree card = sampleCard();
  card["KIT/kit017.spd"] = kitFile(17);
  KitEditor main(17, card);
  auto* exchange = openMenu(main, 0).findChild<QMenu*>(QStringLiteral("exchangeMenu"));
  EXPECT_EQ(rows(*exchange), "Pad 2|Pad 3|Pad 4|Pad 5|Pad 6|Pad 7|Pad 8|Pad 9|Trig 1|Trig 2|Trig 3|Trig 4|FS 1|FS 2");
  main.select(1);
  choose(*openMenu(main, 0).findChild<QMenu*>(QStringLiteral("exchangeMenu")), QStringLiteral("FS 2"));
  EXPECT_EQ(main.elementText(0, "NoteNum"), "74");
  EXPECT_EQ(main.elementText(14, "Wv"), "205");
}

TEST(PadMenu, ResetAsksFirst) {
  KitEditor main;
  choose(openMenu(main, 10), QStringLiteral("Reset Pad"));
  EXPECT_EQ(main.prompts.alerts.front().first.title, QStringLiteral("Reset Trig 2?"));
  main.prompts.press(1);
  choose(openMenu(main, 4), QStringLiteral("Reset Pad"));
  const Alert alert = main.prompts.alerts.front().first;
  EXPECT_EQ(alert.title, QStringLiteral("Reset 5?"));
  ASSERT_EQ(alert.buttons.size(), 2U);
  EXPECT_EQ(alert.buttons[0].title, QStringLiteral("Reset"));
  EXPECT_EQ(alert.buttons[0].role, AlertButton::Role::destructive);
  EXPECT_EQ(alert.buttons[1].title, QStringLiteral("Cancel"));
  EXPECT_TRUE(main.pad(4).showingInitConfirm());
  EXPECT_EQ(main.elementText(4, "WvLevel"), "90");
  main.prompts.press(0);
  EXPECT_FALSE(main.pad(4).showingInitConfirm());
  EXPECT_EQ(main.elementText(4, "WvLevel"), "100");
  EXPECT_EQ(main.elementText(10, "WvLevel"), "90") << "cancelled";
}

TEST(PadDrop, AssignsAnyWholeNumberAndRefusesTheRest) {
  KitEditor main;
  for (const char* refused : {"", "kick", "99999999999999999999"})
    EXPECT_FALSE(dropText(main.pad(0), QString::fromLatin1(refused))) << refused;
  EXPECT_FALSE(dropText(main.pad(0), QString()));
  EXPECT_FALSE(main.library.hasUnsavedChanges());
  EXPECT_TRUE(dropText(main.pad(5), QStringLiteral("299")));
  main.settle();
  EXPECT_EQ(main.elementText(5, "Wv"), "299");
  EXPECT_EQ(main.pad(5).accessibleName(), QStringLiteral("Pad 6, no sound"));
  EXPECT_EQ(main.pad(5).accessibleDescription(), QStringLiteral("[299] F4"));
  EXPECT_EQ(main.library.selectedPadIndex(), 0) << "a drop selects nothing";
  EXPECT_FALSE(main.pad(5).isDropTarget());
}

}  // namespace
}  // namespace tamboro::test
