#pragma once

namespace tamboro {

/// The settings that can be applied to all pads of a kit, in the order in which the sheet shows them and the store
/// writes them.
enum class SetAllPadField {
  level,
  pan,
  muteGroup,
  loop,
  tempoSync,
  dynamics,
  reverse,
  isPoly,
  triggerType,
  outputAssign,
  midiChannel
};

}  // namespace tamboro
