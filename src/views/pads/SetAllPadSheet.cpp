#include "views/pads/SetAllPadSheet.h"

#include <QCheckBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "views/controls/Labels.h"
#include "views/look/LookStyle.h"

namespace tamboro {

namespace {

QString heading(int pad) {
  return QStringLiteral("Apply Settings from Pad %1 to All Pads").arg(pad + 1);
}

}  // namespace

SetAllPadSheet::SetAllPadSheet(RolandLibrary& store, Slot slot, int sourcePad, QWidget* parent)
    : Sheet(QStringLiteral("setAllPadSheet"), heading(sourcePad), parent),
      store_(store),
      kitSlot_(slot),
      sourcePadIndex_(sourcePad) {
  const int width = Look::px(360) - 2 * 20;
  auto* title = makeLabel(QStringLiteral("sheetTitle"), {}, TextStyle::headline);
  setWrappedText(*title, heading(sourcePad), width);
  column()->addWidget(title);
  column()->addLayout(makeFields());
  auto* remark = makeLabel(QStringLiteral("setAllPadRemark"), {}, TextStyle::caption, textRole::secondary);
  setWrappedText(*remark,
                 QStringLiteral("This overwrites the selected settings on every other pad in the kit. Sound, sub "
                                "sound, and note number are left untouched."),
                 width);
  column()->addWidget(remark);
  connect(addButton(QStringLiteral("Cancel")), &QPushButton::clicked, this, &QDialog::reject);
  apply_ = addButton(QStringLiteral("Apply to All"));
  setControlLook(*apply_, ControlLook::prominent);
  apply_->setDefault(true);
  apply_->setEnabled(false);
  connect(apply_, &QPushButton::clicked, this, &SetAllPadSheet::apply);
  layout()->setSizeConstraint(QLayout::SetFixedSize);
}

QLayout* SetAllPadSheet::makeFields() {
  auto* rows = new QVBoxLayout;
  rows->setSpacing(Look::px(6));
  for (int place = 0; const PadSetting& setting : padSettings) {
    if (!setting.isForAll) continue;
    const QString title = QString::fromUtf8(setting.title.data(), static_cast<qsizetype>(setting.title.size()));
    auto* box = new QCheckBox(title);
    box->setObjectName(QStringLiteral("applyField%1").arg(place++));
    box->setAccessibleName(title);
    connect(box, &QCheckBox::toggled, this, [this, &setting](bool on) { choose(setting, on); });
    rows->addWidget(box);
  }
  return rows;
}

void SetAllPadSheet::choose(const PadSetting& setting, bool on) {
  if (on) {
    selected_.insert(&setting);
  } else {
    selected_.erase(&setting);
  }
  apply_->setEnabled(!selected_.empty());
}

void SetAllPadSheet::apply() {
  store_.applySettingsToAllPads(kitSlot_, sourcePadIndex_, selected_);
  accept();
}

}  // namespace tamboro
