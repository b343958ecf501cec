#pragma once

#include <QObject>

namespace tamboro {

/// Under a menu, a picker's list or a sheet the toolkit doesn't tell a control that the pointer left it: it would look
/// pointed at until the pointer came back. Watches windows come and go, and tells it then.
class HoverEnds : public QObject {
  Q_OBJECT

 public:
  /// Watches the whole application.
  explicit HoverEnds(QObject* parent);
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void look();

  bool isLooking_ = false;
};

}  // namespace tamboro
