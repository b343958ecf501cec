#include <gtest/gtest.h>

#include "views/controls/ElidedLabel.h"
#include "views/controls/FileViewer.h"
#include "views/settings/PreferencesView.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

struct HandFileViewer : FileViewer {
  std::vector<Path> shown;
  void showFolder(const Path& folder) override { shown.push_back(folder); }
};

/// The form over a store in memory, in the place of the window's own content.
struct Preferences : ::testing::Test, MainWindow {
  HandFileViewer viewer;
  PreferencesView* view = new PreferencesView(library, store.files, store.jobs, viewer, prompts);

  Preferences() { window.setCentralWidget(view); }
  bool canShowBackup() { return find("showBackupButton").isEnabled(); }
};

TEST_F(Preferences, TellTheOpenCardsPathAndWhyAnotherDidNotOpen) {
  show();
  EXPECT_FALSE(find("cardPath").isVisible());
  store.open();
  settle();
  EXPECT_EQ(find<ElidedLabel>("cardPath").text().toStdString(), TestStore::root.string());
  Tree damaged = sampleCard();
  damaged["KIT/kit001.spd"] = "";
  store.mountCard("fat:1234-ABCD", damaged);
  for (const auto& [folder, why] : {std::pair{"/home", ""}, {"/media/card", "KIT/kit001.spd is empty. "}}) {
    click("changeLocationButton");
    store.panel.answer(Path(folder));
    ASSERT_EQ(prompts.alerts.size(), 1U) << "the message over the workspace stands behind this window";
    EXPECT_TRUE(prompts.alerts[0].first.text.contains(q(why))) << prompts.alerts[0].first.text.toStdString();
    prompts.press(0);
  }
}

TEST_F(Preferences, EveryChangeTakesEffectAtOnce) {
  library.setAutoSaveInterval(42);
  show();
  EXPECT_EQ(shown("intervalPicker"), QString());
  EXPECT_EQ(library.autoSaveInterval(), 42) << "another interval shows no choice and stays";
  QTest::keyClick(&find("intervalPicker"), Qt::Key_Down);
  EXPECT_EQ(library.autoSaveInterval(), 60) << "the next one, not the first";
  click("autosaveSwitch");
  EXPECT_FALSE(library.autoSaveEnabled());
  click("backupSwitch");
  EXPECT_FALSE(library.backupBeforeSaveEnabled());
  library.setAutoSaveEnabled(true);
  library.setAutoSaveInterval(300);
  library.setBackupBeforeSaveEnabled(true);
  settle();
  for (const auto& [control, now] :
       {std::pair{"autosaveSwitch", "on"}, {"backupSwitch", "on"}, {"intervalPicker", "5 minutes"}})
    EXPECT_EQ(shown(control), q(now)) << control;
}

TEST_F(Preferences, TheBackupFolderIsLookedForOffTheMainThreadWhileSeen) {
  const auto change = [&](int pad) {
    library.setSelectedPadIndex(pad);
    settle();
  };
  change(1);
  EXPECT_EQ(store.jobs.waiting(), 0U) << "nobody sees the form";
  show();
  store.jobs.runAll();
  EXPECT_FALSE(canShowBackup());
  makeFolders(store.files, TestStore::backup);
  change(2);
  change(3);
  EXPECT_EQ(store.jobs.waiting(), 1U) << "a burst of changes asks once, and once more at its end";
  EXPECT_FALSE(canShowBackup());
  store.jobs.runAll();
  EXPECT_TRUE(canShowBackup());
  click("showBackupButton");
  EXPECT_EQ(viewer.shown, std::vector<Path>{TestStore::backup});
  change(4);
  delete view;
  store.jobs.runAll();  // an answer that finds the form gone
}

}  // namespace
}  // namespace tamboro::test
