#include "views/CardLocationPill.h"

#include "library/RolandLibrary.h"
#include "views/controls/CardText.h"
#include "views/controls/QueuedRefresh.h"

namespace tamboro {

CardLocationPill::CardLocationPill(RolandLibrary& store, QWidget* parent)
    : CapsulePill(QStringLiteral("internaldrive.fill"), parent), store_(store) {
  setObjectName(QStringLiteral("cardLocation"));
  new QueuedRefresh(
      store, [this] { refresh(); }, this);
  refresh();
}

void CardLocationPill::refresh() {
  const QString path = store_.rootPath().value_or(QStringLiteral("Not loaded"));
  const QString failure = visibleText(store_.lastError().value_or(QString()));
  setText(path);
  setToolTip(failure.isEmpty() ? path : path + QLatin1Char('\n') + failure);
  setAccessibleDescription(failure.isEmpty() ? QStringLiteral("Card location")
                                             : QStringLiteral("Card location. ") + failure);
}

}  // namespace tamboro
