#pragma once

#include <QTimer>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>

#include "audio/SoundFeeder.h"

namespace tamboro {

class Sound;

/// The sound device behind SDL, with one sound at a time. It is opened by the first sound, stays open for two seconds
/// of silence, so that the next sound starts at once, and is opened anew where its server or plug went away. Main
/// thread, whose event loop has to run for the closing.
class AudioOutput {
 public:
  AudioOutput();
  AudioOutput(const AudioOutput&) = delete;
  AudioOutput& operator=(const AudioOutput&) = delete;
  ~AudioOutput();

  /// Plays a sound in place of any other. `ended` is called once, on the audio thread, after its last frame was heard,
  /// unless it is replaced or silenced before. False: no sound on this machine.
  bool play(std::shared_ptr<Sound> sound, std::function<void()> ended);
  /// Cuts off any sound.
  void silence();

 private:
  bool ensureDevice();
  bool openDevice();
  void closeDevice();
  void closeAudio();
  void replaceSound(std::shared_ptr<Sound> sound, std::function<void()> ended);
  void render(float* frames, std::size_t count);

  SoundFeeder feeder_;
  QTimer idle_;
  bool isAudioOpen_ = false;
  std::uint32_t device_ = 0;
  std::future<void> closing_;

  // Shared with the audio thread, under the device's lock.
  std::shared_ptr<Sound> sound_;
  std::function<void()> ended_;
  std::size_t framesOfSilence_ = 0;
};

}  // namespace tamboro
