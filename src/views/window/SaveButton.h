#pragma once

#include <QPushButton>
#include <optional>
#include <utility>

namespace tamboro {

class BusyIndicator;
class RolandLibrary;

/// The toolbar's Save and the one owner of Command-S. Red while changes wait, an arc while they are written; the same
/// width in all states. It follows the store at once: a queued change would swallow a fast Command-S.
class SaveButton : public QPushButton {
  Q_OBJECT

 public:
  explicit SaveButton(RolandLibrary& store, QWidget* parent = nullptr);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void follow();

  RolandLibrary& store_;
  std::optional<std::pair<bool, bool>> shown_;  ///< has changes, is busy
  BusyIndicator* busy_;
};

}  // namespace tamboro
