// What parses may hold the window no longer than its load: the operations on a kit of many pads, against those on one
// of a quarter of them. What is linear takes four times as long, what looks each pad up from the first sixteen times.

#include <filesystem>
#include <fstream>

#include "library/LibraryBench.h"
#include "library/Measure.h"

namespace tamboro::bench {
namespace {

constexpr int rounds = 3;
constexpr int pads = 10'000;
constexpr double limit = 8.0;

/// The pads before the name: a name that is asked for at each pad is looked for behind all of them.
void writeKit(const Path& card, int slot, int count, int level) {
  std::ofstream kit(card / "KIT" / ("kit00" + std::to_string(slot) + ".spd"));
  kit << "<KitPrm>";
  for (int pad = 0; pad < count; ++pad)
    kit << "<PadPrm><Wv>205</Wv><WvLevel>" << level << "</WvLevel></PadPrm>";
  kit << "<Nm0>65</Nm0></KitPrm>";
}

Path writeHostileCard(const Path& card, int count) {
  for (const char* folder : {"KIT", "WAVE", "SYSTEM"})
    std::filesystem::create_directories(card / folder);
  std::ofstream(card / "SYSTEM/tag_list.spd") << "<TagList/>";
  writeKit(card, 1, count, 1);
  writeKit(card, 2, count, 2);
  return card;
}

void useEachOperation(DiskStore& store) {
  RolandLibrary& library = store.library;
  const auto created = library.createBlankKit();
  library.copyPads(1);
  library.pasteCopiedPads(2);
  static int level = 0;
  library.setPadLevel(1, 0, level = 100 - level);
  library.undoManager().endTurn();
  library.applySettingsToAllPads(1, 0, {&padSetting("padVolume")});
  library.undoManager().endTurn();
  library.undoManager().undo();
  library.undoManager().redo();
  use(library.waveUsages(205).data());
  library.deleteKit(*created);
}

}  // namespace

bool measureHostileKit(const Path& place) {
  DiskStore large(place / "large");
  DiskStore small(place / "small");
  large.library.load(writeHostileCard(place / "large card", 4 * pads));
  small.library.load(writeHostileCard(place / "small card", pads));
  const Duration measured = ratio(
      "hostile_kit_growth", rounds, [&] { useEachOperation(large); }, [&] { useEachOperation(small); });
  return report("hostile_kit_growth", measured.processor, limit);
}

}  // namespace tamboro::bench
