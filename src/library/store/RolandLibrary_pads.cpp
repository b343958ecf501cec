#include <utility>

#include "library/store/RolandLibrary_edit.h"
#include "model/Rounding.h"

namespace tamboro {

void RolandLibrary::updatePad(Slot slot, int pad, const std::function<void(Pad&)>& change) {
  edit<PadRecord>({slot, pad}, change);
}

void RolandLibrary::setPadSound(Slot slot, int pad, WaveId id) {
  setPadInteger(slot, pad, padSetting("padSound"), id);
}

void RolandLibrary::removePadSound(Slot slot, int pad) {
  setPadInteger(slot, pad, padSetting("padSound"), noWave);
}

void RolandLibrary::resetPad(Slot slot, int pad) {
  edit<PadRecord>({slot, pad}, [](Pad& stored) { stored.resetValues(); });
}

void RolandLibrary::setPadLevel(Slot slot, int pad, double value) {
  setPadInteger(slot, pad, padSetting("padVolume"), truncated(value));
}

void RolandLibrary::setPadPan(Slot slot, int pad, double value) {
  setPadInteger(slot, pad, padSetting("padPan"), truncated(value));
}

void RolandLibrary::setPadSubLevel(Slot slot, int pad, double value) {
  setPadInteger(slot, pad, padSetting("subVolume"), truncated(value));
}

void RolandLibrary::setPadSubPan(Slot slot, int pad, double value) {
  setPadInteger(slot, pad, padSetting("subPan"), truncated(value));
}

void RolandLibrary::setPadNote(Slot slot, int pad, std::int64_t note) {
  setPadInteger(slot, pad, padSetting("note"), note);
}

void RolandLibrary::setPadPoly(Slot slot, int pad, bool poly) {
  setPadInteger(slot, pad, padSetting("poly"), poly ? 1 : 0);
}

void RolandLibrary::setPadInteger(Slot slot, int pad, const PadSetting& setting, std::int64_t value) {
  edit<PadRecord>({slot, pad}, [&](Pad& stored) { setting.leaf.write(stored.node, value); });
}

void RolandLibrary::setPadFlag(Slot slot, int pad, const PadSetting& setting, bool on) {
  setPadInteger(slot, pad, setting, on ? 1 : 0);
}

void RolandLibrary::applySettingsToAllPads(Slot slot, int source, const std::set<const PadSetting*>& chosen) {
  const Kit* kit = this->kit(slot);
  const auto from = kit ? kit->pad(source) : std::nullopt;
  if (!from) return;
  std::vector<std::pair<elements::IntegerLeaf, std::int64_t>> values;
  for (const PadSetting& setting : padSettings)
    if (setting.isForAll && chosen.contains(&setting)) values.emplace_back(setting.leaf, from->value(setting));
  // Only those that change: an undo must leave the others as they are by then.
  std::vector<Pad> changed;
  std::vector<int> indexes;
  for (const Pad& pad : kit->pads()) {
    if (pad.index == source) continue;
    Pad after = pad;
    for (const auto& [leaf, value] : values)
      leaf.write(after.node, value);
    if (after == pad) continue;
    indexes.push_back(pad.index);
    changed.push_back(std::move(after));
  }
  edit<PadsRecord>({slot, std::move(indexes)}, [&](std::vector<Pad>& pads) { pads = std::move(changed); });
}

}  // namespace tamboro
