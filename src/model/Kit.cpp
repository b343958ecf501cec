#include "model/Kit.h"

#include "model/Elements.h"
#include "model/Rounding.h"

namespace tamboro {

std::vector<Pad> Kit::pads() const {
  std::vector<Pad> result;
  int index = 0;
  for (SpdNode& pad : node.children(elements::pad))
    result.push_back({index++, std::move(pad)});
  return result;
}

int Kit::padCount() const {
  return static_cast<int>(node.childCount(elements::pad));
}

std::optional<Pad> Kit::pad(int index) const {
  if (index < 0) return std::nullopt;
  const SpdNode* element = node.child(elements::pad, static_cast<std::size_t>(index));
  if (element == nullptr) return std::nullopt;
  return Pad{index, *element};
}

std::string Kit::name() const {
  return elements::kitName.read(node);
}
std::string Kit::subName() const {
  return elements::kitSubName.read(node);
}
std::int64_t Kit::level() const {
  return elements::kitLevel.read(node);
}
double Kit::tempoBPM() const {
  return static_cast<double>(elements::kitTempo.read(node)) / 10.0;
}

std::int64_t Kit::fxType(int unit) const {
  return elements::fxType(unit).read(node);
}
bool Kit::isFxOn(int unit) const {
  return elements::fxSwitch(unit).isOn(node);
}
std::int64_t Kit::fxParam(int unit, int position) const {
  return node.intValue(elements::fxParam(unit, position), 0);
}

void Kit::setTempoBPM(double value) {
  elements::kitTempo.write(node, rounded(value * 10.0));
}

bool Kit::updatePad(int index, const std::function<void(Pad&)>& change) {
  const std::optional<Pad> before = pad(index);
  if (!before) return false;
  Pad working = *before;
  change(working);
  if (working == *before) return false;
  node.replaceChild(elements::pad, static_cast<std::size_t>(index), working.node);
  isDirty = true;
  return true;
}

bool Kit::writePadWave(int index, WaveId id) {
  return updatePad(index, [id](Pad& pad) { padSetting("padSound").leaf.write(pad.node, id); });
}

bool Kit::clearPadWave(int index) {
  return writePadWave(index, noWave);
}

bool Kit::resetPadValues(int index) {
  return updatePad(index, [](Pad& pad) { pad.resetValues(); });
}

bool Kit::writePadNote(int index, std::int64_t note) {
  return updatePad(index, [note](Pad& pad) { padSetting("note").leaf.write(pad.node, note); });
}

bool Kit::writePadPoly(int index, bool isPoly) {
  return updatePad(index, [isPoly](Pad& pad) { padSetting("poly").leaf.write(pad.node, isPoly ? 1 : 0); });
}

void Kit::applyPads(const std::vector<Pad>& pads) {
  std::map<std::size_t, SpdNode> byIndex;
  for (const Pad& pad : pads) {
    if (pad.index >= 0) byIndex.insert_or_assign(static_cast<std::size_t>(pad.index), pad.node);
  }
  node.replaceChildren(elements::pad, byIndex);
}

}  // namespace tamboro
