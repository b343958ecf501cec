// What the store costs on a card of 100 kits and 10,000 samples. The card lies in memory, so that the ratios are about
// the program and not about a disk; another folder can be given.

#include "library/FullCard.h"
#include "library/LibraryBench.h"

namespace tamboro::bench {
namespace {

bool run(const Path& place) {
  const Path card = place / "card";
  writeCard(card, 100, 10'000);
  // The load comes first: heap that others have freed would hide what it takes.
  bool kept = measureLoad(card, place);
  kept &= measureEdit(card, place);
  kept &= measureImport(place);
  kept &= measureImportCopy(place);
  kept &= measureBackup(card, place);
  kept &= measureHostileKit(place);
  return kept;
}

}  // namespace
}  // namespace tamboro::bench

int main(int argc, char** argv) {
  return tamboro::bench::inFreshFolder(argc, argv, tamboro::bench::run);
}
