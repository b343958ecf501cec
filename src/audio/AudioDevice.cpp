#include "audio/AudioDevice.h"

#define SDL_MAIN_HANDLED
#include <SDL.h>

#include <utility>

#include "audio/OutputFormat.h"

namespace tamboro {
namespace {

bool connect() {
  SDL_SetMainReady();
  // Control-C and a session's end belong to the application.
  SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
  // What the desktop's volume control shows.
  SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "Tamboro");
  SDL_SetHint(SDL_HINT_AUDIO_DEVICE_STREAM_NAME, "Preview");
  return SDL_InitSubSystem(SDL_INIT_AUDIO) == 0;
}

}  // namespace

bool AudioDevice::open() {
  if (isConnected_ && openDevice()) return true;
  // The server that SDL is connected to can have gone, and another come.
  disconnect();
  isConnected_ = connect();
  return isConnected_ && openDevice();
}

bool AudioDevice::openDevice() {
  SDL_AudioSpec request{};
  request.freq = outputRate;
  request.format = AUDIO_F32SYS;
  request.channels = outputChannels;
  request.samples = framesPerBuffer;
  request.userdata = this;
  request.callback = [](void* device, Uint8* bytes, int size) {
    const auto* self = static_cast<AudioDevice*>(device);
    self->render_(self->context_, reinterpret_cast<float*>(bytes),
                  static_cast<std::size_t>(size) / (outputChannels * sizeof(float)));
  };
  // No change allowed: where the hardware takes something else, SDL or the sound server converts.
  device_ = SDL_OpenAudioDevice(nullptr, 0, &request, nullptr, 0);
  // Not before: a device that is still paused calls nobody.
  if (device_ != 0) SDL_PauseAudioDevice(device_, 0);
  return device_ != 0;
}

void AudioDevice::close() {
  if (device_ != 0) SDL_CloseAudioDevice(device_);
  device_ = 0;  // Not before: its thread asks for it to the last.
}

void AudioDevice::disconnect() {
  close();
  if (std::exchange(isConnected_, false)) SDL_QuitSubSystem(SDL_INIT_AUDIO);
}

void AudioDevice::leaveThread() {
  SDL_TLSCleanup();
}

bool AudioDevice::isLost() const {
  return SDL_GetAudioDeviceStatus(device_) == SDL_AUDIO_STOPPED;
}

}  // namespace tamboro
