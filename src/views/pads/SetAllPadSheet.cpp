#include "views/pads/SetAllPadSheet.h"

#include <QCheckBox>
#include <QPushButton>
#include <QVBoxLayout>
#include <array>

#include "views/controls/Labels.h"
#include "views/look/LookStyle.h"

namespace tamboro {

namespace {

constexpr std::array fields{SetAllPadField::level,        SetAllPadField::pan,        SetAllPadField::muteGroup,
                            SetAllPadField::loop,         SetAllPadField::tempoSync,  SetAllPadField::dynamics,
                            SetAllPadField::reverse,      SetAllPadField::isPoly,     SetAllPadField::triggerType,
                            SetAllPadField::outputAssign, SetAllPadField::midiChannel};

QString heading(int pad) {
  return QStringLiteral("Apply Settings from Pad %1 to All Pads").arg(pad + 1);
}

}  // namespace

QString fieldLabel(SetAllPadField field) {
  switch (field) {
    case SetAllPadField::level:
      return QStringLiteral("Pad Volume");
    case SetAllPadField::pan:
      return QStringLiteral("Pan");
    case SetAllPadField::muteGroup:
      return QStringLiteral("Mute Group");
    case SetAllPadField::loop:
      return QStringLiteral("Loop");
    case SetAllPadField::tempoSync:
      return QStringLiteral("TempoSync");
    case SetAllPadField::dynamics:
      return QStringLiteral("Dynamics");
    case SetAllPadField::reverse:
      return QStringLiteral("Reverse");
    case SetAllPadField::isPoly:
      return QStringLiteral("Poly/Mono");
    case SetAllPadField::triggerType:
      return QStringLiteral("Trigger Type");
    case SetAllPadField::outputAssign:
      return QStringLiteral("Output");
    case SetAllPadField::midiChannel:
      return QStringLiteral("MIDI Channel");
  }
  return {};
}

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
  for (const SetAllPadField field : fields) {
    auto* box = new QCheckBox(fieldLabel(field));
    box->setObjectName(QStringLiteral("applyField%1").arg(static_cast<int>(field)));
    box->setAccessibleName(fieldLabel(field));
    connect(box, &QCheckBox::toggled, this, [this, field](bool on) { choose(field, on); });
    rows->addWidget(box);
  }
  return rows;
}

void SetAllPadSheet::choose(SetAllPadField field, bool on) {
  if (on) {
    selected_.insert(field);
  } else {
    selected_.erase(field);
  }
  apply_->setEnabled(!selected_.empty());
}

void SetAllPadSheet::apply() {
  store_.applySettingsToAllPads(kitSlot_, sourcePadIndex_, selected_);
  accept();
}

}  // namespace tamboro
