#include "model/Pad.h"

namespace tamboro {

void Pad::resetValues() {
  for (const PadSetting& setting : padSettings)
    if (setting.isReset) setting.leaf.write(node, setting.leaf.fallback);
}

std::string panText(std::int64_t pan) {
  constexpr std::int64_t centre = padSetting("padPan").leaf.fallback;
  if (pan == centre) return "CENTER";
  // Unsigned, since a file may hold a number whose distance from the centre is out of range.
  const auto distance = static_cast<std::uint64_t>(pan) - static_cast<std::uint64_t>(centre);
  return pan < centre ? "L" + std::to_string(0 - distance) : "R" + std::to_string(distance);
}

}  // namespace tamboro
