#include "audio/SamplePlayer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <QTemporaryDir>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "audio/AudioFiles.h"
#include "audio/Waiting.h"

namespace tamboro::test {
namespace {

using ::testing::ElementsAre;

constexpr std::size_t second = 44100;
constexpr std::int64_t none = -1;

// Plays into a device that takes frames in real time and drops them.
class SamplePlayerTest : public ::testing::Test {
 protected:
  SamplePlayerTest() {
    qputenv("SDL_AUDIODRIVER", "dummy");
    EXPECT_TRUE(writeAudio(shortSound, noise(second / 20)));
    EXPECT_TRUE(writeAudio(longSound, noise(20 * second)));
    watch(player);
  }
  ~SamplePlayerTest() override { qunsetenv("SDL_AUDIODRIVER"); }

  void watch(SamplePlayer& watched) {
    QObject::connect(&watched, &SamplePlayer::playingIndexChanged, &watched,
                     [&] { seen.push_back(watched.playingIndex().value_or(none)); });
  }
  bool waitUntilIdle() {
    return waitUntil([this] { return !player.playingIndex(); });
  }
  // Long enough for the short sound to end and to say so, in a message that no loop delivers.
  static void sleepThroughShortSound() { QThread::msleep(1000); }

  const QTemporaryDir folder;
  const std::filesystem::path root = folder.path().toStdString();
  const std::filesystem::path shortSound = root / "short.wav";
  const std::filesystem::path longSound = root / "long.wav";
  std::vector<std::int64_t> seen;
  SamplePlayer player;
};

TEST_F(SamplePlayerTest, aSoundEndsByItselfAndCanBePlayedAgain) {
  EXPECT_FALSE(player.playingIndex());
  player.play(shortSound, 205);
  EXPECT_EQ(player.playingIndex(), 205);
  ASSERT_TRUE(waitUntilIdle());
  player.play(shortSound, 205);
  ASSERT_TRUE(waitUntilIdle());
  EXPECT_THAT(seen, ElementsAre(205, none, 205, none));
}

TEST_F(SamplePlayerTest, anotherSoundTakesThePlaceAndStopEnds) {
  player.play(longSound, 200);
  runLoopFor(100);
  player.play(longSound, 201);
  EXPECT_EQ(player.playingIndex(), 201);
  player.play(longSound, 201);
  runLoopFor(100);
  EXPECT_EQ(player.playingIndex(), 201);
  player.stop();
  player.stop();
  runLoopFor(100);
  EXPECT_THAT(seen, ElementsAre(200, none, 201, none, 201, none));
}

TEST_F(SamplePlayerTest, theEndOfAnEarlierSoundIsIgnored) {
  player.play(shortSound, 200);
  sleepThroughShortSound();
  player.play(longSound, 201);
  runLoopFor(100);
  EXPECT_EQ(player.playingIndex(), 201);

  player.play(shortSound, 200);
  sleepThroughShortSound();
  player.stop();
  player.play(longSound, 200);
  runLoopFor(100);
  EXPECT_EQ(player.playingIndex(), 200);
}

TEST_F(SamplePlayerTest, whatCannotBePlayedStopsTheEarlierSoundAndLeavesIdle) {
  writeBytes(root / "empty", "");
  writeBytes(root / "text", "no sound");
  ASSERT_EQ(::mkfifo((root / "pipe").c_str(), 0600), 0);
  for (const std::filesystem::path& file : {root / "missing", root / "empty", root / "text", root / "pipe", root}) {
    SCOPED_TRACE(file);
    seen.clear();
    player.play(longSound, 200);
    player.play(file, 201);
    EXPECT_THAT(seen, ElementsAre(200, none));
    player.play(file, 202);
    runLoopFor(20);
    EXPECT_THAT(seen, ElementsAre(200, none));
  }
}

TEST_F(SamplePlayerTest, aMachineWithoutSoundStaysIdleUntilItHasSome) {
  qputenv("SDL_AUDIODRIVER", "no such driver");
  player.play(shortSound, 200);
  ASSERT_TRUE(waitUntilIdle());

  qputenv("SDL_AUDIODRIVER", "dummy");
  player.play(shortSound, 200);
  EXPECT_EQ(player.playingIndex(), 200);
  ASSERT_TRUE(waitUntilIdle());
}

TEST_F(SamplePlayerTest, aNewSoundFromTheMiddleOfTheChangeWins) {
  QObject::connect(&player, &SamplePlayer::playingIndexChanged, &player, [&] {
    if (seen.size() == 2) player.play(longSound, 202);
  });
  player.play(longSound, 200);
  player.play(root / "missing", 201);
  EXPECT_FALSE(player.playingIndex());
  EXPECT_THAT(seen, ElementsAre(200, none, 202, none));
}

TEST_F(SamplePlayerTest, goesAtAnyMoment) {
  for (const int wait : {0, 5, 40}) {
    SamplePlayer playing;
    playing.play(longSound, 1);
    QThread::msleep(static_cast<unsigned long>(wait));
  }
  SamplePlayer ended;
  watch(ended);
  ended.play(shortSound, 1);
  sleepThroughShortSound();
  SamplePlayer never;
}

TEST_F(SamplePlayerTest, leavesTheProcessItsSignals) {
  struct sigaction before {};
  struct sigaction after {};
  ASSERT_EQ(::sigaction(SIGINT, nullptr, &before), 0);
  player.play(shortSound, 200);
  ASSERT_TRUE(waitUntilIdle());
  ASSERT_EQ(::sigaction(SIGINT, nullptr, &after), 0);
  EXPECT_EQ(before.sa_handler, after.sa_handler);
}

// The device writes what it takes into a file.
TEST_F(SamplePlayerTest, theEndIsToldBehindTheLastFrame) {
  const auto file = root / "taken";
  qputenv("SDL_AUDIODRIVER", "disk");
  qputenv("SDL_DISKAUDIOFILE", file.c_str());
  const auto values = noise(second / 2, 2, 5);
  ASSERT_TRUE(writeAudio(root / "half", values));
  player.play(root / "half", 200);
  ASSERT_TRUE(waitUntilIdle());

  std::vector<float> taken(std::filesystem::file_size(file) / sizeof(float));
  std::ifstream(file, std::ios::binary)
      .read(reinterpret_cast<char*>(taken.data()), static_cast<std::streamsize>(taken.size() * sizeof(float)));
  const auto begin = std::find_if(taken.begin(), taken.end(), [](float value) { return value != 0; });
  ASSERT_GE(static_cast<std::size_t>(taken.end() - begin), values.size() + 2 * 2048);
  EXPECT_TRUE(std::equal(values.begin(), values.end(), begin));
  EXPECT_TRUE(std::all_of(begin + static_cast<std::ptrdiff_t>(values.size()), taken.end(),
                          [](float value) { return value == 0; }));
}

}  // namespace
}  // namespace tamboro::test
