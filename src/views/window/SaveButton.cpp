#include "views/window/SaveButton.h"

#include <QShortcut>
#include <QStyleOptionButton>
#include <algorithm>

#include "library/store/RolandLibrary.h"
#include "views/controls/BusyIndicator.h"
#include "views/controls/Labels.h"
#include "views/look/LookPaint.h"
#include "views/look/LookStyle.h"
#include "views/look/Symbols.h"

namespace tamboro {

SaveButton::SaveButton(RolandLibrary& store, QWidget* parent)
    : QPushButton(parent), store_(store), busy_(new BusyIndicator(this)) {
  setObjectName(QStringLiteral("saveButton"));
  setAccessibleName(QStringLiteral("Save"));
  setFocusPolicy(Qt::TabFocus);
  busy_->setAccessibleName(QStringLiteral("Saving"));
  auto* key = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_S), this);
  key->setContext(Qt::ApplicationShortcut);
  key->setAutoRepeat(false);
  connect(key, &QShortcut::activated, this, &QPushButton::click);
  connect(&store, &RolandLibrary::published, this, &SaveButton::follow);
  follow();
}

QSize SaveButton::sizeHint() const {
  QStyleOptionButton option;
  initStyleOption(&option);
  option.text = QStringLiteral("Save ●");
  option.icon = symbolIcon(QStringLiteral("square.and.arrow.down"));
  QFont heaviest = font();
  heaviest.setWeight(QFont::DemiBold);
  const int growth =
      QFontMetrics(heaviest).horizontalAdvance(option.text) - fontMetrics().horizontalAdvance(option.text);
  const bool isHeavy = controlLook(this) == ControlLook::unsaved;
  const QSize size = style()->sizeFromContents(QStyle::CT_PushButton, &option, {}, this);
  return QSize(std::max(size.width() + (isHeavy ? 0 : growth), Look::px(84) + 2 * ringRoom), size.height());
}

void SaveButton::resizeEvent(QResizeEvent* event) {
  QPushButton::resizeEvent(event);
  busy_->move((width() - busy_->width()) / 2, (height() - busy_->height()) / 2);
}

void SaveButton::follow() {
  const bool hasChanges = store_.hasUnsavedChanges();
  const bool isBusy = store_.isExporting();
  const std::pair state(hasChanges, isBusy);
  if (shown_ == state) return;  // another icon would lay the window out anew at each edit
  shown_ = state;
  setEnabled(hasChanges && !isBusy);
  setControlLook(*this, hasChanges && !isBusy ? ControlLook::unsaved : ControlLook::ordinary);
  setText(isBusy ? QString() : hasChanges ? QStringLiteral("Save ●") : QStringLiteral("Save"));
  setIcon(isBusy ? QIcon() : symbolIcon(QStringLiteral("square.and.arrow.down")));
  busy_->setVisible(isBusy);
  setHelp(*this,
          hasChanges ? QStringLiteral("Save changes to the SPD-SX card (⌘S)") : QStringLiteral("No changes to save"));
}

}  // namespace tamboro
