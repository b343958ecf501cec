#include <gtest/gtest.h>

#include <optional>

#include "views/controls/ElidedLabel.h"
#include "views/controls/FileViewer.h"
#include "views/controls/MenuPicker.h"
#include "views/controls/Switch.h"
#include "views/settings/PreferencesView.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

struct HandFileViewer : FileViewer {
  std::vector<Path> shown;
  void showFolder(const Path& folder) override { shown.push_back(folder); }
};

/// The form in a window of its own, over a store in memory.
struct Preferences : ::testing::Test {
  TestStore store;
  HandFileViewer viewer;
  HandPrompts prompts;
  std::optional<PreferencesView> view;

  Preferences() { view.emplace(store.library, store.files, store.jobs, viewer, prompts); }
  void show() {
    view->show();
    store.jobs.runAll();
    settle();
  }
  template<class Kind = QWidget>
  Kind& find(const char* name) {
    return *view->findChild<Kind*>(QString::fromLatin1(name));
  }
  bool canShowBackup() { return find("showBackupButton").isEnabled(); }
};

TEST_F(Preferences, TellTheOpenCardsPathAndChangeIt) {
  show();
  EXPECT_FALSE(find("cardPath").isVisible());
  store.open();
  settle();
  auto& path = find<ElidedLabel>("cardPath");
  EXPECT_EQ(path.text().toStdString(), TestStore::root.string());
  QTest::mouseClick(&find("changeLocationButton"), Qt::LeftButton);
  store.panel.answer(Path("/home"));
  ASSERT_EQ(prompts.alerts.size(), 1U) << "the message over the workspace stands behind this window";
  EXPECT_EQ(prompts.alerts[0].first.text, store.library.lastError());
  Tree card = sampleCard();
  card["KIT/kit001.spd"] = "";
  store.mountCard("fat:1234-ABCD", card);
  QTest::mouseClick(&find("changeLocationButton"), Qt::LeftButton);
  store.panel.answer(Path("/media/card"));
  EXPECT_TRUE(prompts.alerts.at(1).first.text.contains(QStringLiteral("KIT/kit001.spd is empty. ")));
}

TEST_F(Preferences, EveryChangeTakesEffectAtOnce) {
  store.library.setAutoSaveInterval(42);
  show();
  EXPECT_EQ(find<MenuPicker>("intervalPicker").currentIndex(), -1);
  EXPECT_EQ(store.library.autoSaveInterval(), 42) << "another interval shows no choice and stays";
  QTest::keyClick(&find("intervalPicker"), Qt::Key_Down);
  EXPECT_EQ(store.library.autoSaveInterval(), 60) << "the next one, not the first";
  QTest::mouseClick(&find("autosaveSwitch"), Qt::LeftButton);
  EXPECT_FALSE(store.library.autoSaveEnabled());
  settle();
  EXPECT_FALSE(find("intervalPicker").isVisible());
  QTest::mouseClick(&find("backupSwitch"), Qt::LeftButton);
  EXPECT_FALSE(store.library.backupBeforeSaveEnabled());
  store.library.setAutoSaveEnabled(true);
  store.library.setAutoSaveInterval(300);
  store.library.setBackupBeforeSaveEnabled(true);
  settle();
  EXPECT_TRUE(find<Switch>("autosaveSwitch").isChecked());
  EXPECT_TRUE(find<Switch>("backupSwitch").isChecked());
  EXPECT_EQ(find<MenuPicker>("intervalPicker").currentText(), q("5 minutes"));
}

TEST_F(Preferences, TheBackupFolderIsLookedForOffTheMainThreadWhileSeen) {
  store.library.setSelectedPadIndex(1);
  settle();
  EXPECT_EQ(store.jobs.waiting(), 0U) << "nobody sees the form";
  show();
  EXPECT_FALSE(canShowBackup());
  makeFolders(store.files, TestStore::backup);
  for (const int index : {2, 3, 4}) {
    store.library.setSelectedPadIndex(index);
    settle();
  }
  EXPECT_EQ(store.jobs.waiting(), 1U) << "a burst of changes asks once, and once more at its end";
  EXPECT_FALSE(canShowBackup());
  store.jobs.runAll();
  EXPECT_TRUE(canShowBackup());
  QTest::mouseClick(&find("showBackupButton"), Qt::LeftButton);
  EXPECT_EQ(viewer.shown, std::vector<Path>{TestStore::backup});
  removeTree(store.files, TestStore::backup);
  view->hide();
  show();
  EXPECT_FALSE(canShowBackup());
  store.library.setSelectedPadIndex(5);
  settle();
  view.reset();
  store.jobs.runAll();  // an answer that finds the form gone
}

}  // namespace
}  // namespace tamboro::test
