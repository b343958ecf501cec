#pragma once

#include "views/controls/ElidedLabel.h"

namespace tamboro {

/// A symbol and a caption on a grey capsule; the text is cut at its head and at most 300 wide.
class CapsulePill : public ElidedLabel {
  Q_OBJECT

 public:
  explicit CapsulePill(const QString& symbol, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void placeText();

  QString symbol_;
};

}  // namespace tamboro
