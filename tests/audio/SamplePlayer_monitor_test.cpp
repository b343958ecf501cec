#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "audio/AudioFiles.h"
#include "audio/NullSink.h"
#include "audio/SamplePlayer.h"
#include "audio/Waiting.h"

namespace tamboro::test {
namespace {

constexpr std::size_t second = 44100;

std::vector<std::int16_t> as16Bits(const std::vector<float>& values) {
  std::vector<std::int16_t> result;
  for (const float value : values) {
    result.push_back(static_cast<std::int16_t>(std::lrint(value * 32768)));
  }
  return result;
}

// How many of the leading values two sounds share.
std::size_t sharedStart(const std::vector<std::int16_t>& a, const std::vector<std::int16_t>& b) {
  return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
}

// What follows behind a place and the silence there.
std::vector<std::int16_t> behind(const std::vector<std::int16_t>& sound, std::size_t place) {
  const auto from = sound.begin() + static_cast<std::ptrdiff_t>(place);
  return {std::find_if(from, sound.end(), [](std::int16_t value) { return value != 0; }), sound.end()};
}

// What a real sound server gets to play.
class SamplePlayerAtNullSink : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(sink.start()) << "pulseaudio doesn't start";
    write("warm", noise(second / 10));
    player = std::make_unique<SamplePlayer>();
    warmUp();
  }
  // The player first: it holds streams of the server.
  void TearDown() override { player.reset(); }

  std::vector<float> write(const std::string& name, std::vector<float> values, int channels = 2, int rate = 44100) {
    EXPECT_TRUE(writeAudio(root / name, values, channels, rate));
    return values;
  }
  // The first sound on a fresh sink comes late.
  void warmUp() {
    recording = std::make_unique<MonitorRecording>();
    player->play(root / "warm", 0);
    ASSERT_TRUE(waitUntilIdle());
  }
  bool waitUntilIdle() {
    return waitUntil([this] {
      recording->listen();
      return !player->playingIndex();
    });
  }
  // What was recorded by the time that the player called it ended.
  std::vector<std::int16_t> played(const std::string& name) {
    recording = std::make_unique<MonitorRecording>();
    player->play(root / name, 1);
    EXPECT_TRUE(player->playingIndex());
    EXPECT_TRUE(waitUntilIdle());
    return recording->sound();
  }
  // A machine so busy that the device runs dry puts silence into a sound. What the player does wrong, it does each
  // time.
  template<typename Attempt>
  static bool succeeds(Attempt attempt) {
    for (int i = 0; i < 8; ++i) {
      if (attempt()) return true;
    }
    return false;
  }
  bool playsExactly(const std::string& name, const std::vector<std::int16_t>& wanted) {
    return succeeds([&] { return played(name) == wanted; });
  }

  NullSink sink;
  const QTemporaryDir folder;
  const std::filesystem::path root = folder.path().toStdString();
  std::unique_ptr<SamplePlayer> player;
  std::unique_ptr<MonitorRecording> recording;
};

TEST_F(SamplePlayerAtNullSink, playsEachFrameOnceFromTheFirstToTheLast) {
  // From one frame to more than is decoded ahead.
  for (const std::size_t frames :
       {std::size_t{1}, std::size_t{1023}, std::size_t{1025}, second / 2, std::size_t{75'000}}) {
    const auto wanted = as16Bits(write("a", noise(frames)));
    EXPECT_TRUE(playsExactly("a", wanted)) << frames << " frames";
  }
}

TEST_F(SamplePlayerAtNullSink, playsOtherRatesAtTheirPitchAndLength) {
  write("a", sine(24'000, 1, 48'000), 1, 48'000);
  const auto wanted = as16Bits(sine(second / 2, 2, 44100));
  EXPECT_TRUE(succeeds([&] {
    const auto sound = played("a");
    // The tone begins and ends at a peak, so that silence is told from it.
    double worst = sound.size() == wanted.size() ? 0 : 1e9;
    for (std::size_t i = 200; i + 200 < std::min(sound.size(), wanted.size()); ++i) {
      worst = std::max(worst, std::abs(static_cast<double>(sound[i] - wanted[i])));
    }
    return worst <= 8;
  }));
}

TEST_F(SamplePlayerAtNullSink, aNewSoundCutsOffTheOneBefore) {
  const auto first = as16Bits(write("first", noise(4 * second, 2, 2)));
  const auto next = as16Bits(write("next", noise(second / 4, 2, 3)));
  EXPECT_TRUE(succeeds([&] {
    recording = std::make_unique<MonitorRecording>();
    player->play(root / "first", 1);
    EXPECT_TRUE(waitUntil([&] { return recording->sound().size() > 2000; }));
    player->play(root / "first", 1);
    runLoopFor(300);
    player->play(root / "next", 2);
    EXPECT_TRUE(waitUntilIdle());
    const auto sound = recording->sound();

    // The beginning of the first, its beginning once more, all of the next, perhaps with silence between them; no frame
    // of two sounds.
    const auto again = behind(sound, sharedStart(sound, first));
    const auto last = behind(again, sharedStart(again, first));
    return sound.size() > again.size() + 2000 && again.size() > last.size() + second / 4 && last == next;
  }));
}

TEST_F(SamplePlayerAtNullSink, releasesTheDeviceAndTakesItAgain) {
  const auto wanted = as16Bits(write("a", noise(second / 4)));
  EXPECT_EQ(NullSink::streamCount(), 1);
  ASSERT_TRUE(waitUntil([] { return NullSink::streamCount() == 0; }));
  EXPECT_TRUE(playsExactly("a", wanted));
  EXPECT_EQ(NullSink::streamCount(), 1);
}

TEST_F(SamplePlayerAtNullSink, playsAgainWhenTheServerWasAway) {
  const auto wanted = as16Bits(write("a", noise(second / 4)));
  write("long", noise(300 * second));
  for (const bool isPlaying : {true, false}) {
    SCOPED_TRACE(isPlaying);
    if (isPlaying) {
      player->play(root / "long", 1);
    } else {
      ASSERT_TRUE(waitUntil([] { return NullSink::streamCount() == 0; }));
    }
    sink.stop();
    // What nobody plays any more ends long before its time.
    EXPECT_TRUE(waitUntilIdle());
    if (isPlaying) {
      player->play(root / "a", 2);
      EXPECT_TRUE(waitUntilIdle());
    }

    ASSERT_TRUE(sink.start());
    warmUp();
    EXPECT_TRUE(playsExactly("a", wanted));
  }
}

TEST_F(SamplePlayerAtNullSink, aServerThatHangsHoldsNobody) {
  const auto wanted = as16Bits(write("a", noise(second / 4)));
  write("long", noise(300 * second));
  for (const bool isPlaying : {true, false}) {
    SCOPED_TRACE(isPlaying);
    if (isPlaying) {
      player->play(root / "long", 1);
      runLoopFor(300);
    } else {
      ASSERT_TRUE(waitUntil([] { return NullSink::streamCount() == 0; }));
    }
    sink.hang();
    EXPECT_TRUE(waitUntilIdle());
    player->play(root / "a", 2);
    EXPECT_TRUE(waitUntilIdle());
    sink.goOn();
    EXPECT_TRUE(playsExactly("a", wanted));
  }
  sink.hang();
  player->play(root / "a", 1);
  player.reset();
  sink.goOn();
  player = std::make_unique<SamplePlayer>();
  EXPECT_TRUE(playsExactly("a", wanted));
}

}  // namespace
}  // namespace tamboro::test
