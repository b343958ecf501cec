#pragma once

#include <cstddef>
#include <memory>
#include <vector>

struct soxr;

namespace tamboro {

/// Brings stereo frames of any rate to the output's, block by block without a seam. Of n frames come
/// n * outputRate / rate, rounded up, the first in its place: nothing is lost at either end. (The stream converter of
/// SDL drops fractions of a frame at each block and up to 12 ms of the end.)
class Resampler {
 public:
  /// Frames per second of what comes in, at least 1. Throws `std::bad_alloc`.
  explicit Resampler(int rate);

  void put(const std::vector<float>& frames);
  /// Nothing more comes in.
  void end();
  /// Writes up to `count` frames and returns how many; 0: more has to come in first, or all is out.
  std::size_t take(float* frames, std::size_t count);

 private:
  struct Closer {
    void operator()(soxr* converter) const;
  };

  std::size_t convert(float* frames, std::size_t count);
  std::size_t copy(float* frames, std::size_t count);
  /// Frames that were put in and not yet read.
  std::size_t unread() const;
  /// How many frames come of those that have been put in.
  std::size_t due() const;

  std::size_t rate_;
  /// Null where the output's rate comes in.
  std::unique_ptr<soxr, Closer> converter_;
  /// What has come in from here on, and how much of it has been read.
  std::vector<float> input_;
  std::size_t read_ = 0;
  /// In frames, from the start.
  std::size_t put_ = 0;
  std::size_t taken_ = 0;
  bool hasEnded_ = false;
};

}  // namespace tamboro
