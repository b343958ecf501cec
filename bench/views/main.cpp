// What the screens cost, painted for real into windows that no display shows, on a card of 100 kits and 10,000 samples
// and one of 1,000 kits. The cards lie in memory; another folder can be given.

#include <QApplication>
#include <QStandardPaths>

#include "library/FullCard.h"
#include "views/ViewsBench.h"
#include "views/look/LookStyle.h"

namespace {

bool run(const std::filesystem::path& place) {
  using namespace tamboro::bench;
  writeCard(place / "card", 100, 10'000);
  writeCard(place / "manyKits", 1000, 100);
  bool kept = measureKitSelection(place / "card", place);
  kept &= measureEffectStep(place / "card", place);
  kept &= measureKitScrolling(place / "manyKits", place);
  kept &= measureSampleSearch(place / "card", place);
  kept &= measureSampleScrolling(place / "card", place);
  kept &= measureFirstPaint(place / "card", place);
  return kept;
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QStandardPaths::setTestModeEnabled(true);
  QApplication application(argc, argv);
  tamboro::LookStyle::install(application);
  return tamboro::bench::inFreshFolder(argc, argv, run);
}
