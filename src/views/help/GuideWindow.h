#pragma once

#include <QDialog>

namespace tamboro {

/// The owner's guide in a window of its own beside the main one, not in its way. Escape and the key that closes windows
/// close it; made once, it comes back where it was left.
class GuideWindow : public QDialog {
  Q_OBJECT

 public:
  /// The text is Markdown.
  GuideWindow(const QString& markdown, QWidget* mainWindow);
};

}  // namespace tamboro
