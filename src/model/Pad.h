#pragma once

#include <cstdint>
#include <string>

#include "card/SpdNode.h"
#include "model/Keys.h"
#include "model/PadSetting.h"

namespace tamboro {

/// One pad of a kit: a copy of the `PadPrm` element at `index`, counted from 0. Short-lived: taken from a kit, read or
/// changed, and dropped or put back. A leaf that is missing reads as its default.
struct Pad {
  int index;
  SpdNode node;

  std::int64_t value(const PadSetting& setting) const { return setting.leaf.read(node); }
  bool isOn(const PadSetting& setting) const { return setting.leaf.isOn(node); }
  WaveId wave() const { return value(padSetting("padSound")); }
  WaveId subWave() const { return value(padSetting("subSound")); }
  std::int64_t level() const { return value(padSetting("padVolume")); }
  std::int64_t pan() const { return value(padSetting("padPan")); }
  std::int64_t subLevel() const { return value(padSetting("subVolume")); }
  std::int64_t subPan() const { return value(padSetting("subPan")); }
  std::int64_t note() const { return value(padSetting("note")); }
  std::int64_t muteGroup() const { return value(padSetting("muteGroup")); }
  std::int64_t triggerType() const { return value(padSetting("triggerType")); }
  std::int64_t outputAssign() const { return value(padSetting("output")); }
  std::int64_t midiChannel() const { return value(padSetting("midiChannel")); }
  bool isPoly() const { return isOn(padSetting("poly")); }
  bool loop() const { return isOn(padSetting("loop")); }
  bool tempoSync() const { return isOn(padSetting("tempoSync")); }
  bool dynamics() const { return isOn(padSetting("dynamics")); }
  bool reverse() const { return isOn(padSetting("reverse")); }

  /// Writes the settings that a reset takes back to their defaults, missing ones too.
  void resetValues();

  friend bool operator==(const Pad&, const Pad&) = default;
};

/// Pan as shown: 15 is "CENTER", 0 is "L15", 30 is "R15".
std::string panText(std::int64_t pan);

}  // namespace tamboro
