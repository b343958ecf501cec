#pragma once

#include <QObject>
#include <functional>

class QDropEvent;
class QWidget;

namespace tamboro {

/// Lets a widget answer drags wherever they hover over it, also over a field in it. A filter for a place within another
/// one's has to be made later: the last one is asked first.
class DropFilter : public QObject {
  Q_OBJECT

 public:
  explicit DropFilter(QWidget& place);
  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  /// A drag entered, moved or was let go over the place or a widget in it. False leaves it to the others.
  virtual bool answer(QDropEvent& event, const QWidget& over) = 0;
  virtual void leave() {}
  /// As a copy, whatever keys are held: what is moved, its source would delete.
  static void take(QDropEvent& event);
  /// What a drop sets off, as an event of its own: the source of the drag isn't kept waiting.
  void afterwards(const std::function<void()>& work);
  const QWidget& place() const { return place_; }

 private:
  QWidget& place_;
};

}  // namespace tamboro
