#include "views/controls/Sheet.h"

#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "views/controls/Labels.h"
#include "views/controls/Surface.h"
#include "views/look/LookPaint.h"

namespace tamboro {

namespace {

/// Buttons of a sheet are at least 76 wide, so that short words don't make dots of them.
QPushButton* makeButton(const QString& title) {
  auto* button = new QPushButton(title);
  button->setObjectName(title.simplified().toLower().remove(QLatin1Char(' ')) + QStringLiteral("Button"));
  button->setMinimumWidth(Look::px(76) + 2 * ringRoom);
  button->setAutoDefault(false);
  return button;
}

}  // namespace

bool pressesFocusedButton(const QDialog& dialog, const QKeyEvent& event) {
#ifdef Q_OS_MACOS
  Q_UNUSED(dialog);
  Q_UNUSED(event);  // there Return is the default button's alone
  return false;
#else
  const bool isReturn = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
  auto* button = qobject_cast<QPushButton*>(dialog.focusWidget());
  if (!isReturn || (event.modifiers() & ~Qt::KeypadModifier) || !button) return false;
  if (!event.isAutoRepeat()) button->click();  // held since it opened what the button stands in, it presses nothing
  return true;
#endif
}

Sheet::Sheet(const QString& objectName, const QString& title, QWidget* parent)
#ifdef Q_OS_MACOS
    : QDialog(parent, Qt::Sheet)
#else
    : QDialog(parent)
#endif
{
  setObjectName(objectName);
  setWindowTitle(title);
  setAccessibleName(title);
  setWindowModality(Qt::WindowModal);
  setAttribute(Qt::WA_DeleteOnClose);
  rows_ = new QVBoxLayout(this);
  rows_->setSpacing(0);
  column_ = new QVBoxLayout;
  column_->setContentsMargins(20, 20, 20, 20);
  column_->setSpacing(16);
  rows_->addLayout(column_, 1);
}

QPushButton* Sheet::addHeader(const QString& title, const QString& closeTitle) {
  auto* header = new Surface(&Look::window, Qt::BottomEdge);
  auto* row = new QHBoxLayout(header);
  row->setContentsMargins(20, 16, 20, 16);
  row->addWidget(makeLabel(QStringLiteral("sheetTitle"), title, TextStyle::title2), 1);
  auto* close = makeButton(closeTitle);
  row->addWidget(close);
  rows_->insertWidget(0, header);
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  return close;
}

void Sheet::keyPressEvent(QKeyEvent* event) {
  if (!pressesFocusedButton(*this, *event)) QDialog::keyPressEvent(event);
}

QPushButton* Sheet::addButton(const QString& title) {
  if (!buttons_) {
    buttons_ = new QHBoxLayout;
    buttons_->setSpacing(Look::px(8));  // else the column's
    buttons_->addStretch();
    column_->addLayout(buttons_);
  }
  auto* button = makeButton(title);
  buttons_->addWidget(button);
  return button;
}

}  // namespace tamboro
