#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>
#include <fstream>

#include "audio/SamplePlayer.h"
#include "support/TemporaryFolder.h"
#include "support/TestStore.h"
#include "views/HandPrompts.h"
#include "views/Settle.h"
#include "views/controls/MenuPicker.h"
#include "views/controls/NumberField.h"
#include "views/controls/Stepper.h"
#include "views/lists/RowList.h"
#include "views/look/Look.h"
#include "views/samples/BatchRenameSheet.h"
#include "views/samples/WaveBrowserView.h"
#include "views/samples/WaveColumn.h"

namespace tamboro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

QString q(const char* text) {
  return QString::fromUtf8(text);
}

/// The small card, whose Kick has a measure.
Tree loopCard() {
  Tree card = sampleCard();
  std::string& kick = card["WAVE/PRM/02/05.spd"];
  kick = replaced(kick, "<Tempo>900", "<Measure>0</Measure><Tempo>900");
  return card;
}

/// The browser in a window of its own: Factory [1], Kick [205], Snare [206], Tom [207] stand by name in that order.
struct Browser {
  TestStore store;
  RolandLibrary& library = store.library;
  SamplePlayer player;
  HandPrompts prompts;
  QWidget window;
  WaveBrowserView view;
  RowList& list;

  explicit Browser(const Tree& card = loopCard())
      : view(store.library, player, store.files, prompts), list(*view.findChild<RowList*>()) {
    auto* rows = new QVBoxLayout(&window);
    rows->addWidget(&view);
    window.resize(426, 500);
    store.open(card);
    settle();
    window.show();
    window.activateWindow();
    settle();
  }
  static void settle() { test::settle(); }
  template<class Widget = QWidget>
  Widget* find(const char* name) const {
    return window.findChild<Widget*>(q(name));
  }
  static RowKey row(WaveId id) { return {0, id}; }
  /// Names from top to bottom; the loop section as "+".
  std::string rows() const {
    std::string text;
    for (const RowKey& key : list.rows().rows())
      text += (key.kind == RowKey::Kind::detail ? "+" : cell(key.record, waveColumn("name")).toStdString()) + " ";
    return text;
  }
  QString cell(WaveId id, int column, int role = Qt::DisplayRole) const {
    return list.rows().indexOf(row(id)).siblingAtColumn(column).data(role).toString();
  }
  void click(WaveId id, int column, Qt::KeyboardModifiers keys = {}) {
    QTest::mouseClick(list.viewport(), Qt::LeftButton, keys, list.cellRect(row(id), column).center());
    settle();
  }
  void doubleClick(WaveId id, int column) {
    click(id, column);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, list.cellRect(row(id), column).center());
    settle();
  }
  void key(Qt::Key pressed, Qt::KeyboardModifiers keys = {}) {
    QTest::keyClick(&list, pressed, keys);
    settle();
  }
  void search(const char* text) {
    find<QLineEdit>("waveSearchText")->setText(q(text));
    settle();
  }
  void filter(std::int64_t tag) {
    Q_EMIT find<MenuPicker>("waveTagFilter")->chosen(tag);
    settle();
  }
  QString caption() const { return find<QLabel>("waveCount")->text(); }
  QLineEdit* nameField() const { return find<QLineEdit>("waveNameField"); }
  QMenu* menu(WaveId id) {
    const QPoint place = list.cellRect(row(id), waveColumn("number")).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, list.viewport()->mapToGlobal(place));
    QApplication::sendEvent(list.viewport(), &event);
    return find<QMenu>("waveMenu");
  }
  void choose(WaveId id, const char* entry) {
    QMenu* open = menu(id);
    open->setActiveAction(open->findChild<QAction*>(q(entry)));
    QTest::keyClick(open, Qt::Key_Return);
    settle();
  }
};

TEST(WaveBrowser, FiltersByTextAndTagAndFollowsTheCard) {
  Browser browser;
  EXPECT_EQ(browser.rows(), "Factory Kick Snare Tom ");
  EXPECT_EQ(browser.cell(206, waveColumn("tag")), q("Snare"));
  EXPECT_EQ(browser.cell(207, waveColumn("tag")), q("Tag 7")) << "no tag of the list";
  EXPECT_EQ(browser.caption(), q("4 sounds"));
  browser.search("KI");
  EXPECT_EQ(browser.rows(), "Kick ");
  EXPECT_EQ(browser.caption(), q("1 sounds"));
  browser.search("no such");
  EXPECT_TRUE(browser.find<QLabel>("noWaves")->isVisible());
  browser.search("");
  EXPECT_FALSE(browser.find<QLabel>("noWaves")->isVisible());
  browser.filter(0);
  EXPECT_EQ(browser.rows(), "Factory Kick ");
  browser.library.setWaveTag(207, 0);
  browser.library.setWaveTag(205, 1);
  browser.library.setWaveName(1, "aaa");
  browser.library.setTagName(0, "");
  browser.settle();
  EXPECT_EQ(browser.rows(), "Tom aaa ") << "capitals come first";
  EXPECT_EQ(browser.cell(207, waveColumn("tag")), q("Tag 0"));
  EXPECT_EQ(browser.find<MenuPicker>("waveTagFilter")->currentText(), q("Tag 0"));
  browser.filter(-1);
  EXPECT_EQ(browser.rows(), "Kick Snare Tom aaa ");
}

TEST(WaveBrowser, SelectionOutlivesFilteringAndDeletion) {
  Browser browser;
  browser.click(205, waveColumn("name"));
  EXPECT_EQ(browser.caption(), q("4 sounds"));
  EXPECT_FALSE(browser.find("renameSelectedButton")->isVisible());
  browser.click(207, waveColumn("name"), Qt::ControlModifier);
  EXPECT_EQ(browser.caption(), q("2 selected"));
  EXPECT_TRUE(browser.find("renameSelectedButton")->isVisible());
  browser.search("s");
  EXPECT_EQ(browser.rows(), "Snare ");
  EXPECT_EQ(browser.caption(), q("2 selected")) << "both hidden";
  browser.click(206, waveColumn("name"), Qt::ControlModifier);
  EXPECT_THAT(browser.view.selection(), ElementsAre(205, 206, 207));
  browser.search("");
  EXPECT_EQ(browser.list.selectedKeys().size(), 3U) << "shown again, selected again";
  browser.library.deleteWave(205);
  browser.settle();
  EXPECT_THAT(browser.view.selection(), ElementsAre(205, 206, 207));
  EXPECT_EQ(browser.caption(), q("2 selected")) << "what is gone is passed over";

  browser.search("snare");
  browser.click(206, waveColumn("name"), Qt::ControlModifier);
  EXPECT_THAT(browser.view.selection(), ElementsAre(205, 207));
  browser.click(206, waveColumn("name"), Qt::ControlModifier);
  browser.click(206, waveColumn("name"));
  EXPECT_THAT(browser.view.selection(), ElementsAre(206)) << "a plain click lets go of what is hidden";
  browser.search("");
  browser.click(205 + 2, waveColumn("name"));
  browser.key(Qt::Key_Up);
  EXPECT_THAT(browser.view.selection(), ElementsAre(206));
}

TEST(WaveBrowser, CellsArePressedWithoutSelecting) {
  Browser browser;
  browser.library.setSelectedKitSlot(2);
  browser.library.setSelectedPadIndex(1);
  browser.click(205, waveColumn("add"));
  EXPECT_EQ(browser.library.kit(2)->pad(1)->wave(), 205);
  EXPECT_EQ(browser.cell(205, waveColumn("add"), Qt::ToolTipRole), q("Assign to pad 2 in Jazz"));
  browser.library.setSelectedKitSlot(std::nullopt);
  browser.click(206, waveColumn("add"));
  EXPECT_EQ(browser.cell(205, waveColumn("add"), Qt::ToolTipRole), q("Select a kit and a pad first"));
  browser.click(205, waveColumn("loop"));
  EXPECT_EQ(browser.rows(), "Factory Kick + Snare Tom ");
  browser.click(206, waveColumn("loop"));
  EXPECT_EQ(browser.rows(), "Factory Kick + Snare Tom ") << "without a measure there is no button";
  browser.click(205, waveColumn("loop"));
  EXPECT_EQ(browser.rows(), "Factory Kick Snare Tom ");
  browser.click(1, waveColumn("remove"));
  EXPECT_TRUE(browser.prompts.alerts.empty()) << "a factory sample";
  EXPECT_THAT(browser.view.selection(), ElementsAre(1)) << "where no control is, the row is clicked";
  EXPECT_TRUE(browser.cell(205, waveColumn("pending"), Qt::ToolTipRole).isEmpty());
  browser.click(205, waveColumn("remove"));
  EXPECT_THAT(browser.view.selection(), ElementsAre(1));
}

TEST(WaveBrowser, TagMenuChangesTheTag) {
  Browser browser;
  const auto checked = [&](WaveId id) {
    browser.click(id, waveColumn("tag"));
    QStringList titles;
    QMenu* menu = browser.find<QMenu>("waveTagMenu");
    for (const QAction* entry : menu->actions())
      titles << entry->text() + (entry->isChecked() ? q("*") : QString());
    EXPECT_EQ(menu->activeAction() != nullptr, titles.join(QString()).contains(q("*"))) << "where the arrow keys begin";
    menu->close();
    browser.settle();
    return titles;
  };
  EXPECT_EQ(checked(205), (QStringList{q("Kick*"), q("Snare")}));
  EXPECT_EQ(checked(207), (QStringList{q("Kick"), q("Snare")})) << "a tag outside the list";
  browser.click(207, waveColumn("tag"));
  QTest::keyClick(browser.find<QMenu>("waveTagMenu"), Qt::Key_Down);
  QTest::keyClick(browser.find<QMenu>("waveTagMenu"), Qt::Key_Down);
  QTest::keyClick(browser.find<QMenu>("waveTagMenu"), Qt::Key_Return);
  EXPECT_EQ(browser.library.wave(207)->tag(), 1);
}

TEST(WaveBrowser, ThousandsOfTagsComeInParts) {
  Browser browser;
  Tree card = sampleCard();
  std::string tags;
  for (int tag = 0; tag < 1200; ++tag)
    tags += "<TagPrm/>";
  card["SYSTEM/tag_list.spd"] = "<TagList>" + tags + "</TagList>";
  browser.store.open(card);
  browser.settle();
  browser.click(207, waveColumn("tag"));
  const QList<QAction*> parts = browser.find<QMenu>("waveTagMenu")->actions();
  ASSERT_EQ(parts.size(), 3);
  EXPECT_EQ(parts.back()->text(), q("1000 – 1199"));
  Q_EMIT parts.back()->menu()->aboutToShow();
  ASSERT_EQ(parts.back()->menu()->actions().size(), 200);
  parts.back()->menu()->actions().at(100)->trigger();
  EXPECT_EQ(browser.library.wave(207)->tag(), 1100);
}

TEST(WaveBrowser, RenamesInTheRow) {
  Browser browser;
  browser.doubleClick(205, waveColumn("number"));
  EXPECT_EQ(browser.nameField(), nullptr) << "the name alone is renamed";
  browser.doubleClick(205, waveColumn("name"));
  ASSERT_NE(browser.nameField(), nullptr);
  EXPECT_EQ(browser.nameField()->text(), q("Kick"));
  QTest::keyClicks(browser.nameField(), q("Zebra crossing"));
  browser.library.setWaveName(206, "Other");
  browser.settle();
  EXPECT_EQ(browser.nameField()->text(), q("Zebra crossing")) << "a refresh leaves the edit alone";
  browser.click(205, waveColumn("number"));
  browser.key(Qt::Key_F2);
  EXPECT_EQ(browser.nameField()->text(), q("Zebra crossing")) << "and so does asking again";
  EXPECT_EQ(browser.window.focusWidget(), browser.nameField());
  EXPECT_EQ(browser.library.wave(205)->name(), "Kick");
  QTest::keyClick(browser.nameField(), Qt::Key_Return);
  browser.settle();
  EXPECT_EQ(browser.nameField(), nullptr);
  EXPECT_EQ(browser.rows(), "Factory Other Tom Zebra crossi ") << "in its new place, cut to 12";
  browser.click(207, waveColumn("name"));
  browser.key(Qt::Key_F2);
  ASSERT_NE(browser.nameField(), nullptr);
  browser.search("zebra");
  EXPECT_EQ(browser.nameField(), nullptr) << "it goes with its row";
}

TEST(WaveBrowser, KeysOnARow) {
  Browser browser;
  browser.library.setSelectedKitSlot(2);
  browser.click(205, waveColumn("name"));
  browser.key(Qt::Key_Return);
  EXPECT_EQ(browser.library.kit(2)->pad(0)->wave(), 205);
  browser.key(Qt::Key_Delete);
  ASSERT_EQ(browser.prompts.alerts.size(), 1U);
  browser.prompts.press(1);
  browser.click(1, waveColumn("name"));
  browser.key(Qt::Key_Delete);
  EXPECT_TRUE(browser.prompts.alerts.empty()) << "a factory sample";
}

TEST(WaveBrowser, DeletesWhenConfirmed) {
  Browser browser;
  browser.click(205, waveColumn("remove"));
  ASSERT_EQ(browser.prompts.alerts.size(), 1U);
  const Alert& question = browser.prompts.alerts[0].first;
  EXPECT_EQ(question.title, q("\"Kick\" is used in: Rock – pad 1. Delete anyway?"));
  ASSERT_EQ(question.buttons.size(), 2U);
  EXPECT_EQ(question.buttons[0].title, q("Delete Sound"));
  EXPECT_EQ(question.buttons[0].role, AlertButton::Role::destructive);
  browser.prompts.press(1);
  EXPECT_NE(browser.library.wave(205), nullptr);
  browser.click(205, waveColumn("remove"));
  browser.prompts.press(0);
  browser.settle();
  EXPECT_EQ(browser.rows(), "Factory Snare Tom ");
}

TEST(WaveBrowser, LoopSectionWritesAndReadsBack) {
  Browser browser;
  browser.library.setWaveTempo(205, 150);
  browser.settle();
  browser.click(205, waveColumn("loop"));
  auto* tempo = browser.find<Stepper>("waveTempo");
  ASSERT_NE(tempo, nullptr);
  EXPECT_EQ(tempo->text(), q("15.0"));
  browser.list.setFocus();
  for (const char* next : {"waveTempo", "waveBeat", "waveStart", "waveEnd"}) {
    QTest::keyClick(browser.window.focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(browser.window.focusWidget()->objectName(), q(next));
  }
  QTest::keyClick(tempo, Qt::Key_Down);
  EXPECT_EQ(browser.library.wave(205)->tempo(), 200) << "to the nearer bound, whichever way";
  browser.library.setWaveTempo(205, 3995);
  browser.settle();
  EXPECT_EQ(tempo->text(), q("399.5"));
  QTest::keyClick(tempo, Qt::Key_Up);
  QTest::keyClick(tempo, Qt::Key_Up);
  EXPECT_EQ(browser.library.wave(205)->tempo(), 4000);
  auto* beat = browser.find<Stepper>("waveBeat");
  EXPECT_EQ(beat->text(), q("4")) << "absent";
  const QRect halves(beat->width() - 12, 0, 1, beat->height());
  QTest::mouseClick(beat, Qt::LeftButton, {}, halves.center() + QPoint(0, 6));
  EXPECT_EQ(browser.library.wave(205)->beat(), 3);
  QTest::keyClick(beat, Qt::Key_PageUp);
  QTest::keyClick(beat, Qt::Key_PageUp);
  EXPECT_EQ(browser.library.wave(205)->beat(), 16);

  auto* start = browser.find<NumberField>("waveStart");
  start->setFocus();
  start->selectAll();
  QTest::keyClicks(start, q("-640909"));
  browser.library.setWaveEnd(205, 7);
  browser.settle();
  EXPECT_EQ(start->text(), q("-640909")) << "a refresh leaves the edit alone";
  EXPECT_EQ(browser.find<NumberField>("waveEnd")->text(), q("7"));
  EXPECT_EQ(browser.library.wave(205)->start(), 0);
  QTest::keyClick(start, Qt::Key_Return);
  EXPECT_EQ(browser.library.wave(205)->start(), -640909);
  browser.library.setSelectedKitSlot(1);
  browser.click(205, waveColumn("name"));
  QTest::keyClick(tempo, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(tempo, q("95,5"));
  QTest::keyClick(tempo, Qt::Key_Return);
  EXPECT_EQ(browser.library.wave(205)->tempo(), 955);
  QTest::keyClick(tempo, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(tempo, q("7"));
  QTest::keyClick(tempo, Qt::Key_Up);
  EXPECT_EQ(browser.library.wave(205)->tempo(), 210) << "typed, brought into the range, and a step";
  EXPECT_FALSE(browser.library.kit(1)->isDirty) << "Return in a field is none on its row";
  for (const char* typed : {"", "12x", "9223372036854775808"}) {
    start->selectAll();
    QTest::keyClick(start, Qt::Key_Delete);
    QTest::keyClicks(start, q(typed));
    QTest::keyClick(start, Qt::Key_Return);
    EXPECT_EQ(start->text(), q("-640909")) << typed;
    EXPECT_EQ(browser.library.wave(205)->start(), -640909);
  }
  const auto type = [&](const char* typed) {
    start->selectAll();
    QTest::keyClicks(start, q(typed));
    return browser.library.wave(205)->start();
  };
  EXPECT_EQ(type("12"), -640909);
  QTest::keyClick(start, Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(browser.library.wave(205)->start(), 12) << "before the save that the key starts";
  EXPECT_EQ(type("34"), 12);
  browser.click(206, waveColumn("play"));
  EXPECT_EQ(browser.library.wave(205)->start(), 34) << "a button that leaves the focus where it is";
  EXPECT_EQ(type("56"), 34);
  QTest::mouseClick(start, Qt::LeftButton);
  EXPECT_EQ(browser.library.wave(205)->start(), 34) << "the cursor was placed";
  browser.search("tom");
  browser.search("");
  EXPECT_EQ(browser.rows(), "Factory Kick Snare Tom ") << "the section went with its row";
  EXPECT_EQ(browser.find<NumberField>("waveStart"), nullptr);
}

TEST(WaveBrowser, OpenedLoopSectionsComeInSightUnderTheirRow) {
  Tree card = loopCard();
  for (int id = 30; id < 80; ++id)
    card["WAVE/PRM/02/" + std::to_string(id) + ".spd"] = card["WAVE/PRM/02/05.spd"];
  Browser browser(card);
  const auto top = [&](WaveId id) { return browser.list.cellRect(browser.row(id), waveColumn("loop")).y(); };
  browser.list.verticalScrollBar()->setValue(800);
  const int row = top(231) - top(230);
  const auto inSight = static_cast<WaveId>(230 - (top(230) - 100) / row);  // somewhere in the upper part
  const int before = top(inSight);
  for (int press = 0; press < 2; ++press) {
    browser.click(inSight, waveColumn("loop"));
    EXPECT_EQ(top(inSight), before) << "the button left the pointer at press " << press;
  }
  const WaveId lowest = inSight + (browser.list.viewport()->height() - before) / row - 1;
  browser.click(lowest, waveColumn("loop"));
  const QWidget* section = browser.find("waveLoopSection");
  ASSERT_NE(section, nullptr);
  EXPECT_LE(section->geometry().bottom(), browser.list.viewport()->height());
  EXPECT_EQ(section->y(), top(lowest) + row);
}

TEST(WaveBrowser, TagsGiveWayToNames) {
  Browser browser;
  const auto width = [&](int column) { return browser.list.cellRect(browser.row(205), column).width(); };
  EXPECT_EQ(width(waveColumn("tag")), Look::px(120));
  const int before = width(waveColumn("name"));
  ASSERT_GE(before, Look::px(88));
  browser.window.resize(browser.window.width() - before + Look::px(68), 500);
  browser.settle();
  EXPECT_EQ(width(waveColumn("name")), Look::px(88));
  EXPECT_EQ(width(waveColumn("tag")), Look::px(100));
}

TEST(WaveBrowser, MenuCopiesAndDuplicates) {
  Browser browser;
  QMenu* menu = browser.menu(206);
  QStringList titles;
  for (const QAction* entry : menu->actions())
    titles << entry->text();
  EXPECT_EQ(titles, (QStringList{q("Add to Selected Pad"), q("Copy Sound"), q("Duplicate Sound")}));
  menu->close();
  browser.settle();
  browser.choose(206, "copySound");
  EXPECT_EQ(browser.library.copiedWaveIndex(), 206);
  browser.library.setSelectedKitSlot(2);
  browser.choose(206, "addToPad");
  EXPECT_EQ(browser.library.kit(2)->pad(0)->wave(), 206);
  browser.choose(207, "duplicateSound");
  browser.store.jobs.runAll();
  browser.settle();
  EXPECT_EQ(browser.rows(), "Factory Kick Snare Tom Tom Copy ");
  EXPECT_EQ(browser.cell(200, waveColumn("pending"), Qt::ToolTipRole), q("Not saved to the card yet"));
}

TEST(WaveBrowser, ImportsUnderTheFilteredTagAndTellsTheLastFailure) {
  Browser browser;
  writeFile(browser.store.files, "/home/Zoom.wav", "audio");
  browser.filter(1);
  auto* button = browser.find<QPushButton>("importWavButton");
  QTest::mouseClick(button, Qt::LeftButton);
  QTest::mouseClick(button, Qt::LeftButton);
  ASSERT_EQ(browser.prompts.files.size(), 1U) << "one panel at a time";
  browser.prompts.files[0].second({"/home/gone.wav", "/home/Zoom.wav", "/home/lost.wav"});
  EXPECT_EQ(browser.find<QLabel>("importProgress")->text(), q("Importing 1 of 3…"));
  EXPECT_TRUE(browser.find("importProgress")->isVisible());
  EXPECT_EQ(browser.caption(), q("1 sounds"));
  do
    browser.settle();
  while (browser.store.jobs.runWork() || browser.store.jobs.deliver());
  EXPECT_EQ(browser.rows(), "Snare Zoom ");
  ASSERT_EQ(browser.prompts.alerts.size(), 1U) << "once, when the batch has ended";
  EXPECT_EQ(browser.prompts.alerts[0].first.title, q("Couldn't Import"));
  EXPECT_TRUE(browser.prompts.alerts[0].first.text.contains(q("lost")))
      << browser.prompts.alerts[0].first.text.toStdString();
  browser.prompts.press(0);
  EXPECT_TRUE(browser.prompts.alerts.empty());
  EXPECT_EQ(browser.caption(), q("2 sounds"));
  EXPECT_FALSE(browser.find("importProgress")->isVisible());
}

TEST(WaveBrowser, BatchRenameEmptiesTheSelection) {
  Browser browser;
  browser.click(205, waveColumn("name"));
  browser.click(206, waveColumn("name"), Qt::ControlModifier);
  QTest::mouseClick(browser.find("renameSelectedButton"), Qt::LeftButton);
  auto* sheet = browser.view.findChild<BatchRenameSheet*>();
  ASSERT_NE(sheet, nullptr);
  QTest::keyClick(sheet, Qt::Key_Return);
  browser.settle();
  EXPECT_EQ(browser.rows(), "Factory Name 1 Name 2 Tom ");
  EXPECT_THAT(browser.view.selection(), IsEmpty());
  EXPECT_THAT(browser.list.selectedKeys(), IsEmpty());
  EXPECT_EQ(browser.window.focusWidget(), &browser.list) << "not the button beside the one that went";
}

TEST(WaveBrowser, AssistiveToolsReadAndPressEachCell) {
  Browser browser;
  QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&browser.list);
  const auto cell = [&](int row, int column) { return list->child(row * waveColumnCount + column); };
  EXPECT_EQ(cell(1, waveColumn("name"))->text(QAccessible::Name), q("Kick, Tag: Kick, 205"));
  EXPECT_EQ(cell(1, waveColumn("tag"))->text(QAccessible::Name), q("Tag: Kick"));
  EXPECT_EQ(cell(1, waveColumn("remove"))->role(), QAccessible::Button);
  EXPECT_EQ(cell(0, waveColumn("remove"))->role(), QAccessible::StaticText) << "a factory sample";
  QAccessibleInterface* loop = cell(1, waveColumn("loop"));
  EXPECT_FALSE(loop->state().checked);
  loop->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(browser.rows(), "Factory Kick + Snare Tom ");
  EXPECT_TRUE(cell(1, waveColumn("loop"))->state().checked);
  QAccessibleInterface* tempo = QAccessible::queryAccessibleInterface(browser.find<Stepper>("waveTempo"));
  EXPECT_EQ(tempo->role(), QAccessible::SpinBox);
  EXPECT_EQ(tempo->text(QAccessible::Value), q("90.0"));
  EXPECT_EQ(tempo->valueInterface()->maximumValue().toDouble(), 4000);
  tempo->valueInterface()->setCurrentValue(905);
  EXPECT_EQ(browser.library.wave(205)->tempo(), 905);
}

TEST(WaveBrowser, PlayCellFollowsThePlayer) {
  qputenv("SDL_AUDIODRIVER", "dummy");
  const TemporaryFolder folder;
  constexpr std::uint32_t bytes = 20 * 44100;  // ten seconds: longer than this case
  const auto number = [](std::uint32_t value) {
    std::string text;
    for (int shift = 0; shift < 32; shift += 8)
      text += static_cast<char>(value >> shift & 0xFF);
    return text;
  };
  std::ofstream(folder / "kick.wav", std::ios::binary)
      << "RIFF" << number(36 + bytes) << "WAVEfmt " << number(16) << number(0x00010001) << number(44100)
      << number(88200) << number(0x00100002) << "data" << number(bytes) << std::string(bytes, '\1');
  Browser browser;
  const auto spoken = [&](WaveId id) { return browser.cell(id, waveColumn("play"), Qt::AccessibleTextRole); };
  browser.player.play(folder / "kick.wav", 205);
  ASSERT_EQ(browser.player.playingIndex(), 205);
  EXPECT_EQ(spoken(205), q("Stop"));
  EXPECT_EQ(browser.cell(205, waveColumn("play"), waveRole::symbol), q("stop.fill"));
  EXPECT_EQ(spoken(206), q("Play"));
  browser.click(205, waveColumn("play"));
  EXPECT_EQ(browser.player.playingIndex(), std::nullopt);
  EXPECT_EQ(spoken(205), q("Play"));
  browser.player.play(folder / "kick.wav", 205);
  browser.click(206, waveColumn("name"));
  browser.key(Qt::Key_Space);
  EXPECT_EQ(browser.player.playingIndex(), std::nullopt) << "another sample, whose file isn't there, was asked for";
  browser.player.play(folder / "kick.wav", 205);
  browser.click(205, waveColumn("remove"));
  EXPECT_EQ(browser.player.playingIndex(), 205);
  browser.prompts.press(0);
  EXPECT_EQ(browser.player.playingIndex(), std::nullopt) << "deleted, nothing else could stop it";
}

TEST(WaveBrowser, PaintsForKitsOnlyTheAddButtonsColour) {
  Browser browser;
  struct Paints : QObject {
    bool eventFilter(QObject*, QEvent* event) override {
      count += event->type() == QEvent::Paint ? 1 : 0;
      return false;
    }
    int count = 0;
  } paints;
  browser.list.viewport()->installEventFilter(&paints);
  const auto painted = [&](const auto& change) {
    change();
    browser.settle();
    return std::exchange(paints.count, 0);
  };
  const Slot slot = browser.library.kits().front().slot;
  painted([&] { browser.library.setSelectedKitSlot(slot); });
  const auto add = [&] { return browser.list.rows().indexOf(browser.row(205)).siblingAtColumn(waveColumn("add")); };
  EXPECT_EQ(add().data(waveRole::tint).toInt(), static_cast<int>(WaveTint::red));
  EXPECT_EQ(painted([&] { browser.library.setPadLevel(slot, 0, 42); }), 0);
  EXPECT_EQ(painted([&] { browser.library.setSelectedPadIndex(3); }), 0);
  EXPECT_TRUE(browser.cell(205, waveColumn("add"), Qt::ToolTipRole).startsWith(q("Assign to pad 4 in ")));
  EXPECT_GT(painted([&] { browser.library.setSelectedKitSlot(std::nullopt); }), 0);
  EXPECT_EQ(add().data(waveRole::tint).toInt(), static_cast<int>(WaveTint::faint));
}

}  // namespace
}  // namespace tamboro::test
