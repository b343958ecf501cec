#include "app/SettingsWindow.h"

#include <QApplication>
#include <QKeyEvent>
#include <QVBoxLayout>

#include "views/controls/Sheet.h"

namespace tamboro {

SettingsWindow::SettingsWindow(QWidget* content, QWidget* mainWindow) : QDialog(mainWindow) {
  setObjectName(QStringLiteral("settingsWindow"));
  setWindowTitle(QStringLiteral("Preferences"));
  setAccessibleName(windowTitle());
  auto* rows = new QVBoxLayout(this);
  rows->setSizeConstraint(QLayout::SetFixedSize);  // grows and shrinks with the rows that show
  rows->addWidget(content);
  qApp->installEventFilter(this);
}

void SettingsWindow::keyPressEvent(QKeyEvent* event) {
  if (!pressesFocusedButton(*this, *event)) QDialog::keyPressEvent(event);
}

/// The key that closes windows, before the control in use or a picker's open list can use it up.
bool SettingsWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) return false;
  if (!static_cast<QKeyEvent*>(event)->matches(QKeySequence::Close)) return false;
  const QWidget* window = static_cast<QWidget*>(watched)->window();
  QWidget* popup = QApplication::activePopupWidget();
  const bool isOurPopup = popup == window && popup->parentWidget() && popup->parentWidget()->window() == this;
  if (window != this && !isOurPopup) return false;
  if (popup) popup->close();
  close();
  return true;
}

}  // namespace tamboro
