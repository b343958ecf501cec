#pragma once

#include <QWidget>
#include <vector>

#include "library/store/RolandLibrary.h"
#include "model/PadLayout.h"
#include "views/controls/Prompts.h"

class QLabel;

namespace tamboro {

class PadCell;
class SamplePlayer;

/// The pads of a kit: three by three, then a row of trigger inputs and one of footswitches, all on the same column
/// edges. Holds the keyboard for all of them and paints the rings around pads, so it leaves `margin` around them.
class PadGridView : public QWidget {
  Q_OBJECT

 public:
  PadGridView(RolandLibrary& store, SamplePlayer& player, Prompts& prompts, QWidget* parent = nullptr);

  void setKit(Slot slot);
  /// Reads the store.
  void refresh();
  /// The selected pad's cell, if it has one.
  PadCell* selectedCell() const;
  static int margin();

  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  /// The keyboard led to this pad, or came to the grid with this pad selected.
  void keyboardAt(QWidget* cell);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

 private:
  struct Arrangement {
    std::vector<std::pair<QWidget*, QRect>> places;
    int height = 0;
  };
  void showGroups(int padCount);
  Arrangement arrange(int width) const;
  void placeAll();
  bool move(int key);
  bool copyOrPaste(const QKeyEvent& key);
  void tellFocus();

  RolandLibrary& store_;

  Slot kitSlot_ = 0;
  int padCount_ = -1;  ///< for which the groups stand
  PadLayout groups_;

  std::vector<PadCell*> cells_;  // of every place there can be, those that the kit hasn't got hidden
  QLabel* triggers_;
  QLabel* footswitches_;
};

}  // namespace tamboro
