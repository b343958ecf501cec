#pragma once

#include <QDialog>

namespace tamboro {

/// The one settings window, beside the main window and not in its way: not modal, gone with it, closed by Escape and
/// the key that closes windows.
class SettingsWindow : public QDialog {
  Q_OBJECT

 public:
  SettingsWindow(QWidget* content, QWidget* mainWindow);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace tamboro
