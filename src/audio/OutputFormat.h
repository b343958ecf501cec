#pragma once

namespace tamboro {

/// What the device is opened with: 32-bit float frames, left and right interleaved, at the rate of the instrument's own
/// samples, which therefore reach the device unchanged.
constexpr int outputRate = 44100;
constexpr int outputChannels = 2;
/// Frames that the device asks for at a time.
constexpr int framesPerBuffer = 1024;

}  // namespace tamboro
