#include "audio/Resampler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "audio/AudioFiles.h"
#include "audio/OutputFormat.h"

namespace tamboro::test {
namespace {

// All that comes out, for input in blocks and output in pieces of the given sizes.
std::vector<float> resampled(const std::vector<float>& input, int rate, std::size_t block, std::size_t piece) {
  Resampler resampler(rate);
  std::vector<float> output;
  std::vector<float> taken(2 * piece);
  const auto drain = [&] {
    while (const std::size_t count = resampler.take(taken.data(), piece)) {
      output.insert(output.end(), taken.begin(), taken.begin() + static_cast<std::ptrdiff_t>(2 * count));
    }
  };
  for (std::size_t at = 0; at < input.size(); at += 2 * block) {
    const auto begin = input.begin() + static_cast<std::ptrdiff_t>(at);
    resampler.put({begin, begin + static_cast<std::ptrdiff_t>(std::min(2 * block, input.size() - at))});
    drain();
  }
  resampler.end();
  drain();
  return output;
}

TEST(Resampler, keepsLengthPlaceAndShapeOfATone) {
  for (const int rate : {8000, 11025, 22050, 32000, 44099, 48000, 88200, 96000, 192000, 767'999}) {
    SCOPED_TRACE(rate);
    const auto frames = static_cast<std::size_t>(rate);
    const auto output = resampled(sine(frames, 2, rate, 997), rate, 1000, 777);
    ASSERT_EQ(output.size(), 2U * outputRate);
    double worst = 0;
    // The filter reaches beyond the ends, into silence.
    for (std::size_t i = 500; i < outputRate - 500; ++i) {
      const double wanted = 0.5 * std::cos(2 * std::numbers::pi * 997 * static_cast<double>(i) / outputRate);
      worst = std::max({worst, std::abs(output[2 * i] - wanted), std::abs(output[2 * i + 1] - wanted)});
    }
    EXPECT_LT(worst, 2e-4);
  }
}

TEST(Resampler, removesWhatTheOutputCannotHold) {
  const auto output = resampled(sine(96'000, 2, 96'000, 30'000), 96'000, 1000, 777);
  EXPECT_LT(std::abs(*std::max_element(output.begin() + 2000, output.end() - 2000)), 2e-4);
}

TEST(Resampler, doesNotDependOnTheBlocks) {
  for (const int rate : {1, 10, 8000, 44100, 48000, 1'000'000}) {
    SCOPED_TRACE(rate);
    const auto input = noise(rate <= 10 ? 3 : 5000);
    const auto whole = resampled(input, rate, 5000, 1'000'000);
    EXPECT_EQ(whole.size() / 2,
              (input.size() / 2 * outputRate + static_cast<std::size_t>(rate) - 1) / static_cast<std::size_t>(rate));
    EXPECT_EQ(resampled(input, rate, 1, 1), whole);
    EXPECT_EQ(resampled(input, rate, 17, 1000), whole);
    if (rate == outputRate) {
      EXPECT_EQ(whole, input);
    }
  }
}

}  // namespace
}  // namespace tamboro::test
