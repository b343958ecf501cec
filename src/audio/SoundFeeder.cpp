#include "audio/SoundFeeder.h"

#include <chrono>
#include <utility>

#include "audio/Sound.h"

namespace tamboro {
namespace {

// Between two looks at a sound that is longer than its buffer, which holds ten times as much. So the audio thread wakes
// nobody.
constexpr std::chrono::milliseconds pause{150};

}  // namespace

SoundFeeder::~SoundFeeder() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  changed_.notify_one();
  if (thread_.joinable()) thread_.join();
}

void SoundFeeder::feed(std::shared_ptr<Sound> sound) {
  {
    const std::lock_guard lock(mutex_);
    if (sound && !thread_.joinable()) thread_ = std::thread([this] { run(); });
    // What leaves goes at this function's end, not under the lock.
    std::swap(sound_, sound);
  }
  changed_.notify_one();
}

void SoundFeeder::run() {
  std::unique_lock lock(mutex_);
  while (!isEnding_) {
    if (!sound_) {
      changed_.wait(lock);
      continue;
    }
    auto sound = sound_;
    lock.unlock();
    const bool goesOn = sound->decodePart();
    lock.lock();
    if (sound != sound_) {
      // Replaced meanwhile. Its file is closed without the lock, which the main thread takes.
      lock.unlock();
      sound.reset();
      lock.lock();
    } else if (sound->isDecoded()) {
      sound_.reset();
    } else if (!goesOn && !isEnding_) {
      changed_.wait_for(lock, pause);
    }
  }
}

}  // namespace tamboro
