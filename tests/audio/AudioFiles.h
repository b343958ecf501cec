#pragma once

#include <sndfile.h>

#include <cmath>
#include <cstddef>
#include <filesystem>
#include <numbers>
#include <random>
#include <vector>

namespace tamboro::test {

/// Noise without a silent frame, so that each frame is told from any other and from silence.
inline std::vector<float> noise(std::size_t frames, int channels = 2, unsigned seed = 1) {
  std::mt19937 random(seed);
  std::vector<float> values(frames * static_cast<std::size_t>(channels));
  for (float& value : values) {
    value = static_cast<float>(static_cast<int>(random() % 24'000) - 12'000) / 32768.0F;
    if (value == 0) value = 1 / 32768.0F;
  }
  return values;
}

inline std::vector<float> sine(std::size_t frames, int channels, int rate, double hertz = 440) {
  std::vector<float> values;
  for (std::size_t i = 0; i < frames; ++i) {
    const double value = 0.5 * std::cos(2 * std::numbers::pi * hertz * static_cast<double>(i) / rate);
    values.insert(values.end(), static_cast<std::size_t>(channels), static_cast<float>(value));
  }
  return values;
}

/// False where this libsndfile can't write the format.
inline bool writeAudio(const std::filesystem::path& file, const std::vector<float>& values, int channels = 2,
                       int rate = 44100, int format = SF_FORMAT_WAV | SF_FORMAT_PCM_16) {
  SF_INFO info{};
  info.channels = channels;
  info.samplerate = rate;
  info.format = format;
  if (sf_format_check(&info) == 0) return false;
  SNDFILE* out = sf_open(file.c_str(), SFM_WRITE, &info);
  const auto count = static_cast<sf_count_t>(values.size());
  const bool isWritten = out && sf_write_float(out, values.data(), count) == count;
  return isWritten && sf_close(out) == 0;
}

}  // namespace tamboro::test
