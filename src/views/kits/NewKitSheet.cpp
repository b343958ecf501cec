#include "views/kits/NewKitSheet.h"

#include <QComboBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "views/controls/CardText.h"
#include "views/controls/Labels.h"
#include "views/kits/KitListRules.h"
#include "views/look/LookStyle.h"

namespace tamboro {

NewKitSheet::NewKitSheet(RolandLibrary& store, std::function<void(Slot)> onCreated, QWidget* parent)
    : Sheet(QStringLiteral("newKitSheet"), QStringLiteral("New Kit"), parent),
      store_(store),
      onCreated_(std::move(onCreated)),
      basedOn_(new QComboBox) {
  basedOn_->setObjectName(QStringLiteral("basedOn"));
  basedOn_->setAccessibleName(QStringLiteral("Based On"));
  basedOn_->addItem(QStringLiteral("Blank Kit"));
  for (const Kit& kit : store.kits())
    basedOn_->addItem(kitChoiceText(kit.slot, cardText(kit.name())), QVariant::fromValue<qlonglong>(kit.slot));
  basedOn_->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
  auto* label = makeLabel(QStringLiteral("basedOnLabel"), QStringLiteral("Based On"), TextStyle::body);
  label->setBuddy(basedOn_);
  auto* row = new QHBoxLayout;
  row->addWidget(label);
  row->addWidget(basedOn_, 1);
  row->addStretch();
  column()->addWidget(makeLabel(QStringLiteral("newKitTitle"), windowTitle(), TextStyle::headline));
  column()->addLayout(row);
  connect(addButton(QStringLiteral("Cancel")), &QPushButton::clicked, this, &QDialog::reject);
  QPushButton* createButton = addButton(QStringLiteral("Create"));
  setControlLook(*createButton, ControlLook::prominent);
  createButton->setDefault(true);
  connect(createButton, &QPushButton::clicked, this, &NewKitSheet::create);
  setFixedWidth(Look::px(360));
  basedOn_->setFocus();
}

std::optional<Slot> NewKitSheet::templateSlot() const {
  const QVariant slot = basedOn_->currentData();
  return slot.isValid() ? std::optional<Slot>(slot.toLongLong()) : std::nullopt;
}

void NewKitSheet::create() {
  const auto source = templateSlot();
  const auto created = source ? store_.createKit(*source, false) : store_.createBlankKit();
  if (created) onCreated_(*created);
  accept();
}

}  // namespace tamboro
