#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <vector>

struct sf_private_tag;

namespace tamboro {

/// An audio file of any format, rate and channel count that libsndfile knows, read from its start as stereo frames: a
/// single channel goes to both sides, more than two are averaged into both. Any thread, one at a time.
class AudioFile {
 public:
  /// Absent for what is missing, no regular file or no audio. Never waits for a pipe's other end.
  static std::optional<AudioFile> open(const std::filesystem::path& location);

  AudioFile(AudioFile&& other) noexcept;
  AudioFile& operator=(AudioFile&&) = delete;
  ~AudioFile();

  /// Frames per second, 1 to 1,000,000.
  int rate() const { return rate_; }
  /// The next frames, a few thousand at most, left and right interleaved, each value from -1 to 1; empty at the end and
  /// on a read error. Valid until the next call.
  const std::vector<float>& read();

 private:
  AudioFile(int descriptor, sf_private_tag* file, int rate, int channels);
  void mixDown(std::size_t frames);

  int descriptor_;
  sf_private_tag* file_;
  int rate_;
  std::size_t channels_;
  std::vector<float> raw_;
  std::vector<float> stereo_;
};

}  // namespace tamboro
