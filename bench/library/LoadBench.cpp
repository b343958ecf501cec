// What opening a card costs, against the least that any reader of it does: open, read and close each document, in one
// thread. And the heap that it holds then, records and documents, against the bytes that were read.

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdlib>

#include "library/LibraryBench.h"
#include "library/Measure.h"

namespace tamboro::bench {
namespace {

namespace fs = std::filesystem;

constexpr int rounds = 25;
constexpr double timeLimit = 1.4;
constexpr double heapLimit = 4.0;

/// What a load reads, in its order; the wave lists are not among it.
std::vector<std::string> documentsOf(const Path& card) {
  std::vector<std::string> documents;
  for (const char* folder : {"KIT", "WAVE/PRM"}) {
    for (const auto& entry : fs::recursive_directory_iterator(card / folder)) {
      if (entry.path().extension() == ".spd") documents.push_back(entry.path());
    }
  }
  std::sort(documents.begin(), documents.end());
  documents.push_back(card / "SYSTEM/tag_list.spd");
  return documents;
}

std::size_t readPlainly(const std::vector<std::string>& files) {
  static std::string buffer(1 << 20, '\0');
  std::size_t total = 0;
  for (const std::string& file : files) {
    const int descriptor = ::open(file.c_str(), O_RDONLY);
    const ssize_t size = ::read(descriptor, buffer.data(), buffer.size());
    if (size < 0 || size == static_cast<ssize_t>(buffer.size())) std::abort();
    ::close(descriptor);
    total += static_cast<std::size_t>(size);
  }
  return total;
}

std::size_t heapInUse() {
  const auto info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

}  // namespace

bool measureLoad(const Path& card, const Path& place) {
  const std::vector<std::string> documents = documentsOf(card);
  const std::size_t bytes = readPlainly(documents);
  DiskStore store(place / "load");

  const std::size_t before = heapInUse();
  store.library.load(card);
  const std::size_t held = heapInUse() - before;
  if (store.library.kits().size() + store.library.waves().size() + 1 != documents.size()) std::abort();
  std::fprintf(stderr, "load: %zu documents, %zu bytes, %zu bytes of heap\n", documents.size(), bytes, held);
  bool kept = report("load_heap_per_byte", static_cast<double>(held) / static_cast<double>(bytes), heapLimit);

  // A store of its own each time: to let go of the card before is no part of opening one.
  std::vector<std::unique_ptr<DiskStore>> stores;
  for (int i = 0; i <= rounds; ++i)
    stores.push_back(std::make_unique<DiskStore>(place / "load"));
  auto next = stores.begin();
  const Duration load = ratio(
      "load", rounds, [&] { (*next++)->library.load(card); }, [&] { readPlainly(documents); });
  kept &= report("load", load.wall, timeLimit);
  kept &= report("load_processor", load.processor, timeLimit);
  return kept;
}

}  // namespace tamboro::bench
