#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "card/SpdNode.h"
#include "model/Keys.h"
#include "model/Pad.h"

namespace tamboro {

/// One kit of the card, a typed view over the tree of `KIT/kitNNN.spd`. Values live in the tree, are read when asked
/// for and written back into it, so elements that nobody here knows stay in their place. Copying shares the tree.
struct Kit {
  Slot slot;
  SpdNode node;
  bool isDirty = false;  // `node` holds changes that are not on the card

  std::vector<Pad> pads() const;
  int padCount() const;
  std::optional<Pad> pad(int index) const;

  std::string name() const;
  std::string subName() const;
  std::int64_t level() const;
  double tempoBPM() const;

  /// Effect units: 1, and any other number means unit 2.
  std::int64_t fxType(int unit) const;
  bool isFxOn(int unit) const;
  std::int64_t fxParam(int unit, int position) const;

  /// Stores tenths, halves rounded away from zero. Leaves range and `isDirty` alone.
  void setTempoBPM(double value);

  /// The one way in which a pad changes. True, and the kit dirty, only if the pad differs afterwards. An index that is
  /// no pad changes nothing.
  bool updatePad(int index, const std::function<void(Pad&)>& change);

  bool writePadWave(int index, WaveId id);
  bool clearPadWave(int index);
  bool resetPadValues(int index);
  bool writePadNote(int index, std::int64_t note);
  bool writePadPoly(int index, bool isPoly);

  /// Puts pads back at their positions, skipping those that don't exist. Leaves `isDirty` alone.
  void applyPads(const std::vector<Pad>& pads);

  friend bool operator==(const Kit&, const Kit&) = default;
};

}  // namespace tamboro
