#include "views/pads/PadGridView.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <algorithm>
#include <map>

#include "views/controls/Labels.h"
#include "views/look/LookPaint.h"
#include "views/look/Palette.h"
#include "views/pads/PadCell.h"
#include "views/pads/PadGridMoves.h"

namespace tamboro {

namespace {

constexpr int columnsOfMain = 3;
constexpr int columnsOfAll = 4;
constexpr int gap = 8;
constexpr int betweenGroups = 16;
constexpr int underHeading = 6;
constexpr double cellRadius = 8;

}  // namespace

PadGridView::PadGridView(RolandLibrary& store, SamplePlayer& player, Prompts& prompts, QWidget* parent)
    : QWidget(parent), store_(store) {
  setObjectName(QStringLiteral("padGrid"));
  setAccessibleName(QStringLiteral("Pads"));
  setFocusPolicy(Qt::StrongFocus);
  // Not fixed: that would hold it to the height at its preferred width, and narrow pads break names.
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
  const auto makeCells = [&](int end) {
    for (int index = static_cast<int>(cells_.size()); index < end; ++index) {
      auto* cell = new PadCell(store, player, prompts, index, this);
      cells_.push_back(cell);
      // Nothing may scroll under the hand that chooses.
      connect(cell, &PadCell::chosen, this, [this] { setFocus(Qt::MouseFocusReason); });
      connect(cell, &PadCell::ringChanged, this, qOverload<>(&QWidget::update));
    }
  };
  const auto makeHeading = [this](const char* name, const QString& text) {
    return makeLabel(QString::fromLatin1(name), text, TextStyle::caption, textRole::secondary, this);
  };
  // In the order in which they are read.
  makeCells(mainPadCount);
  triggers_ = makeHeading("triggerHeading", QStringLiteral("Trigger Inputs"));
  makeCells(mainPadCount + triggerCount);
  footswitches_ = makeHeading("footswitchHeading", QStringLiteral("Footswitches"));
  makeCells(standardPadCount);
}

int PadGridView::margin() {
  return Look::px(gap);
}

void PadGridView::setKit(Slot slot) {
  kitSlot_ = slot;
  for (PadCell* cell : cells_)
    cell->setKit(slot);
  refresh();
}

void PadGridView::refresh() {
  const PadCell* before = selectedCell();
  const Kit* kit = store_.kit(kitSlot_);
  const int count = kit ? kit->padCount() : 0;
  for (PadCell* cell : cells_)
    cell->refresh();
  if (count != padCount_) showGroups(count);
  if (selectedCell() == before) return;
  update();  // the ring
  tellFocus();
}

void PadGridView::showGroups(int padCount) {
  padCount_ = padCount;
  groups_ = padLayout(padCount);
  for (PadCell* cell : cells_) {
    const int index = cell->padIndex();
    cell->setVisible(groups_.main.contains(index) || groups_.triggers.contains(index) ||
                     groups_.footswitches.contains(index));
  }
  triggers_->setVisible(groups_.triggers.count > 0);
  footswitches_->setVisible(groups_.footswitches.count > 0);
  updateGeometry();
  placeAll();
  update();
}

PadCell* PadGridView::selectedCell() const {
  const auto found = std::find_if(cells_.begin(), cells_.end(),
                                  [](const PadCell* cell) { return cell->isSelected() && !cell->isHidden(); });
  return found == cells_.end() ? nullptr : *found;
}

/// All groups share one cell width, so that they stand on the same column edges within their greatest widths. The
/// order of pads is the instrument's and isn't mirrored with the language.
PadGridView::Arrangement PadGridView::arrange(int width) const {
  const int between = Look::px(gap);
  const int room = width - 2 * margin();
  const int cellWidth = std::min(Look::px(134), (room - (columnsOfAll - 1) * between) / columnsOfAll);
  Arrangement result;
  int y = 0;
  const auto addRow = [&](int first, int count, int columns) {
    int x = margin();
    if (isRightToLeft()) x += room - columns * cellWidth - (columns - 1) * between;
    const auto cell = [&](int place) { return cells_[static_cast<std::size_t>(first + place)]; };
    int height = 0;
    for (int place = 0; place < count; ++place)
      height = std::max(height, cell(place)->heightForWidth(cellWidth));
    for (int place = 0; place < count; ++place)
      result.places.emplace_back(cell(place), QRect(x + place * (cellWidth + between), y, cellWidth, height));
    y += height;
  };
  const auto addGroup = [&](QLabel* heading, const PadRange& group) {
    if (group.count == 0) return;
    y += Look::px(betweenGroups);
    const int height = heading->sizeHint().height();
    result.places.emplace_back(heading, QRect(margin(), y, room, height));
    y += height + Look::px(underHeading);
    addRow(group.first, group.count, group.count);
  };
  for (int first = 0; first < groups_.main.count; first += columnsOfMain) {
    y += first == 0 ? margin() : between;
    addRow(first, std::min(columnsOfMain, groups_.main.count - first), columnsOfMain);
  }
  addGroup(triggers_, groups_.triggers);
  addGroup(footswitches_, groups_.footswitches);
  result.height = y + margin();
  return result;
}

int PadGridView::heightForWidth(int width) const {
  return arrange(width).height;
}

QSize PadGridView::sizeHint() const {
  const int width = columnsOfAll * Look::px(134) + (columnsOfAll - 1) * Look::px(gap) + 2 * margin();
  return {width, heightForWidth(width)};
}

QSize PadGridView::minimumSizeHint() const {
  return {columnsOfAll * Look::px(64) + (columnsOfAll - 1) * Look::px(gap) + 2 * margin(), 0};
}

void PadGridView::placeAll() {
  for (const auto& [widget, place] : arrange(width()).places)
    widget->setGeometry(place);
}

void PadGridView::resizeEvent(QResizeEvent*) {
  placeAll();
}

bool PadGridView::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::LayoutDirectionChange) {
    updateGeometry();
    placeAll();
  }
  return QWidget::event(event);
}

bool PadGridView::move(int key) {
  static const std::map<int, PadMove> moves{{Qt::Key_Up, PadMove::up},
                                            {Qt::Key_Down, PadMove::down},
                                            {Qt::Key_Left, PadMove::left},
                                            {Qt::Key_Right, PadMove::right}};
  const auto found = moves.find(key);
  if (found == moves.end()) return false;
  if (const auto target = padAfterMove(store_.selectedPadIndex(), found->second, padCount_)) {
    PadCell* cell = cells_[static_cast<std::size_t>(*target)];
    cell->selectWithPreview();
    Q_EMIT keyboardAt(cell);
  }
  return true;
}

/// On the pad that has the keyboard.
bool PadGridView::copyOrPaste(const QKeyEvent& key) {
  const auto focused = std::ranges::find_if(cells_, [](const PadCell* cell) { return cell->hasFocus(); });
  PadCell* cell = focused != cells_.end() ? *focused : selectedCell();
  if (!cell) return false;
  if (key.matches(QKeySequence::Copy)) return cell->copySound();
  return key.matches(QKeySequence::Paste) && cell->pasteSound();
}

void PadGridView::keyPressEvent(QKeyEvent* event) {
  // Also where nothing moves the key is used up, so that it doesn't scroll.
  event->setAccepted(move(event->key()) || copyOrPaste(*event));
}

void PadGridView::contextMenuEvent(QContextMenuEvent* event) {
  PadCell* cell = selectedCell();
  if (event->reason() != QContextMenuEvent::Keyboard || !cell) return event->ignore();
  cell->openMenu(cell->mapToGlobal(cell->rect().center()));
}

void PadGridView::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  // Behind the toolkit's own word, which is for the grid as a whole.
  QMetaObject::invokeMethod(this, &PadGridView::tellFocus, Qt::QueuedConnection);
  if (PadCell* cell = selectedCell(); cell && event->reason() != Qt::MouseFocusReason) Q_EMIT keyboardAt(cell);
}

/// The focus itself stays here; assistive tools follow it to the selected pad.
void PadGridView::tellFocus() {
  PadCell* cell = selectedCell();
  if (!cell || !hasFocus()) return;
  QAccessibleEvent event(cell, QAccessible::Focus);
  QAccessible::updateAccessibility(&event);
}

void PadGridView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  for (const PadCell* cell : cells_) {
    if (cell->isHidden()) continue;
    const QRectF shape(cell->geometry());
    if (cell->isDropTarget()) {
      const double room = cell->isSelected() ? 2 : 0;  // the red outline stays, the green one goes around it
      const QRectF green = shape.adjusted(-room, -room, room, room);
      if (!Look::current().isDark)  // else green can't be told from the light ground
        paintBox(painter, green.adjusted(-1, -1, 1, 1), cellRadius + room + 1, {}, QColor::fromRgb(0x14602A), 1);
      if (cell->isSelected()) paintBox(painter, green, cellRadius + room, {}, paletteGreen, 2);
    } else if (cell->hasFocus() || (hasFocus() && cell->isSelected())) {
      paintFocusRing(painter, shape, cellRadius);
    }
  }
}

}  // namespace tamboro
