#pragma once

#include <QLabel>

namespace tamboro {

/// The orange dot with "Unsaved changes". Orange can't be read on a light window, so there it stands on an ink capsule.
class UnsavedMark : public QLabel {
  Q_OBJECT

 public:
  explicit UnsavedMark(QWidget* parent = nullptr);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace tamboro
