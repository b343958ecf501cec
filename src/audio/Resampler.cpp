#include "audio/Resampler.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "audio/OutputFormat.h"

namespace tamboro {
namespace {

constexpr std::size_t zeroCrossings = 24;
constexpr std::size_t stepsPerCrossing = 256;
// Below the half rate, so that the filter's slope ends near it.
constexpr double passBand = 0.95;

using Kernel = std::array<float, zeroCrossings * stepsPerCrossing + 2>;

// The right half of a sinc under a Blackman-Harris window, with a zero behind it for the interpolation.
Kernel makeKernel() {
  Kernel kernel{};
  for (std::size_t i = 0; i < zeroCrossings * stepsPerCrossing; ++i) {
    const double x = std::numbers::pi * static_cast<double>(i) / stepsPerCrossing;
    const double w = x / zeroCrossings;
    const double window = 0.35875 + 0.48829 * std::cos(w) + 0.14128 * std::cos(2 * w) + 0.01168 * std::cos(3 * w);
    kernel[i] = static_cast<float>(i == 0 ? 1.0 : window * std::sin(x) / x);
  }
  return kernel;
}

const Kernel& kernel() {
  static const Kernel made = makeKernel();
  return made;
}

}  // namespace

Resampler::Resampler(int rate)
    : rate_(static_cast<std::size_t>(rate)),
      scale_(passBand * std::min(1.0, static_cast<double>(outputRate) / rate)),
      reach_(rate == outputRate ? 0 : static_cast<std::size_t>(std::ceil(zeroCrossings / scale_))),
      input_(2 * reach_),
      position_(reach_) {}

void Resampler::put(const std::vector<float>& frames) {
  dropPassed();
  input_.insert(input_.end(), frames.begin(), frames.end());
}

void Resampler::end() {
  input_.resize(input_.size() + 2 * reach_);
}

std::size_t Resampler::take(float* frames, std::size_t count) {
  if (reach_ == 0) return copy(frames, count);
  std::size_t taken = 0;
  for (; taken < count && position_ + reach_ < input_.size() / 2; ++taken) {
    interpolate(frames + 2 * taken);
    fraction_ += rate_;
    position_ += fraction_ / outputRate;
    fraction_ %= outputRate;
  }
  return taken;
}

std::size_t Resampler::copy(float* frames, std::size_t count) {
  const std::size_t taken = std::min(count, input_.size() / 2 - position_);
  std::copy_n(input_.data() + 2 * position_, 2 * taken, frames);
  position_ += taken;
  return taken;
}

void Resampler::interpolate(float* frame) const {
  const Kernel& table = kernel();
  const auto step = static_cast<float>(scale_ * stepsPerCrossing);
  constexpr auto end = static_cast<float>(zeroCrossings * stepsPerCrossing);
  // In kernel steps, negative for what stands before the position.
  float place = (1 - static_cast<float>(reach_) - static_cast<float>(fraction_) / outputRate) * step;
  const float* near = input_.data() + 2 * (position_ - reach_ + 1);
  float left = 0;
  float right = 0;
  for (std::size_t i = 0; i < 2 * reach_; ++i, near += 2, place += step) {
    const float distance = std::min(std::abs(place), end);
    const auto below = static_cast<std::uint32_t>(distance);
    const float between = distance - static_cast<float>(below);
    const float weight = table[below] + between * (table[below + 1] - table[below]);
    left += weight * near[0];
    right += weight * near[1];
  }
  frame[0] = left * static_cast<float>(scale_);
  frame[1] = right * static_cast<float>(scale_);
}

void Resampler::dropPassed() {
  // A rate far above the output's can put the next frame beyond all that has come.
  const std::size_t passed = std::min(position_ - reach_, input_.size() / 2);
  input_.erase(input_.begin(), input_.begin() + static_cast<std::ptrdiff_t>(2 * passed));
  position_ -= passed;
}

}  // namespace tamboro
