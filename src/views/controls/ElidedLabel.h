#pragma once

#include <QLabel>

namespace tamboro {

/// One line of text that is cut at paint time, with the font that paints; assistive tools read it whole. Its preferred
/// width is the whole text's up to a bound.
class ElidedLabel : public QLabel {
  Q_OBJECT

 public:
  explicit ElidedLabel(Qt::TextElideMode mode, QWidget* parent = nullptr);

  void setMaximumTextWidth(int width) { maximumTextWidth_ = width; }
  /// What stands on screen now.
  QString shownText() const;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Qt::TextElideMode mode_;
  int maximumTextWidth_ = QWIDGETSIZE_MAX;
};

}  // namespace tamboro
