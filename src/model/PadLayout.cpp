#include "model/PadLayout.h"

#include <algorithm>

namespace tamboro {
namespace {

constexpr int firstTrigger = mainPadCount;
constexpr int firstFootswitch = mainPadCount + triggerCount;

}  // namespace

PadLayout padLayout(int padCount) {
  const auto group = [padCount](int first, int size) { return PadRange{first, std::clamp(padCount - first, 0, size)}; };
  return {group(0, mainPadCount), group(firstTrigger, triggerCount), group(firstFootswitch, footswitchCount)};
}

std::string padLabel(int index) {
  if (index < 0 || index >= standardPadCount) return {};
  if (index < firstTrigger) return "Pad " + std::to_string(index + 1);
  if (index < firstFootswitch) return "Trig " + std::to_string(index - firstTrigger + 1);
  return "FS " + std::to_string(index - firstFootswitch + 1);
}

}  // namespace tamboro
