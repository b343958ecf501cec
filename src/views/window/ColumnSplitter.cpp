#include "views/window/ColumnSplitter.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QResizeEvent>
#include <algorithm>
#include <numeric>

#include "views/look/Look.h"

namespace tamboro {

namespace {

constexpr std::array<int, 3> minimumWidths{190, 504, 396};
constexpr std::array<int, 3> firstWidths{204, 568, 426};
constexpr int leastMiddle = 300;  // the pads
constexpr int widestMiddle = 900;
constexpr int leastWindow = 720;
constexpr int keyStep = 16;

int sum(const std::array<int, 3>& widths) {
  return std::accumulate(widths.begin(), widths.end(), 0);
}

std::array<int, 3> comfortableWidths() {
  std::array<int, 3> widths{};
  std::transform(minimumWidths.begin(), minimumWidths.end(), widths.begin(), [](int width) { return Look::px(width); });
  return widths;
}

}  // namespace

/// A hairline that can be dragged, and moved by the arrow keys while it has the focus.
class ColumnSplitter::Divider : public QSplitterHandle {
 public:
  explicit Divider(ColumnSplitter& columns) : QSplitterHandle(Qt::Horizontal, &columns), columns_(columns) {
    setFocusPolicy(Qt::TabFocus);
  }

  /// From the splitter's left edge.
  int place() const { return x() + contentsMargins().left(); }
  void moveTo(int place) { moveSplitter(place); }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const int way = event->key() == Qt::Key_Left ? -1 : event->key() == Qt::Key_Right ? 1 : 0;
    if (way == 0 || (event->modifiers() & ~Qt::KeypadModifier)) return QSplitterHandle::keyPressEvent(event);
    moveTo(place() + way * Look::px(keyStep));
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    QSplitterHandle::mouseReleaseEvent(event);
    columns_.dividerReleased();
  }
  void resizeEvent(QResizeEvent* event) override {
    QSplitterHandle::resizeEvent(event);
    if (hasFocus()) clearMask();
  }
  void focusInEvent(QFocusEvent* event) override {
    QSplitterHandle::focusInEvent(event);
    clearMask();  // else only the hairline shows, too thin to be seen as the one in use
    update();
  }
  void focusOutEvent(QFocusEvent* event) override {
    QSplitterHandle::focusOutEvent(event);
    setMask(contentsRect());
    update();
  }
  void paintEvent(QPaintEvent* event) override {
    if (!hasFocus()) return QSplitterHandle::paintEvent(event);
    QPainter(this).fillRect(contentsRect().adjusted(-1, 0, 1, 0), Look::current().focusRing);
  }

 private:
  ColumnSplitter& columns_;
};

/// A separator with a value, which is its place.
class ColumnSplitter::DividerAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit DividerAccessible(Divider& divider)
      : QAccessibleWidget(&divider, QAccessible::Separator), divider_(divider) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                               : QAccessibleWidget::interface_cast(type);
  }
  QVariant currentValue() const override { return divider_.place(); }
  QVariant minimumValue() const override { return 0; }
  QVariant maximumValue() const override { return divider_.parentWidget()->width(); }
  QVariant minimumStepSize() const override { return 1; }
  void setCurrentValue(const QVariant& value) override { divider_.moveTo(value.toInt()); }

  static QAccessibleInterface* make(const QString& className, QObject* object) {
    auto* divider = dynamic_cast<Divider*>(object);
    return divider && className == QLatin1String(divider->metaObject()->className()) ? new DividerAccessible(*divider)
                                                                                     : nullptr;
  }

 private:
  Divider& divider_;
};

ColumnSplitter::ColumnSplitter(QWidget* left, QWidget* middle, QWidget* right, QWidget* parent)
    : QSplitter(Qt::Horizontal, parent), leftWidth_(Look::px(firstWidths[0])), rightWidth_(Look::px(firstWidths[2])) {
  [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(&DividerAccessible::make), true);
  setObjectName(QStringLiteral("columns"));
  setAccessibleName(QStringLiteral("Columns"));
  for (QWidget* column : {left, middle, right}) {
    const int place = count();
    addWidget(column);
    setCollapsible(place, place == 0);
  }
  middle->setMaximumWidth(Look::px(widestMiddle));
  // A splitter puts each new column behind the others, which would read them from right to left to assistive tools.
  for (QWidget* column : {right, middle, left})
    column->lower();
  for (int place = 1; place < count(); ++place)
    handle(place)->setAccessibleName(place == 1 ? QStringLiteral("Kits divider")
                                                : QStringLiteral("Sample Library divider"));
  connect(this, &QSplitter::splitterMoved, this, [this](int, int index) { dividerMoved(index); });
}

QSplitterHandle* ColumnSplitter::createHandle() {
  return new Divider(*this);
}

QSize ColumnSplitter::minimumSizeHint() const {
  return {leastWindow, QSplitter::minimumSizeHint().height()};
}

void ColumnSplitter::setState(const State& state) {
  leftWidth_ = state.leftWidth;
  rightWidth_ = state.rightWidth;
  isWanted_ = state.isLeftWanted;
  arrange();
}

void ColumnSplitter::setLeftShown(bool on) {
  (isNarrow_ ? isForced_ : isWanted_) = on;
  arrange();
}

void ColumnSplitter::resizeEvent(QResizeEvent* event) {
  QSplitter::resizeEvent(event);
  const bool isNarrow = event->size().width() < sum(comfortableWidths()) + 2 * handleWidth();
  if (isNarrow != isNarrow_) isForced_ = false;
  isNarrow_ = isNarrow;
  arrange();
}

ColumnSplitter::Widths ColumnSplitter::leastWidths(int room) const {
  Widths least = comfortableWidths();
  if (!isLeftShown()) least[0] = 0;
  if (sum(least) <= room) return least;
  // The middle column, which scrolls, gives way first; then each its share.
  least[1] = std::max(least[1] - (sum(least) - room), Look::px(leastMiddle));
  const int whole = std::max(1, sum(least));
  if (whole > room)
    for (int& width : least)
      width = width * room / whole;
  return least;
}

void ColumnSplitter::arrange() {
  const bool isShown = isLeftShown();
  QWidget* left = widget(0);
  if (!isShown && left->isAncestorOf(QApplication::focusWidget())) Q_EMIT keyboardLeavesLeft();
  left->setVisible(isShown);
  const int room = contentsRect().width() - (isShown ? 2 : 1) * handleWidth();
  const Widths least = leastWidths(room);
  for (int place = 0; place < count(); ++place)
    widget(place)->setMinimumWidth(least[static_cast<std::size_t>(place)]);
  const int leftWidth = isShown ? std::clamp(leftWidth_, least[0], std::max(least[0], room - least[1] - least[2])) : 0;
  const int others = room - leftWidth;
  int rightWidth = std::clamp(rightWidth_, least[2], std::max(least[2], others - least[1]));
  rightWidth = std::max(rightWidth, others - widget(1)->maximumWidth());
  setSizes({leftWidth, others - rightWidth, rightWidth});
  if (std::exchange(isShown_, isShown) != isShown) Q_EMIT leftShownChanged(isShown);
}

void ColumnSplitter::dividerMoved(int index) {
  const QList<int> widths = sizes();
  if (index == 1 && widths[0] > 0) leftWidth_ = widths[0];
  // Beside the widest middle the right column has what is left, whatever it was given.
  if (widths[1] < widget(1)->maximumWidth()) rightWidth_ = widths[2];
}

/// Drawn to the window's edge the column isn't only without width: it hides.
void ColumnSplitter::dividerReleased() {
  if (isLeftShown() && sizes().first() == 0) setLeftShown(false);
}

}  // namespace tamboro
