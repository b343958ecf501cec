#pragma once

#include <cstddef>
#include <vector>

namespace tamboro {

/// Brings stereo frames of any rate to the output's by windowed-sinc interpolation, block by block without a seam. Of n
/// frames come n * outputRate / rate, rounded up, the first in its place: nothing is lost at either end. (The stream
/// converter of SDL drops fractions of a frame at each block and up to 12 ms of the end.)
class Resampler {
 public:
  /// Frames per second of what comes in, at least 1.
  explicit Resampler(int rate);

  void put(const std::vector<float>& frames);
  /// Nothing more comes in.
  void end();
  /// Writes up to `count` frames and returns how many; 0: more has to come in first, or all is out.
  std::size_t take(float* frames, std::size_t count);

 private:
  std::size_t copy(float* frames, std::size_t count);
  void interpolate(float* frame) const;
  void dropPassed();

  std::size_t rate_;
  /// Kernel steps per frame that comes in: narrower than 1 where the output's rate is the lower one.
  double scale_;
  /// Frames that an output frame reaches to each side.
  std::size_t reach_;
  std::vector<float> input_;
  /// Where the next output frame lies: a frame of `input_` and a fraction of it in units of 1 / outputRate, so that no
  /// rounding adds up.
  std::size_t position_;
  std::size_t fraction_ = 0;
};

}  // namespace tamboro
