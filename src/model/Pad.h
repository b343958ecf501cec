#pragma once

#include <cstdint>
#include <string>

#include "card/SpdNode.h"
#include "model/Elements.h"
#include "model/Keys.h"

namespace tamboro {

/// One pad of a kit: a copy of the `PadPrm` element at `index`, counted from 0. Short-lived: taken from a kit, read or
/// changed, and dropped or put back. A leaf that is missing reads as its default in elements.
struct Pad {
  int index;
  SpdNode node;

  WaveId wave() const { return elements::wave.read(node); }
  WaveId subWave() const { return elements::subWave.read(node); }
  std::int64_t level() const { return elements::waveLevel.read(node); }
  std::int64_t pan() const { return elements::wavePan.read(node); }
  std::int64_t subLevel() const { return elements::subWaveLevel.read(node); }
  std::int64_t subPan() const { return elements::subWavePan.read(node); }
  std::int64_t note() const { return elements::note.read(node); }
  std::int64_t muteGroup() const { return elements::muteGroup.read(node); }
  std::int64_t triggerType() const { return elements::triggerType.read(node); }
  std::int64_t outputAssign() const { return elements::outputAssign.read(node); }
  std::int64_t midiChannel() const { return elements::midiChannel.read(node); }
  bool isPoly() const { return elements::voiceAssign.isOn(node); }
  bool loop() const { return elements::loop.isOn(node); }
  bool tempoSync() const { return elements::tempoSync.isOn(node); }
  bool dynamics() const { return elements::dynamics.isOn(node); }
  bool reverse() const { return elements::reverse.isOn(node); }

  /// Writes the fifteen settings back to their defaults, missing ones too. The note number is not one of them.
  void resetValues();

  friend bool operator==(const Pad&, const Pad&) = default;
};

/// Pan as shown: 15 is "CENTER", 0 is "L15", 30 is "R15".
std::string panText(std::int64_t pan);

}  // namespace tamboro
