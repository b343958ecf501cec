#include "views/pads/PadCell.h"

#include <QAccessibleWidget>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMimeData>

#include "audio/SamplePlayer.h"
#include "model/Note.h"
#include "model/PadLayout.h"
#include "views/controls/CardText.h"
#include "views/pads/PadGridMoves.h"

namespace tamboro {

namespace {

QString fromUtf8(const std::string& text) {
  return QString::fromStdString(text);
}

/// The grid has the keyboard for its pads, so that the toolkit would never call one of the main pads focused.
class PadAccessible : public QAccessibleWidget {
 public:
  explicit PadAccessible(PadCell& pad) : QAccessibleWidget(&pad, QAccessible::CheckBox), pad_(pad) {}

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = true;
    state.checked = pad_.isSelected();
    state.pressed = pad_.isDown();
    state.focusable = true;
    if (pad_.isSelected() && pad_.parentWidget()->hasFocus()) state.focused = true;
    return state;
  }
  QStringList actionNames() const override {
    return {pressAction(), toggleAction(), showMenuAction(), setFocusAction()};
  }
  void doAction(const QString& name) override {
    if (name == showMenuAction()) return pad_.openMenu(pad_.mapToGlobal(pad_.rect().center()));
    if (name == pressAction() || name == toggleAction() || name == setFocusAction()) pad_.select();
  }

 private:
  PadCell& pad_;
};

QAccessibleInterface* makeAccessible(const QString& className, QObject* object) {
  auto* pad = qobject_cast<PadCell*>(object);
  return pad && className == QLatin1String(PadCell::staticMetaObject.className()) ? new PadAccessible(*pad) : nullptr;
}

}  // namespace

PadCell::PadCell(RolandLibrary& store, SamplePlayer& player, Prompts& prompts, int padIndex, QWidget* parent)
    : QAbstractButton(parent), store_(store), player_(player), prompts_(prompts), padIndex_(padIndex) {
  [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(makeAccessible), true);
  setObjectName(QStringLiteral("pad%1").arg(padIndex));
  nameForTools();
  setCheckable(true);
  setAttribute(Qt::WA_Hover);
  setAcceptDrops(true);
  // The grid holds the focus and its arrow keys walk the main pads; the others are reached one by one.
  setFocusPolicy(padIndex < mainPadCount ? Qt::NoFocus : Qt::TabFocus);
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
  connect(this, &QAbstractButton::clicked, this, &PadCell::select);
}

void PadCell::nameForTools() {
  setAccessibleName(fromUtf8(padLabel(padIndex_)) + QStringLiteral(", ") +
                    soundName_.value_or(QStringLiteral("no sound")));
}

QString PadCell::label() const {
  return padIndex_ < mainPadCount ? QString::number(padIndex_ + 1) : fromUtf8(padLabel(padIndex_));
}

const Wave* PadCell::sound() const {
  const Kit* kit = store_.kit(kitSlot_);
  const auto pad = kit ? kit->pad(padIndex_) : std::nullopt;
  return pad && pad->wave() >= 0 ? store_.wave(pad->wave()) : nullptr;
}

void PadCell::refresh() {
  const Kit* kit = store_.kit(kitSlot_);
  const auto pad = kit ? kit->pad(padIndex_) : std::nullopt;
  const Wave* wave = sound();
  const std::optional<QString> name = wave ? std::optional(visibleText(cardText(wave->name()))) : std::nullopt;
  const QString note = pad ? QStringLiteral("[%1] ").arg(pad->wave()) + fromUtf8(noteName(pad->note())) : QString();
  if (name != soundName_ || note != note_) {
    soundName_ = name;
    note_ = note;
    brokenAt_ = -1;
    nameForTools();
    setAccessibleDescription(note_);
    updateGeometry();
    update();
  }
  setChecked(store_.selectedPadIndex() == padIndex_);
}

void PadCell::select() {
  Q_EMIT chosen();
  store_.setSelectedPadIndex(padIndex_);
}

void PadCell::selectWithPreview() {
  select();
  play();
}

void PadCell::play() {
  const Wave* wave = sound();
  const auto location = wave ? store_.audioURL(*wave) : std::nullopt;
  if (location) player_.play(*location, wave->id());
}

void PadCell::keyPressEvent(QKeyEvent* event) {
  // The button's own way with arrow keys would move the focus to a neighbour.
  if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Select) return QAbstractButton::keyPressEvent(event);
  event->ignore();
}

void PadCell::mouseDoubleClickEvent(QMouseEvent* event) {
  QAbstractButton::mouseDoubleClickEvent(event);
  if (event->button() == Qt::LeftButton) selectWithPreview();
}

void PadCell::contextMenuEvent(QContextMenuEvent* event) {
  openMenu(event->reason() == QContextMenuEvent::Keyboard ? mapToGlobal(rect().center()) : event->globalPos());
}

void PadCell::setDropTarget(bool on) {
  if (isDropTarget_ == on) return;
  isDropTarget_ = on;
  update();
  Q_EMIT ringChanged();
}

void PadCell::dragEnterEvent(QDragEnterEvent* event) {
  if (!droppedWaveId(event->mimeData()->text())) return event->ignore();
  event->setDropAction(Qt::CopyAction);
  event->accept();
  setDropTarget(true);
}

void PadCell::dragMoveEvent(QDragMoveEvent* event) {
  event->setDropAction(Qt::CopyAction);
  event->setAccepted(isDropTarget_);
}

void PadCell::dragLeaveEvent(QDragLeaveEvent*) {
  setDropTarget(false);
}

void PadCell::dropEvent(QDropEvent* event) {
  setDropTarget(false);
  const auto id = droppedWaveId(event->mimeData()->text());
  if (!id) return event->ignore();
  event->setDropAction(Qt::CopyAction);
  event->accept();
  store_.setPadSound(kitSlot_, padIndex_, *id);
}

void PadCell::focusInEvent(QFocusEvent* event) {
  QAbstractButton::focusInEvent(event);
  Q_EMIT ringChanged();
}

void PadCell::focusOutEvent(QFocusEvent* event) {
  QAbstractButton::focusOutEvent(event);
  Q_EMIT ringChanged();
}

}  // namespace tamboro
