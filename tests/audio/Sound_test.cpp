#include "audio/Sound.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include "audio/AudioFiles.h"
#include "audio/OutputFormat.h"

namespace tamboro::test {
namespace {

class SoundTest : public ::testing::Test {
 protected:
  std::filesystem::path operator/(const std::string& name) const { return folder_.path().toStdString() + "/" + name; }

  // The sound's frames as the device would take them, at most so many.
  static std::vector<float> heard(const std::filesystem::path& file, std::size_t most = 10'000'000) {
    const auto sound = Sound::open(file);
    std::vector<float> values;
    while (sound && !sound->isTaken() && values.size() / 2 < most) {
      float frames[2 * 1000];
      const std::size_t count = sound->take(frames, 1000);
      values.insert(values.end(), frames, frames + 2 * count);
      sound->decodePart();
    }
    return values;
  }

 private:
  const QTemporaryDir folder_;
};

TEST_F(SoundTest, whatIsAtTheOutputsRateComesWholeAndUnchanged) {
  // Longer than the buffer.
  const auto values = noise(150'000);
  for (const int format : {SF_FORMAT_WAV | SF_FORMAT_PCM_16, SF_FORMAT_FLAC | SF_FORMAT_PCM_24}) {
    ASSERT_TRUE(writeAudio(*this / "a", values, 2, outputRate, format));
    EXPECT_TRUE(heard(*this / "a") == values) << format;
  }
}

TEST_F(SoundTest, otherRatesAndChannelsKeepPitchPlaceAndBothEnds) {
  // From far below the output's rate to the highest there is, among them one whose length comes out a frame short
  // where it is rounded down.
  for (const int rate : {8000, 32'000, 44'099, 48'000, 96'000, 1'000'000}) {
    SCOPED_TRACE(rate);
    const int channels = rate == 48'000 ? 6 : 1;
    const auto frames = 2 * static_cast<std::size_t>(rate) + 17;  // so that the buffer goes round
    ASSERT_TRUE(writeAudio(*this / "a", sine(frames, channels, rate), channels, rate));
    const auto result = heard(*this / "a");
    const auto count = static_cast<std::size_t>(std::ceil(static_cast<double>(frames) * outputRate / rate));
    ASSERT_EQ(result.size(), 2 * count);
    const auto wanted = sine(count, 2, outputRate);
    double worst = 0;
    // The filter reaches beyond the ends, into silence.
    for (std::size_t i = 1000; i + 1000 < result.size(); ++i)
      worst = std::max<double>(worst, std::abs(result[i] - wanted[i]));
    EXPECT_LT(worst, 2e-4);
    EXPECT_GT(result.front(), 0.2);
  }
  // Sides stay sides, and each of many channels counts the same.
  ASSERT_TRUE(writeAudio(*this / "a", {0.5F, -0.25F}));
  EXPECT_EQ(heard(*this / "a"), (std::vector{0.5F, -0.25F}));
  ASSERT_TRUE(writeAudio(*this / "a", {0.5F, -0.25F, 0.5F, 0.25F}, 4));
  EXPECT_EQ(heard(*this / "a"), (std::vector{0.25F, 0.25F}));
}

TEST_F(SoundTest, whatIsNoSoundIsRefused) {
  std::ofstream(*this / "text") << std::string(5000, 'x');
  ASSERT_TRUE(writeAudio(*this / "no frame", {}));
  ASSERT_TRUE(writeAudio(*this / "rate of a gigahertz", noise(100), 2, 1'000'000'000));
  ASSERT_EQ(::mkfifo((*this / "pipe").c_str(), 0600), 0);
  for (const char* name : {"missing", "text", "no frame", "rate of a gigahertz", "", "pipe", "/dev/zero"})
    EXPECT_EQ(Sound::open(*name == '/' ? name : *this / name), nullptr) << name;

  // Not even a pipe that a sound comes out of.
  ASSERT_TRUE(writeAudio(*this / "a", noise(1000)));
  std::fstream pipe(*this / "pipe", std::ios::in | std::ios::out | std::ios::binary);
  pipe << std::ifstream(*this / "a", std::ios::binary).rdbuf() << std::flush;
  EXPECT_EQ(Sound::open(*this / "pipe"), nullptr);
}

TEST_F(SoundTest, falseClaimsOfAHeaderCostNothing) {
  // Hours of each frame, of which nothing is kept.
  ASSERT_TRUE(writeAudio(*this / "slow", noise(100), 2, 1));
  EXPECT_GE(heard(*this / "slow", 200'000).size(), 400'000U);

  ASSERT_TRUE(writeAudio(*this / "odd", {0.5F, std::numeric_limits<float>::quiet_NaN(), 1e30F, -7}, 2, 44100,
                         SF_FORMAT_WAV | SF_FORMAT_FLOAT));
  EXPECT_EQ(heard(*this / "odd"), (std::vector{0.5F, 0.0F, 1.0F, -1.0F}));
}

TEST_F(SoundTest, aLongFileStaysOnDisk) {
  // Hours of silence as a hole, in a file that tells its length as endless.
  ASSERT_TRUE(writeAudio(*this / "a", noise(100)));
  EXPECT_EQ(std::filesystem::file_size(*this / "a"), 444U);
  std::fstream(*this / "a", std::ios::in | std::ios::out | std::ios::binary).seekp(40) << "\xFF\xFF\xFF\x7F";
  EXPECT_EQ(heard(*this / "a").size(), 200U);
  std::filesystem::resize_file(*this / "a", 1U << 30);
  const auto sound = Sound::open(*this / "a");
  for (int parts = 0; sound->decodePart(); ++parts)
    ASSERT_LT(parts, 100);
  EXPECT_FALSE(sound->isDecoded());
}

}  // namespace
}  // namespace tamboro::test
