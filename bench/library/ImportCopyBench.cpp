// What importing 1,000 small sounds costs, from the first call to the last sample in the library, against copying the
// same files to the same disk in a plain loop.

#include <cstdlib>
#include <fstream>

#include "library/LibraryBench.h"
#include "library/Measure.h"

namespace tamboro::bench {
namespace {

namespace fs = std::filesystem;

constexpr int files = 1000;
constexpr std::size_t fileSize = 50'000;
constexpr int rounds = 10;
constexpr double limit = 1.3;

std::vector<Path> writeSources(const Path& folder) {
  fs::create_directories(folder);
  std::vector<Path> sources;
  for (int i = 0; i < files; ++i) {
    sources.push_back(folder / ("sound " + std::to_string(i) + ".wav"));
    std::ofstream(sources.back(), std::ios::binary) << std::string(fileSize, static_cast<char>('a' + i % 26));
  }
  return sources;
}

Duration importAll(const Path& home, const std::vector<Path>& sources) {
  DiskStore store(home);
  store.library.load(home / "card");
  const Duration taken = duration([&] {
    for (const Path& source : sources) {
      store.library.importWave(source, source.stem().native(), 0, [](const std::exception_ptr& error) {
        if (error) std::abort();
      });
      store.jobs.runAll();
    }
  });
  if (store.library.waves().size() != files) std::abort();
  for (const Wave& wave : store.library.waves())
    if (fs::file_size(*store.library.audioURL(wave)) != fileSize) std::abort();
  fs::remove_all(home / "staging");
  return taken;
}

Duration copyAll(const Path& home, const std::vector<Path>& sources) {
  const Path target = home / "copies";
  fs::create_directories(target);
  const Duration taken = duration([&] {
    for (const Path& source : sources)
      fs::copy_file(source, target / source.filename());
  });
  fs::remove_all(target);
  return taken;
}

}  // namespace

bool measureImportCopy(const Path& place) {
  const Path home = place / "importCopy";
  for (const char* folder : {"card/KIT", "card/WAVE/PRM", "card/WAVE/DATA", "card/SYSTEM"})
    fs::create_directories(home / folder);
  std::ofstream(home / "card/SYSTEM/tag_list.spd") << "<TagList>\n</TagList>\n";
  const std::vector<Path> sources = writeSources(home / "sources");
  Duration import, copy;
  for (int round = 0; round < rounds; ++round) {
    // The order alternates: what the one leaves to the disk must not always fall to the other.
    if (round % 2 == 0) import.keepBest(importAll(home, sources));
    copy.keepBest(copyAll(home, sources));
    if (round % 2 != 0) import.keepBest(importAll(home, sources));
  }
  std::fprintf(stderr, "import_copy: %.1f ms against %.1f ms; processor %.1f against %.1f\n", import.wall * 1e3,
               copy.wall * 1e3, import.processor * 1e3, copy.processor * 1e3);
  return report("import_copy", import.wall / copy.wall, limit);
}

}  // namespace tamboro::bench
