#include "audio/Sound.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <optional>
#include <random>
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
  static std::optional<std::vector<float>> heard(const std::filesystem::path& file, std::size_t most = 10'000'000) {
    const auto sound = Sound::open(file);
    if (!sound) return std::nullopt;
    std::vector<float> values;
    while (!sound->isTaken() && values.size() / 2 < most) {
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

double correlation(const std::vector<float>& a, const std::vector<float>& b) {
  double ab = 0;
  double aa = 0;
  double bb = 0;
  for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
    ab += a[i] * b[i];
    aa += a[i] * a[i];
    bb += b[i] * b[i];
  }
  return ab / std::sqrt(aa * bb);
}

TEST_F(SoundTest, losslessFormatsComeWholeAndUnchanged) {
  const struct {
    const char* name;
    int format;
    float tolerance;
  } cases[] = {
      {"WAV of 8 bits", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, 1 / 128.0F},
      {"WAV of 16 bits", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 0},
      {"WAV of 24 bits", SF_FORMAT_WAV | SF_FORMAT_PCM_24, 0},
      {"WAV of 32 bits", SF_FORMAT_WAV | SF_FORMAT_PCM_32, 0},
      {"WAV of floats", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 0},
      {"WAV of doubles", SF_FORMAT_WAVEX | SF_FORMAT_DOUBLE, 0},
      {"AIFF", SF_FORMAT_AIFF | SF_FORMAT_PCM_16, 0},
      {"FLAC", SF_FORMAT_FLAC | SF_FORMAT_PCM_24, 0},
      {"CAF", SF_FORMAT_CAF | SF_FORMAT_PCM_16, 0},
  };
  // Longer than the buffer, so that it goes round.
  const auto values = noise(150'000);
  for (const auto& [name, format, tolerance] : cases) {
    SCOPED_TRACE(name);
    ASSERT_TRUE(writeAudio(*this / "a", values, 2, 44100, format));
    const auto result = heard(*this / "a");
    ASSERT_TRUE(result);
    ASSERT_EQ(result->size(), values.size());
    float worst = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
      worst = std::max(worst, std::abs(values[i] - (*result)[i]));
    }
    EXPECT_LE(worst, tolerance);
  }
}

TEST_F(SoundTest, lossyFormatsKeepLengthAndShape) {
  const auto values = sine(100'000, 2, 44100);
  for (const int format : {SF_FORMAT_OGG | SF_FORMAT_VORBIS, SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III,
                           SF_FORMAT_WAV | SF_FORMAT_IMA_ADPCM, SF_FORMAT_WAV | SF_FORMAT_ULAW}) {
    SCOPED_TRACE(format);
    ASSERT_TRUE(writeAudio(*this / "a", values, 2, 44100, format));
    const auto result = heard(*this / "a");
    ASSERT_TRUE(result);
    EXPECT_NEAR(static_cast<double>(result->size()), static_cast<double>(values.size()), 4 * 1152);
    EXPECT_GT(correlation(values, *result), 0.99);
  }
}

TEST_F(SoundTest, ratesAndChannelsBecomeTheOutputs) {
  for (const int rate : {8000, 44100, 48000, 96000}) {
    for (const int channels : {1, 2, 3, 6, 9, 32}) {
      SCOPED_TRACE(rate);
      SCOPED_TRACE(channels);
      ASSERT_TRUE(writeAudio(*this / "a", sine(static_cast<std::size_t>(rate), channels, rate), channels, rate));
      const auto result = heard(*this / "a");
      ASSERT_TRUE(result);
      ASSERT_EQ(result->size(), 2U * outputRate);
      EXPECT_GT(correlation(sine(outputRate, 2, outputRate), *result), 0.999);
      EXPECT_NEAR(*std::max_element(result->begin() + 2000, result->end() - 2000), 0.5, 0.001);
    }
  }
  // Sides stay sides, and each of many channels counts the same.
  ASSERT_TRUE(writeAudio(*this / "a", {0.5F, -0.25F}));
  EXPECT_EQ(*heard(*this / "a"), (std::vector{0.5F, -0.25F}));
  ASSERT_TRUE(writeAudio(*this / "a", {0.5F, -0.25F, 0.5F, 0.25F}, 4));
  EXPECT_EQ(*heard(*this / "a"), (std::vector{0.25F, 0.25F}));
}

TEST_F(SoundTest, whatIsNoSoundIsRefused) {
  writeBytes(*this / "empty", "");
  writeBytes(*this / "text", std::string(5000, 'x'));
  writeBytes(*this / "half a header", wavHeader(1, 2, 44100, 16, 400).substr(0, 30));
  writeBytes(*this / "no frame", wavHeader(1, 2, 44100, 16, 0));
  writeBytes(*this / "no channel", wavHeader(1, 0, 44100, 16, 400) + std::string(400, 'x'));
  writeBytes(*this / "too many channels", wavHeader(1, 60'000, 44100, 16, 400) + std::string(400, 'x'));
  writeBytes(*this / "rate 0", wavHeader(1, 2, 0, 16, 400) + std::string(400, 'x'));
  writeBytes(*this / "rate of a gigahertz", wavHeader(1, 2, 1'000'000'000, 16, 400) + std::string(400, 'x'));
  std::filesystem::create_directory(*this / "folder");
  ASSERT_EQ(::mkfifo((*this / "pipe").c_str(), 0600), 0);
  for (const char* name : {"missing", "empty", "text", "half a header", "no frame", "no channel", "too many channels",
                           "rate 0", "rate of a gigahertz", "folder", "pipe", "/dev/zero", "/dev/tty"}) {
    EXPECT_EQ(Sound::open(*name == '/' ? name : *this / name), nullptr) << name;
  }
  EXPECT_EQ(Sound::open({}), nullptr);

  // Not even a pipe that a sound comes out of.
  std::fstream pipe(*this / "pipe", std::ios::in | std::ios::out | std::ios::binary);
  pipe << wavHeader(1, 2, 44100, 16, 4000) << std::string(4000, 'x') << std::flush;
  ASSERT_TRUE(pipe.good());
  EXPECT_EQ(Sound::open(*this / "pipe"), nullptr);
}

TEST_F(SoundTest, falseClaimsOfAHeaderCostNothing) {
  const std::string data(400, 'x');
  writeBytes(*this / "long", wavHeader(1, 2, 44100, 16, 0xFFFF'FFF0) + data);
  EXPECT_EQ(heard(*this / "long")->size(), 200U);

  // Hours of each frame, of which nothing is kept.
  writeBytes(*this / "slow", wavHeader(1, 2, 1, 16, 400) + data);
  EXPECT_GE(heard(*this / "slow", 200'000)->size(), 400'000U);
  writeBytes(*this / "fast", wavHeader(1, 1, 1'000'000, 8, 400) + data);
  EXPECT_EQ(heard(*this / "fast")->size(), 2 * 18U);

  std::vector<float> odd{0.5F,  std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                         1e30F, -std::numeric_limits<float>::infinity(), -7};
  ASSERT_TRUE(writeAudio(*this / "odd", odd, 2, 44100, SF_FORMAT_WAV | SF_FORMAT_FLOAT));
  EXPECT_EQ(*heard(*this / "odd"), (std::vector{0.5F, 0.0F, 0.0F, 1.0F, 0.0F, -1.0F}));
}

TEST_F(SoundTest, aLongFileStaysOnDisk) {
  // An hour of silence as a hole.
  constexpr std::uint32_t size = 3600U * 44100U * 4U;
  writeBytes(*this / "a", wavHeader(1, 2, 44100, 16, size));
  std::filesystem::resize_file(*this / "a", size + 44);
  const auto sound = Sound::open(*this / "a");
  ASSERT_TRUE(sound);
  std::size_t parts = 0;
  while (sound->decodePart()) {
    ASSERT_LT(++parts, 100U);
  }
  EXPECT_FALSE(sound->isDecoded());
  std::vector<float> frames(2U * 1'000'000);
  EXPECT_LT(sound->take(frames.data(), 1'000'000), 100'000U);
}

TEST_F(SoundTest, damagedFilesDoNoHarm) {
  std::mt19937 random(11);
  for (const int format : {SF_FORMAT_WAV | SF_FORMAT_PCM_16, SF_FORMAT_WAV | SF_FORMAT_FLOAT,
                           SF_FORMAT_AIFF | SF_FORMAT_PCM_24, SF_FORMAT_WAV | SF_FORMAT_IMA_ADPCM}) {
    ASSERT_TRUE(writeAudio(*this / "a", noise(300), 2, 44100, format));
    std::ifstream in(*this / "a", std::ios::binary);
    const std::string whole(std::istreambuf_iterator<char>(in), {});
    for (int i = 0; i < 400; ++i) {
      std::string damaged = whole;
      for (int hit = 0; hit < 3; ++hit) {
        damaged[random() % 80] = static_cast<char>(random());
      }
      writeBytes(*this / "b", damaged.substr(0, random() % 4 == 0 ? random() % damaged.size() : damaged.size()));
      const auto result = heard(*this / "b", 5000);
      for (const float value : result.value_or(std::vector<float>())) {
        ASSERT_LT(std::abs(value), 4);
      }
    }
  }
}

}  // namespace
}  // namespace tamboro::test
