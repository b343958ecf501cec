#pragma once

class QWidget;

namespace tamboro {

/// Shows a window that isn't modal, or brings it to the front where it is open, out of the taskbar too.
void bringToFront(QWidget& window);

}  // namespace tamboro
