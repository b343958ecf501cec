#include "views/ColumnSplitter.h"

#include <QGuiApplication>
#include <QResizeEvent>
#include <QScreen>
#include <array>

#include "views/look/Look.h"

namespace tamboro {

namespace {
constexpr std::array<int, 3> minimumWidths{190, 520, 400};
constexpr std::array<int, 3> firstWidths{204, 568, 426};

/// What a large font needs more is no more than what the screen has for the two columns that always stand.
int narrowest(std::size_t column) {
  const int room = QGuiApplication::primaryScreen()->availableSize().width() - 2;
  const int both = Look::px(minimumWidths[1]) + Look::px(minimumWidths[2]);
  return std::max(minimumWidths[column], Look::px(minimumWidths[column]) * std::min(room, both) / both);
}
}  // namespace

ColumnSplitter::ColumnSplitter(QWidget* left, QWidget* middle, QWidget* right, QWidget* parent)
    : QSplitter(Qt::Horizontal, parent) {
  setObjectName(QStringLiteral("columns"));
  setAccessibleName(QStringLiteral("Columns"));
  QList<int> widths;
  for (QWidget* column : {left, middle, right}) {
    const int place = count();
    addWidget(column);
    column->setMinimumWidth(narrowest(static_cast<std::size_t>(place)));
    setCollapsible(place, place == 0);
    setStretchFactor(place, place == 1 ? 1 : 0);
    widths << Look::px(firstWidths[static_cast<std::size_t>(place)]);
  }
  setSizes(widths);
  // A splitter puts each new column behind the others, which would read them from right to left to assistive tools.
  for (QWidget* column : {right, middle, left})
    column->lower();
  for (int place = 1; place < count(); ++place)
    handle(place)->setAccessibleName(place == 1 ? QStringLiteral("Kits divider")
                                                : QStringLiteral("Sample Library divider"));
}

QSize ColumnSplitter::minimumSizeHint() const {
  // Without the left column: it gives way.
  return QSize(narrowest(1) + narrowest(2) + 2 * handleWidth(), QSplitter::minimumSizeHint().height());
}

void ColumnSplitter::resizeEvent(QResizeEvent* event) {
  const bool isNarrow = event->size().width() < narrowest(0) + narrowest(1) + narrowest(2) + 2 * handleWidth();
  const QList<int> widths = sizes();
  if (isNarrow && widths.first() > 0) {
    beforeCollapse_ = widths;
    setSizes({0, widths[1] + widths[0], widths[2]});
  } else if (!isNarrow && !beforeCollapse_.isEmpty()) {
    setSizes(beforeCollapse_);
    beforeCollapse_.clear();
  }
  QSplitter::resizeEvent(event);
}

}  // namespace tamboro
