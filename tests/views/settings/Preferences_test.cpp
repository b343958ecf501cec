#include "views/settings/PreferencesView.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <optional>

#include "support/TestStore.h"
#include "views/HandPrompts.h"
#include "views/controls/ElidedLabel.h"
#include "views/controls/FileViewer.h"
#include "views/controls/MenuPicker.h"
#include "views/controls/Switch.h"

namespace tamboro::test {
namespace {

struct HandFileViewer : FileViewer {
  std::vector<Path> shown;
  void showFolder(const Path& folder) override { shown.push_back(folder); }
};

/// The form in a window of its own, over a store in memory.
struct Form {
  TestStore store;
  HandFileViewer viewer;
  HandPrompts prompts;
  std::optional<PreferencesView> view;

  Form() { view.emplace(store.library, store.files, store.jobs, viewer, prompts); }
  void show() {
    view->show();
    store.jobs.runAll();
  }
  static void settle() { QApplication::processEvents(); }
  template<class Kind = QWidget>
  Kind& find(const char* name) {
    return *view->findChild<Kind*>(QString::fromLatin1(name));
  }
  bool canShowBackup() { return find("showBackupButton").isEnabled(); }
};

TEST(PreferencesView, TellsTheOpenCardsPathWithItsMiddleCut) {
  Form form;
  form.show();
  EXPECT_FALSE(form.find("cardPath").isVisible());
  EXPECT_TRUE(form.find("changeLocationButton").isVisible());
  form.store.open();
  form.settle();
  auto& path = form.find<ElidedLabel>("cardPath");
  EXPECT_TRUE(path.isVisible());
  EXPECT_EQ(path.text().toStdString(), TestStore::root.string());
  const QString whole = QStringLiteral("/media/") + QString(200, QLatin1Char('x')) + QStringLiteral("/Roland/SPD-SX");
  const int width = form.view->sizeHint().width();
  path.setText(whole);
  form.settle();
  EXPECT_TRUE(path.shownText().startsWith(QStringLiteral("/media/")));
  EXPECT_TRUE(path.shownText().endsWith(QStringLiteral("/SPD-SX")));
  EXPECT_EQ(form.view->sizeHint().width(), width) << "a long path widens nothing";
  QTest::mouseClick(&form.find("changeLocationButton"), Qt::LeftButton);
  EXPECT_EQ(form.store.panel.requests.size(), 1U);
  form.store.panel.answer(Path("/home"));
  ASSERT_EQ(form.prompts.alerts.size(), 1U) << "the message over the workspace stands behind this window";
  EXPECT_EQ(form.prompts.alerts[0].first.text, form.store.library.lastError());
  Tree card = sampleCard();
  card["KIT/kit001.spd"] = "";
  form.store.mountCard("fat:1234-ABCD", card);
  QTest::mouseClick(&form.find("changeLocationButton"), Qt::LeftButton);
  form.store.panel.answer(Path("/media/card"));
  EXPECT_TRUE(form.prompts.alerts.at(1).first.text.contains(QStringLiteral("KIT/kit001.spd is empty. ")));
}

TEST(PreferencesView, EveryChangeTakesEffectAtOnce) {
  Form form;
  form.show();
  QTest::keyClick(&form.find("intervalPicker"), Qt::Key_Down);
  EXPECT_EQ(form.store.defaults.real(RolandLibrary::autoSaveIntervalKey), 60.0) << "the row below 30 seconds";
  EXPECT_EQ(form.store.timers.periods(), std::vector{60.0});
  QTest::mouseClick(&form.find("autosaveSwitch"), Qt::LeftButton);
  EXPECT_EQ(form.store.defaults.boolean(RolandLibrary::autoSaveEnabledKey), false);
  EXPECT_TRUE(form.store.timers.periods().empty());
  QTest::mouseClick(&form.find("backupSwitch"), Qt::LeftButton);
  EXPECT_EQ(form.store.defaults.boolean(RolandLibrary::backupBeforeSaveKey), false);

  form.store.library.setAutoSaveEnabled(true);
  form.store.library.setBackupBeforeSaveEnabled(true);
  form.settle();
  EXPECT_TRUE(form.find<Switch>("autosaveSwitch").isChecked());
  EXPECT_TRUE(form.find<Switch>("backupSwitch").isChecked());
}

TEST(PreferencesView, IntervalRestsWhileAutosaveIsOff) {
  Form form;
  form.show();
  form.store.library.setAutoSaveInterval(300);
  form.store.library.setAutoSaveEnabled(false);
  form.settle();
  EXPECT_FALSE(form.find("intervalPicker").isVisible());
  EXPECT_FALSE(form.find("intervalPickerTitle").isVisible());
  form.store.library.setAutoSaveEnabled(true);
  form.settle();
  EXPECT_TRUE(form.find("intervalPicker").isVisible());
  EXPECT_EQ(form.find<MenuPicker>("intervalPicker").currentText(), QStringLiteral("5 minutes"));
}

TEST(PreferencesView, AnotherIntervalShowsNoChoiceAndStays) {
  for (const double stored : {42.0, 15.5, 0.0, -1.0, 1e300}) {
    Form form;
    form.store.library.setAutoSaveInterval(stored);
    form.show();
    form.settle();
    EXPECT_EQ(form.find<MenuPicker>("intervalPicker").currentIndex(), -1) << stored;
    EXPECT_EQ(form.store.library.autoSaveInterval(), stored);
  }
  Form between;
  between.store.library.setAutoSaveInterval(42);
  between.show();
  between.settle();
  QTest::keyClick(&between.find<MenuPicker>("intervalPicker"), Qt::Key_Down);
  EXPECT_EQ(between.store.library.autoSaveInterval(), 60) << "the next one, not the first";
}

TEST(PreferencesView, BackupFolderCanBeShownOnceADrawingFoundIt) {
  Form form;
  form.store.open();
  form.show();
  EXPECT_FALSE(form.canShowBackup());
  form.store.library.setKitLevel(1, 12);
  EXPECT_EQ(form.store.save(), "");
  form.settle();
  EXPECT_FALSE(form.canShowBackup()) << "the disk is asked off the main thread";
  form.store.jobs.runAll();
  EXPECT_TRUE(form.canShowBackup());
  QTest::mouseClick(&form.find("showBackupButton"), Qt::LeftButton);
  EXPECT_EQ(form.viewer.shown, std::vector<Path>{TestStore::backup});

  removeTree(form.store.files, TestStore::backup);
  form.view->hide();
  form.show();
  EXPECT_FALSE(form.canShowBackup());
  makeFolders(form.store.files, TestStore::backup);
  QEvent activation(QEvent::ActivationChange);
  QApplication::setActiveWindow(&*form.view);
  QApplication::sendEvent(&*form.view, &activation);
  form.store.jobs.runAll();
  EXPECT_TRUE(form.canShowBackup());
}

TEST(PreferencesView, ABurstOfChangesAsksTheDiskTwice) {
  Form form;
  const auto publish = [&](int index) {
    form.store.library.setSelectedPadIndex(index);
    form.settle();
  };
  publish(1);
  EXPECT_EQ(form.store.jobs.waiting(), 0U) << "nobody sees the form";
  form.view->show();
  for (const int index : {2, 3, 4, 5})
    publish(index);
  EXPECT_EQ(form.store.jobs.waiting(), 1U);
  makeFolders(form.store.files, TestStore::backup);
  form.store.jobs.runWork();
  removeTree(form.store.files, TestStore::backup);
  form.store.jobs.deliver();
  EXPECT_EQ(form.store.jobs.waiting(), 1U);
  form.store.jobs.runAll();
  EXPECT_FALSE(form.canShowBackup()) << "the last drawing counts";

  publish(6);
  form.view.reset();
  form.store.jobs.runAll();  // an answer that finds the form gone
}

}  // namespace
}  // namespace tamboro::test
