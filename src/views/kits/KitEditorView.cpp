#include "views/kits/KitEditorView.h"

#include <QApplication>
#include <QFocusEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include "views/controls/CardText.h"
#include "views/controls/EditField.h"
#include "views/controls/QueuedRefresh.h"
#include "views/controls/Surface.h"
#include "views/controls/ThrottledSlider.h"
#include "views/effects/KitEffectsView.h"
#include "views/look/LookPaint.h"
#include "views/pads/PadDetailView.h"
#include "views/pads/PadGridView.h"

namespace tamboro {

namespace {

constexpr int padding = 20;
constexpr int betweenSections = 20;
constexpr int betweenLines = 10;

/// A field's box stands out above and below its text; lines are apart by their texts.
int overhang(const QWidget& field) {
  return (field.sizeHint().height() - field.fontMetrics().height()) / 2;
}

/// What follows the pads, under a divider. `room` is what the content leaves on all sides for focus rings: what it
/// shows stands on the column's edge.
QWidget* makeSection(const QString& objectName, QWidget* content, int room) {
  auto* section = new QWidget;
  section->setObjectName(objectName);
  auto* rows = new QVBoxLayout(section);
  rows->setContentsMargins(0, 0, 0, Look::px(betweenSections) - room);
  rows->setSpacing(Look::px(betweenSections) - room);
  const auto addRow = [rows](QWidget* part, int margin) {
    auto* row = new QHBoxLayout;
    row->setContentsMargins(margin, 0, margin, 0);
    row->addWidget(part);
    rows->addLayout(row);
  };
  auto* divider = new Surface(&Look::separator);
  divider->setFixedHeight(1);
  addRow(divider, PadGridView::margin());
  addRow(content, PadGridView::margin() - room);
  return section;
}

}  // namespace

KitEditorView::KitEditorView(RolandLibrary& store, SamplePlayer& player, Prompts& prompts, QWidget* parent)
    : QWidget(parent), store_(store) {
  setObjectName(QStringLiteral("kitEditor"));
  sections_ = new QWidget;
  sections_->setObjectName(QStringLiteral("kitSections"));
  auto* column = new QVBoxLayout(sections_);
  // What stands out into the padding, rings around pads and the plain fields' boxes, reaches `margin` into it.
  const int outside = PadGridView::margin();
  column->setContentsMargins(Look::px(padding) - outside, 0, Look::px(padding) - outside, 0);
  column->setSpacing(0);
  column->addWidget(makeHeader());
  column->addSpacing(Look::px(betweenSections) - outside - ringRoom);
  column->addWidget(grid_ = new PadGridView(store, player, prompts));
  column->addSpacing(Look::px(betweenSections) - outside);
  detail_ = new PadDetailView(store, player);
  column->addWidget(detailSection_ = makeSection(QStringLiteral("padDetailSection"), detail_, 0));
  effects_ = new KitEffectsView(store);
  column->addWidget(makeSection(QStringLiteral("kitEffectsSection"), effects_, ringRoom));
  column->addStretch(1);

  scroll_ = new QScrollArea;
  scroll_->setObjectName(QStringLiteral("kitScroll"));
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setWidgetResizable(true);
  scroll_->setWidget(sections_);
  // A click beside everything gives the keyboard to the pads. Not by a focus proxy: with one of its own content, the
  // Tab key passes over all that stands before it.
  scroll_->setFocusPolicy(Qt::ClickFocus);
  qApp->installEventFilter(this);
  auto* whole = new QVBoxLayout(this);
  whole->addWidget(scroll_);
  connect(grid_, &PadGridView::keyboardAt, this, [this](QWidget* cell) { scroll_->ensureWidgetVisible(cell); });
  new QueuedRefresh(
      store, [this] { refresh(); }, this);
  refresh();
}

QWidget* KitEditorView::makeHeader() {
  const auto kitText = [this](std::string (Kit::*read)() const) {
    return [this, read] {
      const Kit* kit = kitSlot_ ? store_.kit(*kitSlot_) : nullptr;
      return kit ? cardText((kit->*read)()) : QString();
    };
  };
  name_ = new EditField(QStringLiteral("kitName"), QStringLiteral("Kit Name"),
                        {.read = kitText(&Kit::name), .write = [this](const QString& text) {
                           if (kitSlot_) store_.setKitName(*kitSlot_, text.toStdString());
                         }});
  name_->setFont(Look::font(TextStyle::title2));
  subName_ = new EditField(QStringLiteral("kitSubName"), QStringLiteral("Subtitle"),
                           {.read = kitText(&Kit::subName), .write = [this](const QString& text) {
                              if (kitSlot_) store_.setKitSubName(*kitSlot_, text.toStdString());
                            }});
  subName_->setTextColour(&Look::secondary);
  for (EditField* field : {name_, subName_})
    connect(field, &QLineEdit::returnPressed, this, [this] { grid_->setFocus(); });
  volume_ = new ThrottledSlider(QStringLiteral("kitVolume"),
                                {.title = QStringLiteral("Volume"),
                                 .scale = {.lower = 0, .upper = 100},
                                 .format = [](double value) { return QString::number(value, 'f', 0); },
                                 .commit =
                                     [this](double value) {
                                       if (kitSlot_) store_.setKitLevel(*kitSlot_, value);
                                     }});
  tempo_ = new ThrottledSlider(QStringLiteral("kitTempo"),
                               {.title = QStringLiteral("Tempo (BPM)"),
                                .scale = {.lower = 20, .upper = 300, .ticksPerUnit = 10},
                                .format = [](double value) { return QString::number(value, 'f', 1); },
                                .commit =
                                    [this](double value) {
                                      if (kitSlot_) store_.setKitTempo(*kitSlot_, value);
                                    }});
  auto* header = new QWidget;
  header->setObjectName(QStringLiteral("kitHeader"));
  auto* lines = new QVBoxLayout(header);
  lines->setSpacing(0);
  lines->addSpacing(Look::px(padding) - overhang(*name_));
  lines->addWidget(name_);
  lines->addSpacing(std::max(0, Look::px(betweenLines) - overhang(*name_) - overhang(*subName_)));
  lines->addWidget(subName_);
  lines->addSpacing(std::max(0, Look::px(betweenLines) - overhang(*subName_) - ringRoom));
  auto* sliders = new QHBoxLayout;
  sliders->setContentsMargins(PadGridView::margin() - ringRoom, 0, PadGridView::margin() - ringRoom, 0);
  sliders->setSpacing(Look::px(24) - 2 * ringRoom);
  for (ThrottledSlider* slider : {volume_, tempo_}) {
    slider->setMinimumWidth(Look::px(220) + 2 * ringRoom);
    sliders->addWidget(slider, 1);
  }
  lines->addLayout(sliders);
  return header;
}

bool KitEditorView::gridFocused() const {
  return grid_->hasFocus();
}

void KitEditorView::takeKeyboard() {
  grid_->setFocus(Qt::ShortcutFocusReason);
}

/// What gets the focus by other means than the mouse comes into sight; under the mouse nothing moves.
bool KitEditorView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::FocusIn || !watched->isWidgetType()) return false;
  auto* focused = static_cast<QWidget*>(watched);
  if (focused == scroll_) {
    grid_->setFocus(Qt::MouseFocusReason);
    return true;
  }
  const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
  const bool isByKey = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
                       reason == Qt::ShortcutFocusReason || reason == Qt::OtherFocusReason;
  // The grid, which can be higher than the window, shows the pad in use.
  if (isByKey && focused != grid_ && sections_->isAncestorOf(focused)) scroll_->ensureWidgetVisible(focused);
  return false;
}

void KitEditorView::setKit(std::optional<Slot> slot) {
  if (slot == kitSlot_) return;
  const bool appears = !kitSlot_;
  if (!appears) grid_->setFocus();  // ends a composition, whose text belongs to the kit that goes
  kitSlot_ = slot;
  volume_->cancelDrag();
  tempo_->cancelDrag();
  if (slot) {
    const Kit* kit = store_.kit(*slot);
    const int selected = store_.selectedPadIndex();
    const bool keepsPad = appears && kit && selected >= 0 && selected < kit->padCount();
    store_.setSelectedKitSlot(slot);
    if (!keepsPad) store_.setSelectedPadIndex(0);
    store_.recordRecentKit(*slot);
    grid_->setKit(*slot);
    effects_->setKit(*slot);
    scroll_->verticalScrollBar()->setValue(0);
  }
  refresh();
  if (slot) grid_->setFocus();
}

void KitEditorView::refresh() {
  const Kit* kit = kitSlot_ ? store_.kit(*kitSlot_) : nullptr;
  setAccessibleName(kit ? visibleText(cardText(kit->name())) : QStringLiteral("Kit"));
  scroll_->setAccessibleName(accessibleName());
  sections_->setVisible(kit != nullptr);
  if (!kit) return;
  name_->refresh();
  subName_->refresh();
  volume_->setValue(static_cast<double>(kit->level()));
  tempo_->setValue(kit->tempoBPM());
  grid_->refresh();
  const int selected = store_.selectedPadIndex();
  const bool hasPad = selected >= 0 && selected < kit->padCount();
  if (hasPad) detail_->setPad(kit->slot, selected);
  detailSection_->setVisible(hasPad);
}

}  // namespace tamboro
