#include <algorithm>

#include "library/CardPaths.h"
#include "library/store/RolandLibrary_edit.h"
#include "model/Rounding.h"

namespace tamboro {

void RolandLibrary::setKitLevel(Slot slot, double value) {
  edit<KitRecord>({slot}, [&](Kit& kit) { elements::kitLevel.write(kit.node, truncated(value)); });
}

void RolandLibrary::setKitTempo(Slot slot, double bpm) {
  edit<KitRecord>({slot}, [&](Kit& kit) { kit.setTempoBPM(bpm); });
}

void RolandLibrary::setKitName(Slot slot, const std::string& name) {
  edit<KitRecord>({slot}, [&](Kit& kit) { elements::kitName.write(kit.node, name); });
}

void RolandLibrary::setKitSubName(Slot slot, const std::string& name) {
  edit<KitRecord>({slot}, [&](Kit& kit) { elements::kitSubName.write(kit.node, name); });
}

void RolandLibrary::setFxSwitch(Slot slot, int unit, bool on) {
  edit<KitRecord>({slot}, [&](Kit& kit) { elements::fxSwitch(unit).write(kit.node, on ? 1 : 0); });
}

void RolandLibrary::setFxType(Slot slot, int unit, std::int64_t type) {
  edit<KitRecord>({slot}, [&](Kit& kit) { elements::fxType(unit).write(kit.node, type); });
}

void RolandLibrary::setFxParam(Slot slot, int unit, int parameter, std::int64_t value) {
  edit<KitRecord>({slot}, [&](Kit& kit) { kit.node.setLeaf(elements::fxParam(unit, parameter), value); });
}

void RolandLibrary::exchangePads(Slot slot, int a, int b) {
  edit<KitRecord>({slot}, [&](Kit& kit) {
    const auto padA = kit.pad(a);
    const auto padB = kit.pad(b);
    if (padA && padB) kit.applyPads({{a, padB->node}, {b, padA->node}});
  });
}

std::optional<Slot> RolandLibrary::nextFreeKitSlot() const {
  constexpr Slot slotCount = 1000;
  auto kit = std::ranges::lower_bound(card_.kits, 0, {}, &Kit::slot);
  for (Slot free = 0; free < slotCount; ++free) {
    while (kit != card_.kits.end() && kit->slot < free)
      ++kit;
    const bool isTaken = kit != card_.kits.end() && kit->slot == free;
    if (isTaken) continue;
    if (card_.pendingKitDeletions.contains(free) || card_.isFree(services_.files, cardpaths::kitFile(free)))
      return free;
  }
  return std::nullopt;
}

std::optional<Slot> RolandLibrary::createKit(Slot source, bool blank) {
  const Kit* base = kit(source);
  const auto slot = nextFreeKitSlot();
  if (!base || !slot) return std::nullopt;
  Kit created{*slot, base->node, true};
  if (blank) {
    elements::kitName.write(created.node, {});
    elements::kitSubName.write(created.node, {});
    std::vector<Pad> pads = created.pads();
    for (Pad& pad : pads) {
      padSetting("padSound").leaf.write(pad.node, noWave);
      padSetting("subSound").leaf.write(pad.node, noWave);
    }
    created.applyPads(pads);
  } else {
    elements::kitName.write(created.node, created.name() + " Copy");
  }
  lives_.renew(RecordLives::Kind::kit, *slot);
  card_.insert(std::move(created));
  Q_EMIT published(Property::kits);
  return slot;
}

/// There is no template of an empty kit: a blank kit is made out of the lowest one of the card.
std::optional<Slot> RolandLibrary::createBlankKit() {
  return card_.kits.empty() ? std::nullopt : createKit(card_.kits.front().slot, true);
}

void RolandLibrary::copyPads(Slot slot) {
  const Kit* kit = this->kit(slot);
  if (!kit) return;
  std::map<int, Pad> copied;
  for (const Pad& pad : kit->pads())
    copied.emplace(pad.index, pad);
  state_.copiedPads = std::move(copied);
  Q_EMIT published(Property::copiedPads);
}

void RolandLibrary::pasteCopiedPads(Slot slot, const std::optional<std::vector<int>>& indices) {
  Kit* kit = card_.kit(slot);
  if (!state_.copiedPads || !kit) return;
  const std::vector<Pad> pads = kit->pads();
  std::vector<Pad> changed;
  const auto paste = [&](const Pad& copied) {
    const auto index = static_cast<std::size_t>(copied.index);
    if (index < pads.size() && pads[index] != copied) changed.push_back(copied);
  };
  if (indices) {
    for (const int index : *indices) {
      if (const auto copied = state_.copiedPads->find(index); copied != state_.copiedPads->end()) paste(copied->second);
    }
  } else {
    for (const auto& [index, pad] : *state_.copiedPads)
      paste(pad);
  }
  if (changed.empty()) return;
  kit->applyPads(changed);
  kit->isDirty = true;
  Q_EMIT published(Property::kits);
}

void RolandLibrary::deleteKit(Slot slot) {
  if (std::erase_if(card_.kits, [&](const Kit& kit) { return kit.slot == slot; }) == 0) return;
  card_.kitDocs.erase(slot);
  lives_.renew(RecordLives::Kind::kit, slot);
  card_.pendingKitDeletions[slot] = lives_.life(RecordLives::Kind::kit, slot);
  Q_EMIT published(Property::kits);
}

}  // namespace tamboro
