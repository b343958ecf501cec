#include "views/effects/KitEffectsView.h"

#include <QVBoxLayout>

#include "views/controls/DisclosureGroup.h"
#include "views/controls/QueuedRefresh.h"
#include "views/controls/Surface.h"
#include "views/effects/FXUnitView.h"
#include "views/look/LookPaint.h"

namespace tamboro {

KitEffectsView::KitEffectsView(RolandLibrary& store, QWidget* parent)
    : QWidget(parent), first_(new FXUnitView(store, 1)), second_(new FXUnitView(store, 2)) {
  setObjectName(QStringLiteral("kitEffects"));
  setAccessibleName(QStringLiteral("Effects"));
  auto* units = new QWidget;
  auto* column = new QVBoxLayout(units);
  column->setSpacing(Look::px(16) - ringRoom);
  auto* divider = new Surface(&Look::separator);
  divider->setFixedHeight(1);
  auto* dividerRow = new QHBoxLayout;
  dividerRow->setContentsMargins(ringRoom, 0, ringRoom, 0);
  dividerRow->addWidget(divider);
  column->addWidget(first_);
  column->addLayout(dividerRow);
  column->addWidget(second_);
  group_ = new DisclosureGroup(QStringLiteral("effects"), QStringLiteral("Effects"), TextStyle::headline, units,
                               Look::px(8));
  auto* rows = new QVBoxLayout(this);
  rows->addWidget(group_);
  new QueuedRefresh(
      store,
      [this] {
        first_->refresh();
        second_->refresh();
      },
      this);
}

void KitEffectsView::setKit(Slot slot) {
  if (slot != kitSlot_) group_->setExpanded(false);
  kitSlot_ = slot;
  first_->setKit(slot);
  second_->setKit(slot);
}

}  // namespace tamboro
