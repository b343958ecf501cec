#include <gtest/gtest.h>

#include <QMainWindow>
#include <QTest>

#include "app/AboutPanel.h"
#include "app/AppDelegate.h"
#include "app/CardFolderPanel.h"
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
  AppDelegate delegate(prompts);
  QMainWindow window;
  window.showMinimized();
  EXPECT_TRUE(delegate.applicationShouldHandleReopen(true));
  EXPECT_TRUE(window.isMinimized());
  EXPECT_TRUE(delegate.applicationShouldHandleReopen(false));
  EXPECT_FALSE(window.isMinimized());
  EXPECT_TRUE(window.isVisible());
}

TEST(UpdaterController, SaysThatThereIsNoUpdateSource) {
  HandPrompts prompts;
  AppDelegate delegate(prompts);
  delegate.updaterController().checkForUpdates(nullptr);
  ASSERT_EQ(prompts.alerts.size(), 1U);
  EXPECT_TRUE(prompts.alerts.front().first.text.contains(QStringLiteral("no update source")));
}

}  // namespace
}  // namespace tamboro::test
