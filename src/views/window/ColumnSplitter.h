#pragma once

#include <QSplitter>
#include <array>

namespace tamboro {

/// The workspace's three columns: 204, 568 and 426 at first. The middle one takes what the window has more, up to what
/// its content can use, and then the right one. The left one is a sidebar: it hides for a window too narrow for all
/// three and comes back by itself, and by hand it is shown and hidden at any width. Least widths give way before they
/// exceed the window: the middle column scrolls.
class ColumnSplitter : public QSplitter {
  Q_OBJECT

 public:
  ColumnSplitter(QWidget* left, QWidget* middle, QWidget* right, QWidget* parent = nullptr);

  /// What the user chose: the widths of the outer columns in pixels, as drawn, and the left one in a window with room.
  struct State {
    int leftWidth;
    int rightWidth;
    bool isLeftWanted;
  };
  State state() const { return {leftWidth_, rightWidth_, isWanted_}; }
  void setState(const State& state);

  bool isLeftShown() const { return isNarrow_ ? isForced_ : isWanted_; }
  void setLeftShown(bool on);
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  void leftShownChanged(bool on);
  /// The left column is about to hide with the keyboard in it.
  void keyboardLeavesLeft();

 protected:
  QSplitterHandle* createHandle() override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  using Widths = std::array<int, 3>;
  class Divider;
  class DividerAccessible;

  Widths leastWidths(int room) const;
  void arrange();
  void dividerMoved(int index);
  void dividerReleased();

  bool isWanted_ = true;   ///< the left column, in a window with room for it
  bool isForced_ = false;  ///< the left column, in this narrow window
  bool isNarrow_ = false;
  bool isShown_ = true;  ///< as last told
  int leftWidth_;        ///< as first given or last drawn; the window can leave less
  int rightWidth_;
};

}  // namespace tamboro
