#pragma once

#include <QTimer>
#include <cstddef>
#include <functional>
#include <memory>

#include "audio/SoundFeeder.h"

namespace tamboro {

class OutputThread;
class Sound;

/// Plays one sound at a time and never waits for the sound server. The device is opened by the first sound, stays open
/// for two seconds of silence, so that the next sound starts at once, and is opened anew where its server or plug went
/// away. Main thread, whose event loop has to run for a hanging server to be given up.
class AudioOutput {
 public:
  AudioOutput();
  AudioOutput(const AudioOutput&) = delete;
  AudioOutput& operator=(const AudioOutput&) = delete;
  ~AudioOutput();

  /// Plays a sound in place of any other. `ended` is called once, on any thread, after its last frame was heard or when
  /// there is nobody to play it: no device, one that went away, or one that has taken nothing for two seconds. It isn't
  /// called any more once the sound is replaced or silenced.
  void play(std::shared_ptr<Sound> sound, std::function<void()> ended);
  /// Cuts off any sound.
  void silence();

 private:
  void watch();

  SoundFeeder feeder_;
  std::shared_ptr<OutputThread> thread_;
  QTimer patience_;
  std::size_t renders_ = 0;
};

}  // namespace tamboro
