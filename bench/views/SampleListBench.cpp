// The list of 10,000 samples: a keystroke in its search and scrolling, each to the painted list, against the same
// delegate over a list whose rows are fixed.

#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <array>

#include "library/Measure.h"
#include "views/ViewsBench.h"
#include "views/lists/RowList.h"
#include "views/samples/WaveBrowserView.h"
#include "views/samples/WaveColumn.h"

namespace tamboro::bench {
namespace {

constexpr QSize size(426, 724);
constexpr std::size_t samples = 10'000;

constexpr int searches = 25;
constexpr double searchLimit = 2.0;

constexpr int rounds = 25;
constexpr int steps = 40;
constexpr int distance = 97;  // no whole number of rows
constexpr double scrollLimit = 1.2;

/// What the rows of a list told, for good.
class FixedRows {
 public:
  explicit FixedRows(const RowModel& model) : rows(model.rows()) {
    for (int row = 0; row < model.rowCount(); ++row) {
      const auto record = static_cast<std::size_t>(rows[static_cast<std::size_t>(row)].record);
      firsts_.resize(std::max(firsts_.size(), record + 1));
      firsts_[record] = values_.size();
      for (int column = 0; column < waveColumnCount; ++column)
        for (const int role : roles)
          values_.push_back(model.index(row, column).data(role));
    }
  }
  QVariant value(const RowKey& row, int column, int role) const {
    const auto known = std::find(roles.begin(), roles.end(), role);
    if (known == roles.end()) return {};
    return values_[firsts_[static_cast<std::size_t>(row.record)] + static_cast<std::size_t>(column) * roles.size() +
                   static_cast<std::size_t>(known - roles.begin())];
  }

  std::vector<RowKey> rows;

 private:
  static constexpr std::array<int, 4> roles{Qt::DisplayRole, rowRole::isControl, waveRole::symbol, waveRole::tint};
  std::vector<QVariant> values_;
  std::vector<std::size_t> firsts_;  ///< by record: where its values start
};

struct Lists : DiskStore {
  Lists(const Path& card, const Path& home) : DiskStore(home), browser(library, player, *files, prompts) {
    library.load(card);
    library.setSelectedKitSlot(library.kits().front().slot);
    browser.resize(size);
    browser.show();
    settle();
    list = browser.findChild<RowList*>(QStringLiteral("waveList"));
    field = browser.findChild<QLineEdit*>(QStringLiteral("waveSearchText"));
    known = std::make_unique<FixedRows>(list->rows());
    fixed = std::make_unique<RowList>(
        new RowModel(waveColumnCount,
                     [this](const RowKey& row, int column, int role) { return known->value(row, column, role); }),
        new WaveRowDelegate);
    fixed->setMainColumn(waveColumn("name"));
    fixed->setRows(known->rows, {});
    fixed->resize(list->size());
    fixed->show();
    settle();
    if (known->rows.size() != samples || fixed->viewport()->size() != list->viewport()->size()) std::abort();
  }

  SamplePlayer player;
  NoPrompts prompts;
  WaveBrowserView browser;
  RowList* list;
  QLineEdit* field;
  std::unique_ptr<FixedRows> known;
  std::unique_ptr<RowList> fixed;
};

void type(QWidget& field, int key, const QString& text) {
  QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
  QCoreApplication::sendEvent(&field, &press);
  settle();
}

/// Scrolls from the top, painting at each step.
void scroll(RowList& list) {
  list.verticalScrollBar()->setValue(0);
  for (int step = 1; step <= steps; ++step) {
    list.verticalScrollBar()->setValue(step * distance);
    list.viewport()->repaint();
  }
}

/// The time that `percent` of them don't exceed.
double percentile(std::vector<double> times, std::size_t percent) {
  std::sort(times.begin(), times.end());
  return times[times.size() * percent / 100];
}

}  // namespace

bool measureSampleSearch(const Path& card, const Path& place) {
  Lists lists(card, place / "search");
  PaintCount painted(*lists.list->viewport());
  PaintCount fixedPainted(*lists.fixed->viewport());
  std::vector<double> ours, theirs;
  const auto keystroke = [&](int key, const QString& text = {}) {
    ours.push_back(duration([&] { type(*lists.field, key, text); }).processor);
    // A list that isn't full would be painted sooner.
    if (lists.list->verticalScrollBar()->maximum() == 0) std::abort();
    theirs.push_back(duration([&] {
                       lists.fixed->viewport()->update();
                       settle();
                     }).processor);
  };
  const QString word = QStringLiteral("snare");
  for (int search = 0; search < searches; ++search) {
    for (const QChar letter : word)
      keystroke(Qt::Key_A + letter.unicode() - 'a', letter);
    for (int letter = 0; letter < word.size(); ++letter)
      keystroke(Qt::Key_Backspace);
  }
  if (painted.count < static_cast<int>(ours.size()) || fixedPainted.count != static_cast<int>(theirs.size()))
    std::abort();
  bool kept = true;
  for (const auto& [name, percent] : {std::pair("sample_search", 50U), std::pair("sample_search_p95", 95U)}) {
    const double work = percentile(ours, percent);
    const double floor = percentile(theirs, percent);
    std::fprintf(stderr, "%s: processor %.3f ms against %.3f ms\n", name, work * 1e3, floor * 1e3);
    kept &= report(name, work / floor, searchLimit);
  }
  return kept;
}

bool measureSampleScrolling(const Path& card, const Path& place) {
  Lists lists(card, place / "sampleScrolling");
  PaintCount painted(*lists.list->viewport());
  const Duration measured = ratio(
      "sample_scrolling x 40", rounds, [&] { scroll(*lists.list); }, [&] { scroll(*lists.fixed); });
  if (painted.count < rounds * steps) std::abort();
  return report("sample_scrolling", measured.processor, scrollLimit);
}

}  // namespace tamboro::bench
