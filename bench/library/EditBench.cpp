// One edit of a pad as a screen makes it, against copying the bytes of its kit: besides the change of the tree it looks
// the kit up, registers the undo in a turn of its own and tells the screens. The tree's part alone is bench/card's.

#include <cstring>

#include "library/CardPaths.h"
#include "library/LibraryBench.h"
#include "library/Measure.h"

namespace tamboro::bench {
namespace {

constexpr int rounds = 25;
constexpr int edits = 1000;
constexpr double limit = 24.0;

}  // namespace

bool measureEdit(const Path& card, const Path& place) {
  DiskStore store(place / "edit");
  store.library.load(card);
  const Slot slot = store.library.kits().front().slot;
  std::string bytes;
  store.files->read(card / cardpaths::kitFile(slot), bytes);
  std::string copy(bytes.size(), '\0');
  int value = 0;
  const auto ours = [&] {
    for (int i = 0; i < edits; ++i) {
      value = (value + 1) % 100;  // another one each time, else there is no edit
      store.library.setPadLevel(slot, 7, value);
      store.library.undoManager().endTurn();
    }
  };
  const auto theirs = [&] {
    for (int i = 0; i < edits; ++i) {
      std::memcpy(copy.data(), bytes.data(), bytes.size());
      use(copy.data());
    }
  };
  const Duration measured = ratio("store_pad_edit x 1000", rounds, ours, theirs);
  if (store.library.kit(slot)->pad(7)->level() != value) std::abort();
  return report("store_pad_edit", measured.processor, limit);
}

}  // namespace tamboro::bench
