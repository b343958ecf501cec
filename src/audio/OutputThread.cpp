#include "audio/OutputThread.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "audio/OutputFormat.h"
#include "audio/Sound.h"
#include "audio/SoundFeeder.h"

namespace tamboro {
namespace {

constexpr std::chrono::seconds idleTime{2};
/// What a server that answers needs to take its stream back; at the program's end, with the window gone.
constexpr std::chrono::milliseconds farewell{500};
// SDL doesn't tell how much stands between it and the loudspeaker. Behind the last frame go two buffers, which is what
// the servers hold of a stream, and a tenth of a second for the hardware.
constexpr std::size_t framesUntilHeard = 2 * framesPerBuffer + outputRate / 10;

/// SDL is one for the whole process. A thread that a server holds keeps it, and one that is made later waits for it.
std::mutex& ownerOfSdl() {
  static std::mutex mutex;
  return mutex;
}

}  // namespace

void OutputThread::play(std::shared_ptr<Sound> sound, std::function<void()> ended) {
  const Lock lock(mutex_);
  // What leaves goes at this function's end, not on the device's thread.
  std::swap(sound_, sound);
  std::swap(ended_, ended);
  framesOfSilence_ = 0;
  silentSince_ = Clock::now();
  // Not for a device that has yet to be opened: decoding would compete with the opening for the first frame's time.
  feeder_->feed(isOpen_ ? sound_ : nullptr);
  if (sound_ && !std::exchange(isStarted_, true)) std::thread([self = shared_from_this()] { self->run(); }).detach();
  changed_.notify_all();
}

void OutputThread::giveUp() {
  const Lock lock(mutex_);
  isLost_ = isOpen_;  // one that is still being opened is as good as new when that is done
  endSound();
  changed_.notify_all();
}

void OutputThread::end() {
  play(nullptr, nullptr);
  Lock lock(mutex_);
  feeder_ = nullptr;
  isEnding_ = true;
  changed_.notify_all();
  if (isStarted_) changed_.wait_for(lock, farewell, [this] { return hasEnded_; });
}

std::size_t OutputThread::renders() const {
  const Lock lock(mutex_);
  return renders_;
}

void OutputThread::run() {
  const Lock sdl(ownerOfSdl());
  Lock lock(mutex_);
  while (!isEnding_) {
    if (isOpen_ && (isLost_ || (!sound_ && Clock::now() >= silentSince_ + idleTime)))
      closeDevice(lock);
    else if (!isOpen_ && sound_ && ended_)
      openDevice(lock);
    else if (isOpen_ && !sound_)
      changed_.wait_until(lock, silentSince_ + idleTime);
    else
      changed_.wait(lock);
  }
  isClosing_ = true;
  lock.unlock();
  device_.disconnect();
  AudioDevice::leaveThread();
  lock.lock();
  hasEnded_ = true;
  changed_.notify_all();
}

/// The sound is in place before the device is opened: the first buffer that goes out holds its first frame.
void OutputThread::openDevice(Lock& lock) {
  lock.unlock();
  const bool isOpen = device_.open();
  lock.lock();
  isOpen_ = isOpen;
  if (!isOpen) return endSound();
  if (feeder_) feeder_->feed(sound_);
}

void OutputThread::closeDevice(Lock& lock) {
  const bool isLost = isLost_;
  isOpen_ = false;
  isClosing_ = true;
  lock.unlock();
  if (isLost)
    device_.disconnect();
  else
    device_.close();
  lock.lock();
  isClosing_ = isLost_ = false;
}

void OutputThread::endSound() {
  if (ended_) std::exchange(ended_, nullptr)();
}

/// On the device's own thread.
void OutputThread::render(float* frames, std::size_t count) {
  const Lock lock(mutex_);
  ++renders_;
  const bool isHeard = !isClosing_ && !device_.isLost();
  const std::size_t taken = sound_ && isHeard ? sound_->take(frames, count) : 0;
  std::fill(frames + outputChannels * taken, frames + outputChannels * count, 0.0F);
  if (isClosing_) return;
  if (!isHeard) {
    isLost_ = true;
    endSound();
    changed_.notify_all();
  } else if (sound_ && sound_->isTaken()) {
    framesOfSilence_ += count - taken;
    if (framesOfSilence_ >= framesUntilHeard) endSound();
  }
}

}  // namespace tamboro
