#include "views/window/CardLocationPill.h"

#include "library/store/RolandLibrary.h"
#include "views/controls/QueuedRefresh.h"

namespace tamboro {

CardLocationPill::CardLocationPill(RolandLibrary& store, QWidget* parent)
    : CapsulePill(QStringLiteral("internaldrive.fill"), parent), store_(store) {
  setObjectName(QStringLiteral("cardLocation"));
  setAccessibleDescription(QStringLiteral("Card location"));
  new QueuedRefresh(
      store, [this] { refresh(); }, this);
  refresh();
}

void CardLocationPill::refresh() {
  const QString path = store_.rootPath().value_or(QStringLiteral("Not loaded"));
  setText(path);
  setToolTip(path);
}

}  // namespace tamboro
