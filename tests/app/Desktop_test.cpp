#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QMainWindow>
#include <QTest>
#include <QTimer>
#include <algorithm>

#include "app/CardFolderPanel.h"
#include "app/DesktopFileViewer.h"
#include "app/SettingsWindow.h"
#include "views/controls/BringToFront.h"

namespace tamboro {
namespace {

TEST(CardFolderPanel, OpensAtTheFirstVolumeWithACard) {
  const auto start = [&](const std::vector<Path>& volumes, const std::vector<Path>& cards,
                         const std::vector<Path>& present) {
    const auto isIn = [](const std::vector<Path>& all) {
      return [&all](const Path& path) { return std::ranges::find(all, path) != all.end(); };
    };
    return cardPanelStart(volumes, volumePlaces("ana"), "/home/ana", isIn(cards), isIn(present));
  };
  EXPECT_EQ(start({"/media/ana/STICK", "/media/ana/SPD-SX", "/mnt/card"}, {"/media/ana/SPD-SX", "/mnt/card"}, {}),
            "/media/ana/SPD-SX");
  EXPECT_EQ(start({"/", "/srv/share", "/mediathek"}, {"/", "/srv/share", "/mediathek"}, {"/media", "/mnt"}), "/media")
      << "a look into the system's own or remote volumes can take long";
  EXPECT_EQ(start({}, {}, {}), "/home/ana");
}

TEST(SettingsWindow, GoesByItsKeysAndKeepsNoProgramOpen) {
  QMainWindow main;
  auto* picker = new QComboBox;
  picker->addItem(QStringLiteral("30 seconds"));
  SettingsWindow settings(picker, &main);
  main.show();
  bringToFront(settings);
  EXPECT_TRUE(QTest::qWaitForWindowActive(&settings));
  QTest::keyClick(&settings, Qt::Key_Escape);
  EXPECT_FALSE(settings.isVisible());
  bringToFront(settings);
  picker->showPopup();
  QTest::keyClick(picker->view(), Qt::Key_W, Qt::ControlModifier);
  EXPECT_FALSE(settings.isVisible()) << "also while a list is open";
  bringToFront(settings);
  QMetaObject::invokeMethod(&main, &QWidget::close, Qt::QueuedConnection);
  QTimer::singleShot(std::chrono::seconds(20), &main, [] { QApplication::exit(1); });
  EXPECT_EQ(QApplication::exec(), 0) << "the main window is the program's last";
}

TEST(DesktopFileViewer, AddressesNamesOfAnyBytes) {
  EXPECT_EQ(fileAddress("/m/Tamboro a#b?c%d\xE9"), "file:///m/Tamboro%20a%23b%3Fc%25d%E9");
}

}  // namespace
}  // namespace tamboro
