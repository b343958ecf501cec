#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace tamboro {

class Sound;

/// Decodes the current sound ahead of the device on a thread of its own, which starts with the first sound. A slow card
/// keeps only this thread waiting.
class SoundFeeder {
 public:
  SoundFeeder() = default;
  SoundFeeder(const SoundFeeder&) = delete;
  SoundFeeder& operator=(const SoundFeeder&) = delete;
  /// Waits for a read under way.
  ~SoundFeeder();

  /// In place of the sound before; null: none. Returns at once. Any thread.
  void feed(std::shared_ptr<Sound> sound);

 private:
  void run();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::shared_ptr<Sound> sound_;
  bool isEnding_ = false;
  std::thread thread_;
};

}  // namespace tamboro
