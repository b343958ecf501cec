#pragma once

#include <cstdint>
#include <string>

#include "make_card/Random.h"

namespace tamboro {

enum class Sound : std::uint8_t {
  kick,
  snare,
  closedHat,
  openHat,
  tom,
  clap,
  rim,
  cowbell,
  bell,
  shaker,
  cymbal,
  bass,
  pluck,
  riser,
  voice,
  loop
};

struct Tone {
  Sound sound = Sound::kick;
  double pitch = 1.0;  ///< factor on the sound's own frequency
  double tempo = 120;  ///< beats per minute; only a loop has one
  bool stereo = false;
};

inline constexpr int sampleRate = 44100;

/// Length of the whole sound in frames; a loop lasts four beats.
std::int64_t frameCount(const Tone& tone);

/// A WAV file, 16 bit PCM, of the sound's first `frames` frames with a short fade at the end.
std::string makeWav(const Tone& tone, std::int64_t frames, Random random);

}  // namespace tamboro
