#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace tamboro {

/// A small turning arc of 16; turns only while it is on screen.
class BusyIndicator : public QWidget {
  Q_OBJECT

 public:
  explicit BusyIndicator(QWidget* parent = nullptr);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QBasicTimer timer_;
  int degrees_ = 0;
};

}  // namespace tamboro
