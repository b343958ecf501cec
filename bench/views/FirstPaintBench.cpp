// The sample browser's first paint after a card of 10,000 samples was opened, against opening it.

#include <QStackedWidget>

#include "library/Measure.h"
#include "views/ViewsBench.h"
#include "views/lists/RowList.h"
#include "views/samples/WaveBrowserView.h"

namespace tamboro::bench {
namespace {

constexpr int rounds = 15;
constexpr double limit = 0.1;

/// A browser behind another page, as the workspace stands behind the welcome until a card is open.
struct HiddenBrowser : DiskStore {
  explicit HiddenBrowser(const Path& home) : DiskStore(home) {
    pages.addWidget(new QWidget);
    pages.addWidget(browser = new WaveBrowserView(library, player, *files, prompts));
    pages.resize(426, 724);
    pages.show();
    settle();
  }

  SamplePlayer player;
  NoPrompts prompts;
  QStackedWidget pages;
  WaveBrowserView* browser;
};

}  // namespace

bool measureFirstPaint(const Path& card, const Path& place) {
  Duration load, paint;
  for (int round = 0; round < rounds; ++round) {
    // A store of its own each time: to let go of the card before is no part of opening one.
    HiddenBrowser opened(place / "firstPaint");
    const auto& list = *opened.browser->findChild<RowList*>(QStringLiteral("waveList"));
    PaintCount painted(*list.viewport());
    load.keepBest(duration([&] { opened.library.load(card); }));
    paint.keepBest(duration([&] {
      opened.pages.setCurrentWidget(opened.browser);
      settle();
    }));
    if (painted.count == 0 || list.rows().rows().size() != opened.library.waves().size()) std::abort();
  }
  std::fprintf(stderr, "browser_first_paint: %.3f ms against %.3f ms; processor %.3f against %.3f\n", paint.wall * 1e3,
               load.wall * 1e3, paint.processor * 1e3, load.processor * 1e3);
  return report("browser_first_paint", paint.wall / load.wall, limit);
}

}  // namespace tamboro::bench
