// One step of an effect's slider, from the hand's movement over the edit and what it makes the screens do to the
// painted window, against painting the slider's row alone.

#include <QScrollArea>
#include <QSlider>

#include "library/Measure.h"
#include "views/ViewsBench.h"
#include "views/controls/DisclosureGroup.h"

namespace tamboro::bench {
namespace {

constexpr int rounds = 25;
constexpr int steps = 20;
constexpr int stereoDelay = 1;
constexpr double limit = 3.0;

}  // namespace

bool measureEffectStep(const Path& card, const Path& place) {
  CardWindow main(card, place / "effect");
  const Slot slot = *main.library.selectedKitSlot();
  main.library.setFxType(slot, 1, stereoDelay);
  main.library.setFxSwitch(slot, 1, true);
  main.find<DisclosureGroup>("effects").setExpanded(true);
  settle();
  QWidget& row = main.find("fx1Param1");
  main.find<QScrollArea>("kitScroll").ensureWidgetVisible(&row);
  settle();
  auto& slider = main.find<QSlider>("fx1Param1Slider");
  PaintCount painted(slider);
  int value = 0;
  const auto ours = [&] {
    for (int step = 0; step < steps; ++step) {
      value = (value + 1) % 100;
      slider.setValue(500 + value);
      main.library.undoManager().endTurn();
      settle();
    }
  };
  const auto theirs = [&] {
    for (int step = 0; step < steps; ++step)
      repaintAll(row);
  };
  const Duration measured = ratio("effect_step x 20", rounds, ours, theirs);
  if (main.library.kit(slot)->fxParam(1, 1) != 500 + value || painted.count < 2 * rounds * steps) std::abort();
  return report("effect_step", measured.processor, limit);
}

}  // namespace tamboro::bench
