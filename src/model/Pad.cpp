#include "model/Pad.h"

#include <array>

namespace tamboro {
namespace {

// In the order in which leaves that a pad lacks are appended.
constexpr std::array resetLeaves = {
    elements::wave,        elements::subWave,      elements::waveLevel,   elements::wavePan,      elements::muteGroup,
    elements::loop,        elements::tempoSync,    elements::dynamics,    elements::reverse,      elements::voiceAssign,
    elements::triggerType, elements::outputAssign, elements::midiChannel, elements::subWaveLevel, elements::subWavePan,
};

}  // namespace

void Pad::resetValues() {
  for (const elements::IntegerLeaf& leaf : resetLeaves)
    leaf.write(node, leaf.fallback);
}

std::string panText(std::int64_t pan) {
  constexpr std::int64_t centre = elements::wavePan.fallback;
  if (pan == centre) return "CENTER";
  // Unsigned, since a file may hold a number whose distance from the centre is out of range.
  const auto distance = static_cast<std::uint64_t>(pan) - static_cast<std::uint64_t>(centre);
  return pan < centre ? "L" + std::to_string(0 - distance) : "R" + std::to_string(distance);
}

}  // namespace tamboro
