#pragma once

#include <QCheckBox>

namespace tamboro {

/// An on-off switch of 32 by 18; a check box to the keyboard and to assistive tools. Its title stands beside it, so it
/// needs an accessible name of its own.
class Switch : public QCheckBox {
  Q_OBJECT

 public:
  explicit Switch(QWidget* parent = nullptr);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  bool hitButton(const QPoint& position) const override { return rect().contains(position); }
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace tamboro
