#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include "support/TestStore.h"
#include "views/HandPrompts.h"
#include "views/Settle.h"
#include "views/kits/KitListView.h"
#include "views/kits/NewKitSheet.h"
#include "views/lists/RowList.h"

namespace tamboro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

QString q(const char* text) {
  return QString::fromUtf8(text);
}

KitRowValues kitValues(Slot slot, const char* name, const char* subName, DottedI dottedI = DottedI::isPlainI) {
  return {.slot = slot,
          .node = {},
          .name = q(name),
          .subName = q(subName),
          .foldedName = searchFold(name, dottedI),
          .foldedSubName = searchFold(subName, dottedI)};
}

TEST(KitListRules, SearchLooksIntoNamesAndSlots) {
  const std::vector<KitRowValues> kits{kitValues(7, "Samba", "Street parade"), kitValues(70, "STRASSE", ""),
                                       kitValues(107, "Samba 2", "Ele\u0301ctrico")};
  const auto found = [&](const char* text) { return filteredKits(kits, q(text), DottedI::isPlainI); };
  EXPECT_THAT(found(""), ElementsAre(7, 70, 107));
  EXPECT_THAT(found("07"), ElementsAre(7, 70, 107));
  EXPECT_THAT(found("007"), ElementsAre(7));
  EXPECT_THAT(found("sAMBA"), ElementsAre(7, 107));
  EXPECT_THAT(found("PARADE"), ElementsAre(7));
  EXPECT_THAT(found("Straße"), ElementsAre(70));
  EXPECT_THAT(found("\u00C9CTR"), ElementsAre(107)) << "one letter, composed or not";
  EXPECT_THAT(found("samba street"), IsEmpty()) << "a match doesn't run from the name into the subtitle";
}

TEST(KitListRules, TurkishTellsTheTwoLettersI) {
  for (const auto& [dottedI, isFound] : {std::pair(DottedI::isPlainI, true), std::pair(DottedI::isOwnLetter, false)}) {
    const std::vector<KitRowValues> kits{kitValues(1, "INTRO", "", dottedI)};
    EXPECT_EQ(filteredKits(kits, q("intro"), dottedI).size(), isFound ? 1U : 0U);
    EXPECT_EQ(filteredKits(kits, q("\u0131ntro"), dottedI).size(), isFound ? 0U : 1U);
  }
}

TEST(KitListRules, RecentKitsComeInTheOrderOfUse) {
  const std::vector<KitRowValues> kits{kitValues(1, "A", ""), kitValues(2, "B", ""), kitValues(5, "C", "")};
  EXPECT_THAT(recentKits(kits, {5, 3, 1}, {}), ElementsAre(5, 1));
  EXPECT_THAT(recentKits(kits, {5, 1}, q("A")), IsEmpty());
}

TEST(KitListRules, Texts) {
  EXPECT_EQ(kitSlotText(7), q("007"));
  EXPECT_EQ(kitSlotText(1234), q("1234"));
  EXPECT_EQ(kitChoiceText(3, {}), q("003 – (untitled)"));
  EXPECT_EQ(kitDeleteTitle(q("Rock")), q("Delete kit \"Rock\"?"));
  EXPECT_EQ(kitDeleteTitle({}), q("Delete kit \"(untitled)\"?"));
  EXPECT_EQ(kitDeleteTitle(q("a\tb\n")), q("Delete kit \"a b \"?"));
  EXPECT_EQ(kitDeleteTitle(q("שלום!")), q("Delete kit \"\u2068שלום!\u2069\"?"))
      << "the sentence goes on from left to right";
  const std::pair<const char*, const char*> folders[] = {
      {"Rock", "Rock"}, {"", "Kit 4"}, {"A/B", "A_B"}, {"..", "Kit 4"}, {"...", "..."}};
  for (const auto& [name, folder] : folders)
    EXPECT_EQ(kitExportFolderName(3, q(name)), q(folder));
  KitRowValues kit = kitValues(3, "", "");
  EXPECT_EQ(kitSpokenText(kit), q("Kit 3, (untitled)"));
  kit = kitValues(3, "Rock", "Sub");
  kit.isDirty = true;
  EXPECT_EQ(kitSpokenText(kit), q("Kit 3, Rock, Kit subtitle: Sub, Unsaved changes"));
}

/// The sidebar in a window of its own, over the small card.
struct Sidebar {
  TestStore store;
  HandPrompts prompts;
  QWidget window;
  KitListView view;
  RowList& list;

  Sidebar() : view(store.library, prompts), list(*view.findChild<RowList*>()) {
    auto* rows = new QVBoxLayout(&window);
    rows->addWidget(&view);
    window.resize(204, 500);
  }
  void show(const Tree& card = sampleCard()) {
    store.open(card);
    settle();
    window.show();
    window.activateWindow();
    settle();
  }
  static void settle() { test::settle(); }
  /// Headers in brackets, rows by slot.
  std::string rows() const {
    std::string text;
    for (const RowKey& row : list.rows().rows())
      text += (row.kind == RowKey::Kind::header ? "[" + list.rows().indexOf(row).data().toString().toStdString() + "]"
                                                : std::to_string(row.record)) +
              " ";
    return text;
  }
  QPoint place(const RowKey& row, QPoint inRow = {90, 12}) const {
    return list.visualRect(list.rows().indexOf(row)).topLeft() + inRow;
  }
  void click(const RowKey& row) { QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place(row)); }
  void doubleClick(const RowKey& row, QPoint inRow = {90, 12}) {
    const QPoint point = place(row, inRow);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, point);
    settle();
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, point);
    settle();
  }
  std::optional<Slot> shownSelection() const {
    const auto keys = list.selectedKeys();
    return keys.empty() ? std::nullopt : std::optional<Slot>(keys.begin()->record);
  }
  QMenu& menu(const RowKey& row) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, place(row), list.viewport()->mapToGlobal(place(row)));
    QApplication::sendEvent(list.viewport(), &event);
    return *view.window()->findChild<QMenu*>(q("kitMenu"));
  }
  void choose(Slot slot, const char* entry) {
    QMenu& open = menu({KitListView::all, slot});
    QAction* action = open.findChild<QAction*>(q(entry));
    if (!action) throw std::runtime_error(entry);
    open.setActiveAction(action);
    QTest::keyClick(&open, Qt::Key_Return);
    settle();
  }
  void search(const char* text) {
    auto* field = view.findChild<QLineEdit*>(q("kitSearchText"));
    field->setText(q(text));
    settle();
  }
  QLineEdit* nameField() const { return view.findChild<QLineEdit*>(q("kitNameField")); }
};

constexpr RowKey allRow(Slot slot) {
  return {KitListView::all, slot};
}
constexpr RowKey recentRow(Slot slot) {
  return {KitListView::recent, slot};
}

TEST(KitList, SectionsFollowRecentKitsAndSearch) {
  Sidebar sidebar;
  sidebar.show();
  EXPECT_EQ(sidebar.rows(), "1 2 4 ");
  sidebar.store.library.recordRecentKit(4);
  sidebar.store.library.recordRecentKit(2);
  sidebar.store.library.recordRecentKit(77);
  sidebar.settle();
  EXPECT_EQ(sidebar.rows(), "[Recent] 2 4 [All Kits] 1 2 4 ");
  sidebar.search("JAZZ");
  EXPECT_EQ(sidebar.rows(), "2 ");
  QTest::mouseClick(sidebar.view.findChild<QWidget*>(q("kitSearchClear")), Qt::LeftButton);
  EXPECT_EQ(sidebar.rows(), "[Recent] 2 4 [All Kits] 1 2 4 ");
  EXPECT_FALSE(sidebar.view.findChild<QWidget*>(q("kitSearchClear"))->isVisible());
  sidebar.search("no such");
  EXPECT_EQ(sidebar.rows(), "");
}

TEST(KitList, FirstAppearanceSelectsTheFirstKitUnlessOneIsSelected) {
  Sidebar fresh;
  EXPECT_EQ(fresh.store.library.selectedKitSlot(), std::nullopt);
  fresh.show();
  EXPECT_EQ(fresh.store.library.selectedKitSlot(), 1);
  EXPECT_EQ(fresh.shownSelection(), 1);
  fresh.store.library.setSelectedKitSlot(std::nullopt);
  fresh.window.hide();
  fresh.window.show();
  fresh.settle();
  EXPECT_EQ(fresh.store.library.selectedKitSlot(), std::nullopt) << "the first time only";
  for (const Slot remembered : {4, 77}) {
    Sidebar sidebar;
    sidebar.store.library.setSelectedKitSlot(remembered);
    sidebar.show();
    EXPECT_EQ(sidebar.store.library.selectedKitSlot(), remembered);
    EXPECT_EQ(sidebar.shownSelection(), remembered == 4 ? std::optional<Slot>(4) : std::nullopt);
  }
}

TEST(KitList, SelectionGoesBothWays) {
  Sidebar sidebar;
  sidebar.store.library.recordRecentKit(4);
  sidebar.show();
  RolandLibrary& library = sidebar.store.library;
  sidebar.click(allRow(2));
  EXPECT_EQ(library.selectedKitSlot(), 2);
  sidebar.click(recentRow(4));
  sidebar.settle();
  EXPECT_EQ(library.selectedKitSlot(), 4);
  EXPECT_EQ(sidebar.list.selectedKeys(), std::set<RowKey>{allRow(4)});
  sidebar.list.setFocus();
  QTest::keyClick(&sidebar.list, Qt::Key_Home);
  QTest::keyClick(&sidebar.list, Qt::Key_Up);
  EXPECT_EQ(library.selectedKitSlot(), 4) << "the cursor only walks";
  library.setKitLevel(4, 1);
  library.recordRecentKit(2);
  sidebar.settle();
  QSignalSpy handedOn(&sidebar.view, &KitListView::handsKeyboardOn);
  QTest::keyClick(&sidebar.list, Qt::Key_Return);
  EXPECT_EQ(library.selectedKitSlot(), 1) << "it stayed out of the recent kits, and where it was under other rows";
  EXPECT_EQ(handedOn.count(), 1);
  QTest::keyClicks(&sidebar.list, q("o"));
  EXPECT_EQ(library.selectedKitSlot(), 1);
  QTest::keyClick(&sidebar.list, Qt::Key_Delete);
  ASSERT_EQ(sidebar.prompts.alerts.size(), 1U);
  EXPECT_EQ(sidebar.prompts.alerts.front().first.title, kitDeleteTitle(q("Odd")));
  sidebar.prompts.press(1);
  QTest::keyClick(&sidebar.list, Qt::Key_F2);
  ASSERT_NE(sidebar.nameField(), nullptr);
  QTest::keyClick(sidebar.nameField(), Qt::Key_Return);
  library.setSelectedKitSlot(2);
  sidebar.settle();
  EXPECT_EQ(sidebar.shownSelection(), 2);
  QTest::mouseClick(sidebar.list.viewport(), Qt::LeftButton, Qt::ControlModifier, sidebar.place(allRow(2)));
  QTest::mouseClick(sidebar.list.viewport(), Qt::LeftButton, {}, QPoint(90, 480));
  EXPECT_EQ(library.selectedKitSlot(), 2) << "nothing takes the selection away";
  EXPECT_EQ(sidebar.shownSelection(), 2);
  sidebar.search("rock");
  EXPECT_EQ(library.selectedKitSlot(), 2) << "hidden, it stays selected";
  sidebar.search("");
  EXPECT_EQ(sidebar.shownSelection(), 2);
}

TEST(KitList, RenamesOnReturnOnly) {
  Sidebar sidebar;
  sidebar.show();
  sidebar.doubleClick(allRow(2), {20, 20});
  EXPECT_EQ(sidebar.nameField(), nullptr) << "beside the name";
  sidebar.doubleClick(allRow(2));
  ASSERT_NE(sidebar.nameField(), nullptr);
  QLineEdit& field = *sidebar.nameField();
  EXPECT_EQ(field.text(), q("Jazz"));
  EXPECT_EQ(field.accessibleName(), q("Kit name"));
  EXPECT_EQ(field.placeholderText(), q("Kit Name"));
  field.setText(q("Waltz long name"));
  QTest::keyClick(&field, Qt::Key_Escape);
  QTest::keyClick(&field, Qt::Key_Down);
  sidebar.list.setFocus();
  sidebar.settle();
  EXPECT_TRUE(field.isVisible());
  EXPECT_EQ(sidebar.store.library.selectedKitSlot(), 2);
  EXPECT_EQ(sidebar.store.library.kit(2)->name(), "Jazz");
  field.setFocus();
  QTest::keyClick(&field, Qt::Key_Return);
  sidebar.settle();
  EXPECT_EQ(sidebar.nameField(), nullptr);
  EXPECT_EQ(sidebar.store.library.kit(2)->name(), "Waltz lo");
  EXPECT_TRUE(sidebar.list.hasFocus());
  EXPECT_EQ(sidebar.list.rows().indexOf(allRow(2)).data().toString(), q("Waltz lo"));
}

TEST(KitList, RefreshKeepsEditSelectionAndCursor) {
  Sidebar sidebar;
  sidebar.show();
  sidebar.choose(2, "renameKit");
  QLineEdit& field = *sidebar.nameField();
  field.setText(q("Half wr"));
  field.setCursorPosition(4);
  sidebar.store.library.recordRecentKit(4);
  sidebar.store.library.setKitName(2, "Other");
  sidebar.store.library.setKitLevel(1, 3);
  sidebar.settle();
  EXPECT_EQ(sidebar.rows(), "[Recent] 4 [All Kits] 1 2 4 ");
  ASSERT_EQ(sidebar.nameField(), &field);
  EXPECT_EQ(field.text(), q("Half wr"));
  EXPECT_EQ(field.cursorPosition(), 4);
  EXPECT_EQ(field.window()->focusWidget(), &field) << "the platform without a screen leaves the window inactive";
  EXPECT_EQ(sidebar.shownSelection(), 1);
  const QRect row = sidebar.list.visualRect(sidebar.list.rows().indexOf(allRow(2)));
  EXPECT_TRUE(row.contains(field.geometry())) << "it went with its row";
  sidebar.store.library.deleteKit(2);
  sidebar.settle();
  EXPECT_EQ(sidebar.nameField(), nullptr) << "gone with its row";
}

TEST(KitList, DoubleClickKeepsToItsRowWhenTheListMoves) {
  Sidebar sidebar;
  sidebar.show();
  QObject::connect(&sidebar.store.library, &RolandLibrary::published, &sidebar.view,
                   [&](RolandLibrary::Property property) {
                     if (property == RolandLibrary::Property::selectedKitSlot)
                       sidebar.store.library.recordRecentKit(*sidebar.store.library.selectedKitSlot());
                   });
  sidebar.doubleClick(allRow(4));
  EXPECT_EQ(sidebar.rows(), "[Recent] 4 [All Kits] 1 2 4 ");
  ASSERT_NE(sidebar.nameField(), nullptr);
  EXPECT_EQ(sidebar.nameField()->text(), q("Odd"));
  // So does one that is too far from the first to count as a double click, and the third.
  QTest::mouseClick(sidebar.list.viewport(), Qt::LeftButton, {}, sidebar.place(allRow(2)) - QPoint(0, 40));
  EXPECT_EQ(sidebar.store.library.selectedKitSlot(), 4);
}

TEST(KitList, KeepsItsPlaceWhenRowsComeAbove) {
  Tree card = sampleCard();
  for (int slot = 100; slot < 200; ++slot)
    card["KIT/kit" + std::to_string(slot) + ".spd"] = card["KIT/kit002.spd"];
  Sidebar sidebar;
  sidebar.show(card);
  sidebar.store.library.setSelectedKitSlot(150);
  sidebar.settle();
  EXPECT_TRUE(sidebar.list.viewport()->rect().contains(sidebar.place(allRow(150)))) << "an outer selection is revealed";
  const QPoint before = sidebar.place(allRow(150));
  sidebar.store.library.recordRecentKit(150);
  sidebar.settle();
  EXPECT_EQ(sidebar.place(allRow(150)), before);
}

TEST(KitList, MenuHasItsEntriesAndHelp) {
  Sidebar sidebar;
  sidebar.show();
  const auto titles = [&] {
    QStringList rows;
    for (const QAction* entry : sidebar.menu(allRow(4)).actions())
      rows << (entry->isSeparator() ? q("-") : entry->text());
    sidebar.view.window()->findChild<QMenu*>()->close();
    sidebar.settle();
    return rows.join(q("|"));
  };
  EXPECT_EQ(titles(), q("Duplicate Kit|Copy Pads|-|Rename|Export Kit…|-|Delete Kit"));
  sidebar.choose(1, "copyPads");
  EXPECT_EQ(titles(), q("Duplicate Kit|Copy Pads|Paste Pads|-|Rename|Export Kit…|-|Delete Kit"));
  QStringList help;
  for (const QAction* entry : sidebar.menu(allRow(4)).actions())
    if (!entry->isSeparator()) help << entry->toolTip();
  EXPECT_EQ(help, (QStringList{q("Make a copy of this kit with all its pads"), q("Copy all pads from this kit"),
                               q("Paste the copied pads here"), q("Double-click to rename directly"),
                               q("Save this kit and the samples it uses as a standalone folder, for backup or sharing"),
                               q("This can't be undone until you save to SPD-SX")}));
  EXPECT_EQ(sidebar.store.library.selectedKitSlot(), 1) << "the secondary button selects nothing";
}

TEST(KitList, MenuActsOnItsOwnRow) {
  Sidebar sidebar;
  sidebar.show();
  RolandLibrary& library = sidebar.store.library;
  sidebar.choose(1, "copyPads");
  sidebar.choose(2, "pastePads");
  EXPECT_EQ(library.kit(2)->pad(0)->wave(), 205);
  EXPECT_EQ(library.kit(2)->padCount(), 3);
  sidebar.choose(2, "duplicateKit");
  EXPECT_EQ(library.selectedKitSlot(), 0);
  EXPECT_EQ(library.kit(0)->name(), "Jazz Cop");
  EXPECT_EQ(sidebar.shownSelection(), 0);
}

TEST(KitList, DeletesAfterAsking) {
  Sidebar sidebar;
  sidebar.show();
  RolandLibrary& library = sidebar.store.library;
  const auto answer = [&](Slot slot, std::size_t button) {
    sidebar.choose(slot, "deleteKit");
    sidebar.prompts.press(button);
    sidebar.settle();
  };
  sidebar.choose(2, "deleteKit");
  const Alert alert = sidebar.prompts.alerts.front().first;
  EXPECT_EQ(alert.title, q("Delete kit \"Jazz\"?"));
  EXPECT_EQ(alert.text, q("This can't be undone until you save to SPD-SX."));
  ASSERT_EQ(alert.buttons.size(), 2U);
  EXPECT_EQ(alert.buttons[0].title, q("Delete"));
  EXPECT_EQ(alert.buttons[0].role, AlertButton::Role::destructive);
  EXPECT_EQ(alert.buttons[1].title, q("Cancel"));
  EXPECT_EQ(alert.buttons[1].role, AlertButton::Role::cancel);
  sidebar.prompts.press(1);
  EXPECT_EQ(library.kits().size(), 3U);
  answer(2, 0);
  EXPECT_EQ(sidebar.rows(), "1 4 ");
  EXPECT_EQ(library.selectedKitSlot(), 1) << "another kit than the selected one";
  answer(1, 0);
  EXPECT_EQ(library.selectedKitSlot(), 4);
  answer(4, 0);
  EXPECT_EQ(library.selectedKitSlot(), std::nullopt);
  EXPECT_EQ(sidebar.rows(), "");
}

TEST(KitList, ExportsIntoAFolderOfTheKitsName) {
  Sidebar sidebar;
  sidebar.show();
  makeFolders(sidebar.store.files, "/home/out");
  sidebar.choose(1, "exportKit");
  ASSERT_EQ(sidebar.prompts.folders.size(), 1U);
  EXPECT_EQ(sidebar.prompts.folders[0].first.prompt, q("Export"));
  EXPECT_EQ(sidebar.prompts.folders[0].first.message, q("Choose a folder to export the kit to"));
  sidebar.prompts.folders[0].second(std::nullopt);
  EXPECT_EQ(sidebar.store.jobs.waiting(), 0U);
  sidebar.prompts.folders[0].second("/home/out");
  sidebar.store.jobs.runAll();
  EXPECT_TRUE(readTree(sidebar.store.files, "/home/out/Rock").contains("kit001.spd"));
  EXPECT_TRUE(sidebar.prompts.alerts.empty()) << "success is silent";

  sidebar.choose(4, "exportKit");
  sidebar.prompts.folders[1].second("/home/out/Rock/kit001.spd");
  sidebar.store.jobs.runAll();
  ASSERT_EQ(sidebar.prompts.alerts.size(), 1U);
  EXPECT_EQ(sidebar.prompts.alerts[0].first.title, q("Couldn't Export"));
  EXPECT_FALSE(sidebar.prompts.alerts[0].first.text.isEmpty());
  ASSERT_EQ(sidebar.prompts.alerts[0].first.buttons.size(), 1U);
  EXPECT_EQ(sidebar.prompts.alerts[0].first.buttons[0].title, q("OK"));
}

TEST(KitList, NewKitSheetCopiesOrStartsBlank) {
  Sidebar sidebar;
  sidebar.show();
  RolandLibrary& library = sidebar.store.library;
  library.setKitName(4, "");
  const auto open = [&] {
    QTest::mouseClick(sidebar.view.findChild<QPushButton*>(q("newKitButton")), Qt::LeftButton);
    sidebar.settle();
    return sidebar.view.findChild<NewKitSheet*>();
  };
  NewKitSheet* sheet = open();
  ASSERT_NE(sheet, nullptr);
  auto* choice = sheet->findChild<QComboBox*>(q("basedOn"));
  QStringList choices;
  for (int row = 0; row < choice->count(); ++row)
    choices << choice->itemText(row);
  EXPECT_EQ(choices, (QStringList{q("Blank Kit"), q("001 – Rock"), q("002 – Jazz"), q("004 – (untitled)")}));
  EXPECT_EQ(sheet->width(), 360);
  QTest::keyClick(sheet, Qt::Key_Escape);
  sidebar.settle();
  EXPECT_EQ(library.kits().size(), 3U);

  sheet = open();
  sheet->findChild<QComboBox*>(q("basedOn"))->setCurrentIndex(2);
  QTest::keyClick(sheet->findChild<QComboBox*>(q("basedOn")), Qt::Key_Return);
  sidebar.settle();
  EXPECT_EQ(library.selectedKitSlot(), 0);
  EXPECT_EQ(library.kit(0)->name(), "Jazz Cop");

  sheet = open();
  EXPECT_EQ(sheet->templateSlot(), std::nullopt) << "at Blank Kit again";
  QTest::mouseClick(sheet->findChild<QPushButton*>(q("createButton")), Qt::LeftButton);
  sidebar.settle();
  EXPECT_EQ(sidebar.view.findChild<NewKitSheet*>(), nullptr);
  EXPECT_EQ(library.selectedKitSlot(), 3);
  EXPECT_EQ(library.kit(3)->name(), "");
}

TEST(KitList, AssistiveToolsReadAndPressRows) {
  Sidebar sidebar;
  sidebar.store.library.recordRecentKit(4);
  sidebar.show();
  sidebar.store.library.setKitLevel(2, 3);
  sidebar.settle();
  QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&sidebar.list);
  ASSERT_EQ(list->childCount(), 6);
  EXPECT_EQ(list->text(QAccessible::Name), q("Kits"));
  EXPECT_EQ(list->child(0)->role(), QAccessible::Heading);
  EXPECT_EQ(list->child(0)->text(QAccessible::Name), q("Recent"));
  QAccessibleInterface* row = list->child(4);
  EXPECT_EQ(row->role(), QAccessible::Button);
  EXPECT_EQ(row->text(QAccessible::Name), q("Kit 2, Jazz, Kit subtitle: Sub, Unsaved changes"));
  EXPECT_EQ(row->childCount(), 0);
  EXPECT_EQ(list->indexOfChild(row), 4);
  EXPECT_EQ(list->childAt(row->rect().center().x(), row->rect().center().y()), row);
  row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(sidebar.store.library.selectedKitSlot(), 2);
  EXPECT_TRUE(row->state().selected);
  list->child(1)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(sidebar.store.library.selectedKitSlot(), 4) << "a recent kit";
  row->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
  ASSERT_NE(sidebar.view.window()->findChild<QMenu*>(q("kitMenu")), nullptr);
  sidebar.view.window()->findChild<QMenu*>(q("kitMenu"))->close();
  sidebar.choose(2, "renameKit");
  ASSERT_EQ(list->childCount(), 7);
  EXPECT_EQ(list->child(6)->text(QAccessible::Name), q("Kit name"));
  EXPECT_EQ(list->child(6)->parent(), list);
  sidebar.search("rock");
  EXPECT_EQ(list->childCount(), 1) << "rows from before a reset are forgotten";
  EXPECT_EQ(list->child(0)->text(QAccessible::Name), q("Kit 1, Rock, Kit subtitle: Sub"));
}

}  // namespace
}  // namespace tamboro::test
