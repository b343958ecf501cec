#include "views/controls/BringToFront.h"

#include <QWidget>

namespace tamboro {

void bringToFront(QWidget& window) {
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
}

}  // namespace tamboro
