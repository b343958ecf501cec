// Whether an import stays as quick when the card fills: the 8,000th small file against the 80th.

#include <cstdlib>
#include <fstream>

#include "library/LibraryBench.h"
#include "library/Measure.h"

namespace tamboro::bench {
namespace {

namespace fs = std::filesystem;

constexpr double limit = 1.5;
constexpr int imports = 8050;
/// As many as a bank holds: how full the bank is that a sample comes into costs the same in each window.
constexpr int window = 100;

Path sourceFile(const Path& folder, int number) {
  return folder / ("sound " + std::to_string(number) + ".wav");
}

/// Median of the processor's time for the imports around this one, from 1.
double around(int number, const std::vector<double>& seconds) {
  const auto first = seconds.begin() + (number - window / 2);
  std::vector<double> part(first, first + window);
  std::sort(part.begin(), part.end());
  return part[window / 2];
}

}  // namespace

bool measureImport(const Path& place) {
  const Path home = place / "import";
  for (const char* folder : {"card/KIT", "card/WAVE/PRM", "card/WAVE/DATA", "card/SYSTEM", "sources"})
    fs::create_directories(home / folder);
  std::ofstream(home / "card/SYSTEM/tag_list.spd") << "<TagList>\n</TagList>\n";
  for (int i = 0; i < imports; ++i)
    std::ofstream(sourceFile(home / "sources", i)) << std::string(600, 's');
  DiskStore store(home);
  store.library.load(home / "card");

  std::vector<double> seconds;
  for (int i = 0; i < imports; ++i) {
    const auto import = [&] {
      store.library.importWave(sourceFile(home / "sources", i), "Sound " + std::to_string(i), 0,
                               [](const std::exception_ptr& error) {
                                 if (error) std::abort();
                               });
      store.jobs.runAll();
    };
    seconds.push_back(duration(import).processor);
  }
  if (store.library.waves().size() != imports) std::abort();
  const double early = around(80, seconds);
  const double late = around(8000, seconds);
  std::fprintf(stderr, "import: %.1f us against %.1f us\n", late * 1e6, early * 1e6);
  return report("import_8000th_to_80th", late / early, limit);
}

}  // namespace tamboro::bench
