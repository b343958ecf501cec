#include "app/SettingsWindow.h"

#include <QKeyEvent>
#include <QVBoxLayout>

namespace tamboro {

SettingsWindow::SettingsWindow(QWidget* content, QWidget* mainWindow) : QDialog(mainWindow) {
  setObjectName(QStringLiteral("settingsWindow"));
  setWindowTitle(QStringLiteral("Preferences"));
  setAccessibleName(windowTitle());
  auto* rows = new QVBoxLayout(this);
  rows->setSizeConstraint(QLayout::SetFixedSize);  // grows and shrinks with the rows that show
  rows->addWidget(content);
}

void SettingsWindow::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Close)) {
    close();
  } else {
    QDialog::keyPressEvent(event);
  }
}

void SettingsWindow::bringToFront() {
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
}

}  // namespace tamboro
