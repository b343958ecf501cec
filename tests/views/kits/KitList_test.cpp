#include <gtest/gtest.h>

#include "views/kits/KitListRules.h"
#include "views/kits/KitListView.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

TEST(KitListRules, Texts) {
  EXPECT_EQ(kitChoiceText(3, {}), q("003 – (untitled)"));
  EXPECT_EQ(kitDeleteTitle(q("a\tb\n")), q("Delete kit \"a b \"?"));
  EXPECT_EQ(kitDeleteTitle(q("שלום!")), q("Delete kit \"\u2068שלום!\u2069\"?"))
      << "the sentence goes on from left to right";
  const std::pair<const char*, const char*> folders[] = {
      {"Rock", "Rock"}, {"", "Kit 4"}, {"A/B", "A_B"}, {"..", "Kit 4"}, {"...", "..."}};
  for (const auto& [name, folder] : folders)
    EXPECT_EQ(kitExportFolderName(3, q(name)), q(folder));
}

constexpr RowKey allRow(Slot slot) {
  return {KitListView::all, slot};
}

/// The kit list over the small card, whose first kit is open.
struct KitList : ::testing::Test {
  MainWindow main;
  RolandLibrary& library = main.library;
  ListInWindow kits{main, main.find<RowList>("kitList"), "kitMenu"};

  KitList() { main.showCard(); }
  void search(const char* text) {
    main.find<QLineEdit>("kitSearchText").setText(q(text));
    MainWindow::settle();
  }
  std::optional<Slot> shown() const {
    const auto keys = kits.list.selectedKeys();
    return keys.empty() ? std::nullopt : std::optional<Slot>(keys.begin()->record);
  }
  QLineEdit* nameField() const { return kits.list.findChild<QLineEdit*>(q("kitNameField")); }
  void choose(Slot slot, const char* entry) { MainWindow::choose(kits.menu(allRow(slot)), entry); }
};

TEST_F(KitList, SectionsFollowRecentKitsAndSearch) {
  EXPECT_EQ(kits.rows(), "[Recent] 1 [All Kits] 1 2 4 ");
  main.select(4);
  library.setKitSubName(1, "Street");
  const char* all = "[Recent] 4 1 [All Kits] 1 2 4 ";
  for (const auto& [text, found] :
       {std::pair{"JAZZ", "2 "}, {"02", "2 "}, {"street", "1 "}, {"rock street", ""}, {"", all}}) {
    search(text);
    EXPECT_EQ(kits.rows(), found) << text;
    EXPECT_EQ(library.selectedKitSlot(), 4) << "hidden, it stays selected";
  }
  EXPECT_EQ(shown(), 4);
  EXPECT_EQ(kits.cell(allRow(1), 0).data(Qt::AccessibleTextRole).toString(),
            q("Kit 1, Rock, Kit subtitle: Street, Unsaved changes"));
}

TEST_F(KitList, ClicksOpenAndTheArrowKeysOnlyWalk) {
  kits.click(allRow(2));
  EXPECT_EQ(library.selectedKitSlot(), 2);
  EXPECT_EQ(main.focus(), "padGrid");
  kits.click({KitListView::recent, 1});
  EXPECT_EQ(library.selectedKitSlot(), 1);
  EXPECT_EQ(kits.list.selectedKeys().size(), 1U);
  kits.list.setFocus();
  kits.key(Qt::Key_End);
  EXPECT_EQ(library.selectedKitSlot(), 1);
  kits.key(Qt::Key_Delete);
  ASSERT_EQ(main.prompts.alerts.size(), 1U);
  EXPECT_EQ(main.prompts.alerts.front().first.title, q("Delete kit \"Odd\"?"));
  main.prompts.press(1);
  kits.key(Qt::Key_Return);
  EXPECT_EQ(library.selectedKitSlot(), 4);
  kits.click(allRow(4), 0, Qt::ControlModifier);
  EXPECT_EQ(shown(), 4) << "nothing takes the selection away";
}

TEST_F(KitList, RenamesByKeyAndDoubleClickOnTheName) {
  kits.doubleClick(allRow(2), 0, {-80, 0});
  EXPECT_EQ(nameField(), nullptr) << "beside the name";
  for (const char* typed : {"Jazz", "Waltz long name"}) {
    kits.list.setFocus();
    kits.key(Qt::Key_F2);
    ASSERT_NE(nameField(), nullptr);
    EXPECT_EQ(nameField()->text(), q(typed)) << "asked for again, it keeps what was typed";
    nameField()->setText(q("Waltz long name"));
  }
  QTest::keyClick(nameField(), Qt::Key_Return);
  MainWindow::settle();
  EXPECT_EQ(library.kit(2)->name(), "Waltz lo");
  kits.doubleClick(allRow(4), 0, {0, -6});
  ASSERT_NE(nameField(), nullptr) << "the list moved under the click that opened the kit";
  EXPECT_EQ(nameField()->text(), q("Odd"));
}

TEST_F(KitList, TheMenuActsOnItsOwnRow) {
  choose(2, "Copy Pads");
  EXPECT_EQ(entries(kits.menu(allRow(2))), "Duplicate Kit|Copy Pads|Paste Pads|-|Rename|Export Kit…|-|Delete Kit");
  choose(4, "Paste Pads");
  EXPECT_EQ(library.kit(4)->pad(0)->wave(), 206);
  EXPECT_EQ(library.selectedKitSlot(), 1) << "the secondary button selects nothing";
  choose(2, "Rename");
  EXPECT_EQ(nameField()->text(), q("Jazz"));
  choose(2, "Duplicate Kit");
  EXPECT_EQ(library.selectedKitSlot(), 0);
  EXPECT_EQ(library.kit(0)->name(), "Jazz Cop");
}

TEST_F(KitList, DeletesAfterAskingAndOpensTheFirstLeft) {
  const auto answer = [&](Slot slot, std::size_t button) {
    choose(slot, "Delete Kit");
    const Alert& alert = main.prompts.alerts.front().first;
    EXPECT_EQ(alert.text, q("This can't be undone until you save to SPD-SX."));
    EXPECT_EQ(alert.buttons[0].role, AlertButton::Role::destructive);
    main.prompts.press(button);
    MainWindow::settle();
  };
  answer(2, 1);
  EXPECT_NE(library.kit(2), nullptr);
  main.select(4);
  answer(2, 0);
  EXPECT_EQ(library.kit(2), nullptr);
  EXPECT_EQ(library.selectedKitSlot(), 4) << "another kit than the selected one";
  answer(4, 0);
  EXPECT_EQ(library.selectedKitSlot(), 1);
  answer(1, 0);
  EXPECT_EQ(library.selectedKitSlot(), std::nullopt);
  EXPECT_EQ(kits.rows(), "");
}

TEST_F(KitList, ExportsIntoAFolderOfTheKitsName) {
  makeFolders(main.store.files, "/home/out");
  const auto exportTo = [&](Slot slot, HandPrompts::Folder folder) {
    choose(slot, "Export Kit…");
    main.prompts.folders.back().second(std::move(folder));
    main.store.jobs.runAll();
  };
  exportTo(1, std::nullopt);
  exportTo(1, "/home/out");
  EXPECT_TRUE(readTree(main.store.files, "/home/out/Rock").contains("kit001.spd"));
  EXPECT_TRUE(main.prompts.alerts.empty()) << "success is silent";
  exportTo(4, "/home/out/Rock/kit001.spd");
  ASSERT_EQ(main.prompts.alerts.size(), 1U);
  EXPECT_EQ(main.prompts.alerts[0].first.title, q("Couldn't Export"));
}

TEST_F(KitList, NewKitSheetCopiesOrStartsBlank) {
  main.click("newKitButton");
  QTest::keyClick(&main.find("newKitSheet"), Qt::Key_Escape);
  MainWindow::settle();
  EXPECT_EQ(library.kits().size(), 3U);
  main.click("newKitButton");
  main.use("basedOn", "002 – Jazz");
  QTest::keyClick(&main.find("basedOn"), Qt::Key_Return);
  MainWindow::settle();
  EXPECT_EQ(library.selectedKitSlot(), 0);
  EXPECT_EQ(library.kit(0)->name(), "Jazz Cop");
  main.click("newKitButton");
  main.click("createButton");
  EXPECT_EQ(library.selectedKitSlot(), 3);
  EXPECT_EQ(library.kit(3)->name(), "") << "at Blank Kit again";
}

}  // namespace
}  // namespace tamboro::test
