#include "app/AppDelegate.h"

#include <QApplication>
#include <QWidget>

namespace tamboro {

AppDelegate::AppDelegate(UpdaterServices updates, QObject* parent)
    : QObject(parent), updaterController_(std::move(updates)) {}

void AppDelegate::applicationDidFinishLaunching() {
  QApplication::setQuitOnLastWindowClosed(applicationShouldTerminateAfterLastWindowClosed());
}

bool AppDelegate::applicationShouldHandleReopen(bool hasVisibleWindows) {
  if (hasVisibleWindows) return true;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->windowType() != Qt::Window || window->parent()) continue;
    window->setWindowState((window->windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
    window->show();
    window->raise();
    window->activateWindow();
  }
  return true;
}

}  // namespace tamboro
