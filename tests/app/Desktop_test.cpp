#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QMainWindow>
#include <QTest>
#include <QTimer>

#include "app/AboutPanel.h"
#include "app/AppDelegate.h"
#include "app/CardFolderPanel.h"
#include "app/DesktopFileViewer.h"
#include "app/NetworkFeedFetcher.h"
#include "app/SettingsWindow.h"
#include "support/HandTimers.h"
#include "support/MemoryDefaults.h"
#include "views/HandPrompts.h"

namespace tamboro::test {
namespace {

TEST(CardFolderPanel, OpensAtTheFirstVolumeWithACard) {
  const std::vector<Path> places = volumePlaces("ana");
  const auto start = [&](const std::vector<Path>& volumes, const std::vector<Path>& cards,
                         const std::vector<Path>& present) {
    const auto isIn = [](const std::vector<Path>& all) {
      return [&all](const Path& path) { return std::find(all.begin(), all.end(), path) != all.end(); };
    };
    return cardPanelStart(volumes, places, "/home/ana", isIn(cards), isIn(present));
  };
  EXPECT_EQ(start({"/", "/media/ana/STICK", "/media/ana/SPD-SX", "/mnt/card"}, {"/media/ana/SPD-SX", "/mnt/card"}, {}),
            "/media/ana/SPD-SX");
  EXPECT_EQ(start({"/", "/srv/share", "/mediathek"}, {"/", "/srv/share", "/mediathek"}, {"/media", "/mnt"}), "/media")
      << "a look into the system's own or remote volumes can take long";
  EXPECT_EQ(start({"/media/ana/STICK"}, {}, {"/run/media/ana", "/media"}), "/run/media/ana");
  EXPECT_EQ(start({}, {}, {}), "/home/ana");
}

TEST(AboutPanel, FallsBackWhereTheBuildKnowsNoVersion) {
  EXPECT_EQ(aboutTexts({}, {}).version, QStringLiteral("Version 1.0 (1)"));
  EXPECT_EQ(aboutTexts(QStringLiteral("2.3.4"), QStringLiteral("56")).version, QStringLiteral("Version 2.3.4 (56)"));
}

TEST(AppDelegate, ReopeningBringsAWindowBackUnlessOneIsVisible) {
  HandPrompts prompts;
  MemoryDefaults defaults;
  HandTimers timers;
  NetworkFeedFetcher fetcher({});
  AppDelegate delegate(UpdaterServices{prompts, defaults, timers, fetcher, {}, {}, {}, {}});
  QMainWindow window;
  window.showMinimized();
  EXPECT_TRUE(delegate.applicationShouldHandleReopen(true));
  EXPECT_TRUE(window.isMinimized());
  EXPECT_TRUE(delegate.applicationShouldHandleReopen(false));
  EXPECT_FALSE(window.isMinimized());
  EXPECT_TRUE(window.isVisible());
}

TEST(SettingsWindow, GoesByItsKeysAndKeepsNoProgramOpen) {
  QMainWindow main;
  auto* picker = new QComboBox;
  picker->addItem(QStringLiteral("30 seconds"));
  SettingsWindow settings(picker, &main);
  main.show();
  for (const auto& [key, modifier] : {std::pair(Qt::Key_Escape, Qt::NoModifier), {Qt::Key_W, Qt::ControlModifier}}) {
    settings.bringToFront();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&settings));
    QTest::keyClick(&settings, key, modifier);
    EXPECT_FALSE(settings.isVisible()) << key;
  }
  EXPECT_TRUE(main.isVisible());
  settings.bringToFront();
  picker->showPopup();
  QTest::keyClick(picker->view(), Qt::Key_W, Qt::ControlModifier);
  EXPECT_FALSE(settings.isVisible()) << "also while a list is open";
  settings.bringToFront();
  EXPECT_FALSE(settings.isModal());
  QMetaObject::invokeMethod(&main, &QWidget::close, Qt::QueuedConnection);
  QTimer::singleShot(std::chrono::seconds(20), &main, [] { QApplication::exit(1); });
  EXPECT_EQ(QApplication::exec(), 0) << "the main window is the program's last";
}

TEST(DesktopFileViewer, AddressesNamesOfAnyBytes) {
  EXPECT_EQ(fileAddress("/home/ana/Tamboro Backup"), "file:///home/ana/Tamboro%20Backup");
  EXPECT_EQ(fileAddress("/m/a#b?c%d\xE9"), "file:///m/a%23b%3Fc%25d%E9");
}

}  // namespace
}  // namespace tamboro::test
