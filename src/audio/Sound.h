#pragma once

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>

#include "audio/AudioFile.h"
#include "audio/Resampler.h"

namespace tamboro {

/// One sound on its way from its file to the device, in a buffer of a second and a half between two threads: one
/// decodes ahead, the audio thread takes, and neither ever waits for the other. So a long file costs no more memory and
/// no later first frame than a short one.
class Sound {
 public:
  /// With its first part decoded. Null where there is nothing to hear: no audio file, or one without a frame.
  static std::shared_ptr<Sound> open(const std::filesystem::path& location);
  explicit Sound(AudioFile file);

  /// Decodes a tenth of a second at most; false: the buffer is full or all is decoded. One thread at a time, and not
  /// the audio thread.
  bool decodePart();
  bool isDecoded() const { return isDecoded_.load(std::memory_order_acquire); }

  /// Audio thread: writes up to `count` frames in the output's format and returns how many. Fewer come at the end and
  /// where decoding fell behind.
  std::size_t take(float* frames, std::size_t count);
  /// Audio thread: the last frame was taken.
  bool isTaken() const;

 private:
  static constexpr std::size_t capacity = 65536;

  void readBlock();

  std::optional<AudioFile> file_;
  Resampler resampler_;
  std::unique_ptr<float[]> ring_;
  // Counted from the sound's start; the remainder by the capacity is the place in the buffer.
  std::atomic<std::size_t> written_ = 0;
  std::atomic<std::size_t> taken_ = 0;
  std::atomic<bool> isDecoded_ = false;
};

}  // namespace tamboro
