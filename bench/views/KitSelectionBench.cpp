// From the choice of another kit to the painted window, against painting the same window alone.

#include "library/Measure.h"
#include "views/ViewsBench.h"

namespace tamboro::bench {
namespace {

constexpr int rounds = 40;
constexpr double limit = 2.0;

}  // namespace

bool measureKitSelection(const Path& card, const Path& place) {
  CardWindow main(card, place / "selection");
  PaintCount painted(main.find("pad0"));
  int selections = 0;
  const auto ours = [&] {
    main.library.setSelectedKitSlot(main.library.kits()[static_cast<std::size_t>(++selections) % 2].slot);
    main.library.undoManager().endTurn();
    settle();
  };
  const auto theirs = [&] { repaintAll(main.window); };
  const Duration measured = ratio("kit_selection", rounds, ours, theirs);
  if (painted.count < 2 * selections) std::abort();
  return report("kit_selection", measured.processor, limit);
}

}  // namespace tamboro::bench
