#include "audio/SamplePlayer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <QTemporaryDir>
#include <algorithm>
#include <filesystem>
#include <memory>
#include <ranges>
#include <string>
#include <vector>

#include "audio/AudioFiles.h"
#include "audio/NullSink.h"
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
    QObject::connect(&player, &SamplePlayer::playingIndexChanged, &player,
                     [this] { seen.push_back(player.playingIndex().value_or(none)); });
  }
  ~SamplePlayerTest() override { qunsetenv("SDL_AUDIODRIVER"); }

  bool waitUntilIdle() {
    return waitUntil([this] { return !player.playingIndex(); });
  }

  const QTemporaryDir folder;
  const std::filesystem::path root = folder.path().toStdString();
  const std::filesystem::path shortSound = root / "short.wav";
  const std::filesystem::path longSound = root / "long.wav";
  std::vector<std::int64_t> seen;
  SamplePlayer player;
};

TEST_F(SamplePlayerTest, anotherSoundTakesThePlaceAndStopEnds) {
  player.play(longSound, 200);
  player.play(shortSound, 201);
  EXPECT_EQ(player.playingIndex(), 201);
  ASSERT_TRUE(waitUntilIdle());
  player.play(longSound, 201);
  player.stop();
  player.stop();
  EXPECT_THAT(seen, ElementsAre(200, none, 201, none, 201, none));
}

TEST_F(SamplePlayerTest, theEndOfAnEarlierSoundIsIgnored) {
  player.play(shortSound, 200);
  QThread::msleep(1000);  // the sound ends and says so, in a message that no loop delivers
  player.play(longSound, 201);
  runLoopFor(100);
  EXPECT_EQ(player.playingIndex(), 201);
}

TEST_F(SamplePlayerTest, aMachineWithoutSoundStaysIdleUntilItHasSome) {
  qputenv("SDL_AUDIODRIVER", "no such driver");
  player.play(shortSound, 200);
  ASSERT_TRUE(waitUntilIdle());
  qputenv("SDL_AUDIODRIVER", "dummy");
  player.play(longSound, 200);
  runLoopFor(100);
  EXPECT_EQ(player.playingIndex(), 200);
}

TEST_F(SamplePlayerTest, whatCannotBePlayedStopsAlsoANewSoundFromTheMiddleOfTheChange) {
  QObject::connect(&player, &SamplePlayer::playingIndexChanged, &player, [&] {
    if (seen.size() == 2) player.play(longSound, 202);
  });
  player.play(longSound, 200);
  player.play(root / "missing", 201);
  EXPECT_THAT(seen, ElementsAre(200, none, 202, none));
}

TEST_F(SamplePlayerTest, goesAtAnyMoment) {
  for (const unsigned long wait : {0UL, 5UL, 40UL, 1000UL}) {
    SamplePlayer playing;
    playing.play(wait == 1000 ? shortSound : longSound, 1);
    QThread::msleep(wait);
  }
}

TEST_F(SamplePlayerTest, leavesTheProcessItsSignals) {
  struct sigaction after {};
  player.play(shortSound, 200);
  ASSERT_TRUE(waitUntilIdle());
  ASSERT_EQ(::sigaction(SIGINT, nullptr, &after), 0);
  EXPECT_EQ(after.sa_handler, SIG_DFL);
}

// What a real sound server gets to play.
class SamplePlayerAtNullSink : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(sink.start()) << "pulseaudio doesn't start";
    write("long", noise(300 * second));
    player = std::make_unique<SamplePlayer>();
  }
  std::vector<float> write(const std::string& name, std::vector<float> values) {
    return writeAudio(root / name, values) ? values : std::vector<float>();
  }
  bool waitUntilIdle() {
    return waitUntil([this] {
      if (recording) recording->listen();
      return !player->playingIndex();
    });
  }
  // The first sound on a fresh sink comes late, and a machine so busy that the device runs dry puts silence into one.
  // What the player does wrong, it does each time.
  template<typename Attempt>
  bool succeeds(Attempt attempt) {
    return std::ranges::any_of(std::views::iota(0, 8), [&](int) {
      recording = std::make_unique<MonitorRecording>();
      return attempt();
    });
  }
  // By the time that the player calls it ended.
  bool plays(const std::string& name, const std::vector<float>& wanted) {
    return succeeds([&] {
      player->play(root / name, 1);
      return waitUntilIdle() && recording->sound() == wanted;
    });
  }

  NullSink sink;
  const QTemporaryDir folder;
  const std::filesystem::path root = folder.path().toStdString();
  std::unique_ptr<MonitorRecording> recording;
  std::unique_ptr<SamplePlayer> player;  // the first to go: it holds streams of the server
};

TEST_F(SamplePlayerAtNullSink, playsEachFrameOnceFromTheFirstToTheLast) {
  // From one frame to more than is decoded ahead.
  for (const std::size_t frames : {1U, 1025U, 75'000U})
    EXPECT_TRUE(plays("a", write("a", noise(frames)))) << frames << " frames";
}

TEST_F(SamplePlayerAtNullSink, aNewSoundCutsOffTheOneBefore) {
  const auto first = write("first", noise(4 * second, 2, 2));
  const auto next = write("next", noise(second / 4, 2, 3));
  EXPECT_TRUE(succeeds([&] {
    player->play(root / "first", 1);
    EXPECT_TRUE(waitUntil([&] { return recording->sound().size() > 2000; }));
    player->play(root / "next", 2);
    EXPECT_TRUE(waitUntilIdle());
    const auto sound = recording->sound();
    // The beginning of the first, perhaps silence, all of the next; no frame of two sounds.
    const auto cut = std::mismatch(sound.begin(), sound.end(), first.begin(), first.end()).first;
    const auto rest = std::find_if(cut, sound.end(), isHeard);
    return cut - sound.begin() > 2000 && std::equal(rest, sound.end(), next.begin(), next.end());
  }));
}

TEST_F(SamplePlayerAtNullSink, aServerThatGoesOrHangsHoldsNobodyAndIsUsedAgain) {
  const auto wanted = write("a", noise(second / 4));
  EXPECT_TRUE(plays("a", wanted));
  for (const bool hangs : {false, true}) {
    for (const bool isPlaying : {true, false}) {
      SCOPED_TRACE(::testing::Message() << hangs << isPlaying);
      if (isPlaying) player->play(root / "long", 1);
      // Two seconds of silence give the device back.
      EXPECT_TRUE(waitUntil([&] { return NullSink::streamCount() == (isPlaying ? 1 : 0); }));
      recording.reset();
      hangs ? sink.hang() : sink.stop();
      // What nobody plays any more ends long before its time.
      EXPECT_TRUE(waitUntilIdle());
      player->play(root / "a", 2);
      EXPECT_TRUE(waitUntilIdle());
      if (hangs) sink.goOn();
      ASSERT_TRUE(hangs || sink.start());
      EXPECT_TRUE(plays("a", wanted));
    }
  }
  sink.hang();
  player->play(root / "a", 1);
  player.reset();
  sink.goOn();
  player = std::make_unique<SamplePlayer>();
  EXPECT_TRUE(plays("a", wanted));
}

}  // namespace
}  // namespace tamboro::test
