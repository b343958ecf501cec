#include "audio/AudioOutput.h"

#define SDL_MAIN_HANDLED
#include <SDL.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "audio/OutputFormat.h"
#include "audio/Sound.h"

namespace tamboro {
namespace {

constexpr std::chrono::seconds idleTime{2};
constexpr Uint16 framesPerBuffer = 1024;
// SDL doesn't tell how much stands between it and the loudspeaker. Behind the last frame go two buffers, which is what
// the servers hold of a stream, and a tenth of a second for the hardware.
constexpr std::size_t framesUntilHeard = 2 * framesPerBuffer + outputRate / 10;

bool openAudio() {
  SDL_SetMainReady();
  // Control-C and a session's end belong to the application.
  SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
  // What the desktop's volume control shows.
  SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "Tamboro");
  SDL_SetHint(SDL_HINT_AUDIO_DEVICE_STREAM_NAME, "Preview");
  return SDL_InitSubSystem(SDL_INIT_AUDIO) == 0;
}

}  // namespace

AudioOutput::AudioOutput() {
  idle_.setSingleShot(true);
  idle_.setInterval(idleTime);
  idle_.callOnTimeout([this] { closeDevice(); });
}

AudioOutput::~AudioOutput() {
  closeDevice();
  closeAudio();
}

bool AudioOutput::play(std::shared_ptr<Sound> sound, std::function<void()> ended) {
  idle_.stop();
  // The sound is in place before the device is opened: the first buffer that goes out holds its first frame.
  replaceSound(sound, std::move(ended));
  if (!ensureDevice()) {
    silence();
    return false;
  }
  // Only now: until then decoding would compete with the opening for the first frame's time.
  feeder_.feed(std::move(sound));
  return true;
}

void AudioOutput::silence() {
  feeder_.feed(nullptr);
  replaceSound(nullptr, nullptr);
  if (device_ != 0) idle_.start();
}

void AudioOutput::replaceSound(std::shared_ptr<Sound> sound, std::function<void()> ended) {
  if (closing_.valid()) closing_.get();
  if (device_ != 0) SDL_LockAudioDevice(device_);
  std::swap(sound_, sound);
  std::swap(ended_, ended);
  framesOfSilence_ = 0;
  if (device_ != 0) SDL_UnlockAudioDevice(device_);
}

bool AudioOutput::ensureDevice() {
  const bool isStopped = device_ != 0 && SDL_GetAudioDeviceStatus(device_) == SDL_AUDIO_STOPPED;
  if (device_ != 0 && !isStopped) return true;
  if (isAudioOpen_ && !isStopped && openDevice()) return true;
  // The server that SDL is connected to can have gone, and another come.
  closeDevice();
  closeAudio();
  isAudioOpen_ = openAudio();
  return isAudioOpen_ && openDevice();
}

bool AudioOutput::openDevice() {
  SDL_AudioSpec request{};
  request.freq = outputRate;
  request.format = AUDIO_F32SYS;
  request.channels = outputChannels;
  request.samples = framesPerBuffer;
  request.userdata = this;
  request.callback = [](void* output, Uint8* bytes, int size) {
    static_cast<AudioOutput*>(output)->render(reinterpret_cast<float*>(bytes),
                                              static_cast<std::size_t>(size) / (outputChannels * sizeof(float)));
  };
  // No change allowed: where the hardware takes something else, SDL or the sound server converts.
  device_ = SDL_OpenAudioDevice(nullptr, 0, &request, nullptr, 0);
  if (device_ != 0) SDL_PauseAudioDevice(device_, 0);
  return device_ != 0;
}

void AudioOutput::closeDevice() {
  idle_.stop();
  if (device_ == 0) return;
  // SDL waits until the device has run out, too long for the main thread.
  closing_ = std::async(std::launch::async, SDL_CloseAudioDevice, std::exchange(device_, 0));
}

void AudioOutput::closeAudio() {
  if (closing_.valid()) closing_.get();
  if (isAudioOpen_) SDL_QuitSubSystem(SDL_INIT_AUDIO);
  isAudioOpen_ = false;
}

void AudioOutput::render(float* frames, std::size_t count) {
  const std::size_t taken = sound_ ? sound_->take(frames, count) : 0;
  std::fill(frames + outputChannels * taken, frames + outputChannels * count, 0.0F);
  if (!sound_ || !sound_->isTaken()) return;
  framesOfSilence_ += count - taken;
  if (framesOfSilence_ < framesUntilHeard || !ended_) return;
  std::exchange(ended_, nullptr)();
}

}  // namespace tamboro
