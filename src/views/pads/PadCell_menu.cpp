#include "model/PadLayout.h"
#include "views/controls/ContextMenu.h"
#include "views/pads/PadCell.h"

namespace tamboro {

void PadCell::openMenu(const QPoint& globalPosition) {
  auto* menu = new ContextMenu(QStringLiteral("padMenu"), accessibleName(), this);
  if (sound()) {
    menu->add("copySound", QStringLiteral("Copy Sound"), QStringLiteral("Copy this sound to paste onto other pads"),
              [this] { copySound(); });
    menu->add("playSound", QStringLiteral("Play"), QStringLiteral("Preview the sound"), [this] { play(); });
    menu->addSeparator();
    menu->addDestructive("removeSound", QStringLiteral("Remove Sound from Pad"),
                         QStringLiteral("Delete the sound from this pad"),
                         [this] { store_.removePadSound(kitSlot_, padIndex_); });
  }
  if (store_.copiedWaveIndex())
    menu->add("pasteSound", QStringLiteral("Paste Sound"), QStringLiteral("Paste the copied sound here"),
              [this] { pasteSound(); });
  menu->addSeparator();
  addExchangeMenu(*menu);
  menu->addDestructive("resetPad", QStringLiteral("Reset Pad"),
                       QStringLiteral("Removes the sound and resets all settings to default"), [this] { askReset(); });
  menu->popup(globalPosition);
}

bool PadCell::copySound() {
  const Wave* wave = sound();
  if (wave) store_.setCopiedWaveIndex(wave->id());
  return wave != nullptr;
}

bool PadCell::pasteSound() {
  const auto copied = store_.copiedWaveIndex();
  if (copied) store_.setPadSound(kitSlot_, padIndex_, *copied);
  return copied.has_value();
}

void PadCell::addExchangeMenu(ContextMenu& menu) {
  QMenu* exchange = menu.addSubmenu("exchangeMenu", QStringLiteral("Exchange With"),
                                    QStringLiteral("Swap all settings (including the sound) with another pad"));
  const Kit* kit = store_.kit(kitSlot_);
  const int count = std::min(kit ? kit->padCount() : 0, standardPadCount);
  for (int other = 0; other < count; ++other) {
    if (other == padIndex_) continue;
    QAction* row = exchange->addAction(QString::fromStdString(padLabel(other)));
    connect(row, &QAction::triggered, this, [this, other] { store_.exchangePads(kitSlot_, padIndex_, other); });
  }
  exchange->setEnabled(!exchange->isEmpty());
}

void PadCell::askReset() {
  showingInitConfirm_ = true;
  const Alert question{.title = QStringLiteral("Reset %1?").arg(label()),
                       .text = QStringLiteral(
                           "This removes the sound and resets volume, pan, mute group, and other settings to default."),
                       .buttons = {{QStringLiteral("Reset"), AlertButton::Role::destructive},
                                   {QStringLiteral("Cancel"), AlertButton::Role::cancel}}};
  // The kit that was asked about, also if another is shown when the answer comes.
  prompts_.alert(this, question, [cell = QPointer<PadCell>(this), slot = kitSlot_](std::size_t button) {
    if (!cell) return;
    cell->showingInitConfirm_ = false;
    if (button == 0) cell->store_.resetPad(slot, cell->padIndex_);
  });
}

}  // namespace tamboro
