// What the store costs on a card of 100 kits and 10,000 samples. The card lies in memory, so that the ratios are about
// the program and not about a disk; another folder can be given.

#include <unistd.h>

#include <cstdlib>

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
  return kept;
}

}  // namespace
}  // namespace tamboro::bench

int main(int argc, char** argv) {
  const std::filesystem::path memory = "/dev/shm";
  const auto parent = argc > 1                          ? std::filesystem::path(argv[1])
                      : std::filesystem::exists(memory) ? memory
                                                        : std::filesystem::temp_directory_path();
  std::string place = parent / "tamboro-bench-XXXXXX";
  if (::mkdtemp(place.data()) == nullptr) return 2;
  const bool kept = tamboro::bench::run(place);
  std::filesystem::remove_all(place);
  return kept ? 0 : 1;
}
