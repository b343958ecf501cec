#include <array>
#include <utility>

#include "library/store/RolandLibrary_edit.h"
#include "model/Rounding.h"

namespace tamboro {
namespace {

/// The leaf of each field, in the order of the enumeration.
constexpr std::array<elements::IntegerLeaf, 11> fieldLeaves{
    elements::waveLevel,   elements::wavePan,      elements::muteGroup,   elements::loop,
    elements::tempoSync,   elements::dynamics,     elements::reverse,     elements::voiceAssign,
    elements::triggerType, elements::outputAssign, elements::midiChannel,
};

}  // namespace

void RolandLibrary::updatePad(Slot slot, int pad, const std::function<void(Pad&)>& change) {
  edit<PadRecord>({slot, pad}, change);
}

void RolandLibrary::editPadLeaf(Slot slot, int pad, const elements::IntegerLeaf& leaf, std::int64_t value) {
  edit<PadRecord>({slot, pad}, [&](Pad& stored) { leaf.write(stored.node, value); });
}

void RolandLibrary::setPadSound(Slot slot, int pad, WaveId id) {
  editPadLeaf(slot, pad, elements::wave, id);
}

void RolandLibrary::removePadSound(Slot slot, int pad) {
  editPadLeaf(slot, pad, elements::wave, noWave);
}

void RolandLibrary::resetPad(Slot slot, int pad) {
  edit<PadRecord>({slot, pad}, [](Pad& stored) { stored.resetValues(); });
}

void RolandLibrary::setPadLevel(Slot slot, int pad, double value) {
  editPadLeaf(slot, pad, elements::waveLevel, truncated(value));
}

void RolandLibrary::setPadPan(Slot slot, int pad, double value) {
  editPadLeaf(slot, pad, elements::wavePan, truncated(value));
}

void RolandLibrary::setPadSubLevel(Slot slot, int pad, double value) {
  editPadLeaf(slot, pad, elements::subWaveLevel, truncated(value));
}

void RolandLibrary::setPadSubPan(Slot slot, int pad, double value) {
  editPadLeaf(slot, pad, elements::subWavePan, truncated(value));
}

void RolandLibrary::setPadNote(Slot slot, int pad, std::int64_t note) {
  editPadLeaf(slot, pad, elements::note, note);
}

void RolandLibrary::setPadPoly(Slot slot, int pad, bool poly) {
  editPadLeaf(slot, pad, elements::voiceAssign, poly ? 1 : 0);
}

void RolandLibrary::setPadInteger(Slot slot, int pad, const elements::IntegerLeaf& leaf, std::int64_t value) {
  editPadLeaf(slot, pad, leaf, value);
}

void RolandLibrary::setPadFlag(Slot slot, int pad, const elements::IntegerLeaf& leaf, bool on) {
  editPadLeaf(slot, pad, leaf, on ? 1 : 0);
}

void RolandLibrary::applySettingsToAllPads(Slot slot, int source, const std::set<SetAllPadField>& fields) {
  const Kit* kit = this->kit(slot);
  const auto from = kit ? kit->pad(source) : std::nullopt;
  if (!from) return;
  std::vector<std::pair<elements::IntegerLeaf, std::int64_t>> values;
  for (const SetAllPadField field : fields) {  // a set: in the order of the fields
    const elements::IntegerLeaf& leaf = fieldLeaves.at(static_cast<std::size_t>(field));
    values.emplace_back(leaf, leaf.read(from->node));
  }
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
