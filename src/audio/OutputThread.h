#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>

#include "audio/AudioDevice.h"

namespace tamboro {

class Sound;
class SoundFeeder;

/// What the main thread and the device share, and the thread that opens and closes the device. A sound server that
/// hangs holds that thread for as long as it likes: nobody waits for it, and it keeps this object alive.
class OutputThread : public std::enable_shared_from_this<OutputThread> {
 public:
  /// `feeder` lives until `end`.
  explicit OutputThread(SoundFeeder& feeder) : feeder_(&feeder) {}

  /// In place of the sound before; null: silence. Returns at once.
  void play(std::shared_ptr<Sound> sound, std::function<void()> ended);
  /// The current sound ends, and the device is given back: it takes nothing any more.
  void giveUp();
  /// Ends the sound and the thread, and gives it a moment to give the device back.
  void end();
  /// How often the device has asked for frames.
  std::size_t renders() const;

 private:
  using Lock = std::unique_lock<std::mutex>;
  using Clock = std::chrono::steady_clock;

  void run();
  void openDevice(Lock& lock);
  void closeDevice(Lock& lock);
  void render(float* frames, std::size_t count);
  void endSound();

  /// Only the thread's own.
  AudioDevice device_{
      [](void* self, float* frames, std::size_t count) { static_cast<OutputThread*>(self)->render(frames, count); },
      this};
  bool isOpen_ = false;

  mutable std::mutex mutex_;  ///< held for moments only, for the device's own thread takes it
  std::condition_variable changed_;
  SoundFeeder* feeder_;
  std::shared_ptr<Sound> sound_;
  std::function<void()> ended_;
  std::size_t framesOfSilence_ = 0;
  std::size_t renders_ = 0;
  Clock::time_point silentSince_;
  bool isStarted_ = false;
  bool isLost_ = false;     ///< the device is of no use any more
  bool isClosing_ = false;  ///< what the device still asks for, nobody hears
  bool isEnding_ = false;
  bool hasEnded_ = false;
};

}  // namespace tamboro
