#include "app/WindowPlace.h"

#include <QMainWindow>
#include <algorithm>

#include "platform/Defaults.h"
#include "views/window/ColumnSplitter.h"

namespace tamboro {

namespace {

const QString geometryKey = QStringLiteral("MainWindow.geometry");
const QString columnsKey = QStringLiteral("MainWindow.columns");
const QString kitListKey = QStringLiteral("MainWindow.kitListShown");

}  // namespace

void restoreWindowPlace(const Defaults& defaults, QMainWindow& window, ColumnSplitter& columns) {
  if (const auto geometry = defaults.bytes(geometryKey)) window.restoreGeometry(*geometry);
  const auto widths = defaults.integers(columnsKey);
  const bool areSane = widths && widths->size() == 2 &&
                       std::ranges::all_of(*widths, [](std::int64_t width) { return width > 0 && width < 10'000; });
  ColumnSplitter::State state = columns.state();
  if (areSane) {
    state.leftWidth = static_cast<int>((*widths)[0]);
    state.rightWidth = static_cast<int>((*widths)[1]);
  }
  state.isLeftWanted = defaults.boolean(kitListKey).value_or(true);
  columns.setState(state);
}

void rememberWindowPlace(Defaults& defaults, const QMainWindow& window, const ColumnSplitter& columns) {
  defaults.setBytes(geometryKey, window.saveGeometry());
  const ColumnSplitter::State state = columns.state();
  defaults.setIntegers(columnsKey, {state.leftWidth, state.rightWidth});
  defaults.setBoolean(kitListKey, state.isLeftWanted);
}

}  // namespace tamboro
