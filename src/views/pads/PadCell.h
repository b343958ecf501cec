#pragma once

#include <QAbstractButton>
#include <QPointer>
#include <optional>

#include "library/store/RolandLibrary.h"
#include "views/controls/Prompts.h"

namespace tamboro {

class ContextMenu;
class SamplePlayer;

/// One pad of the grid: shows its sound and note, selects on a click, plays on a double click, takes a dropped sample.
/// A button to assistive tools, checked while it is the selected pad. Rings around it are painted by the grid, since
/// they lie in the gap between pads.
class PadCell : public QAbstractButton {
  Q_OBJECT

 public:
  PadCell(RolandLibrary& store, SamplePlayer& player, Prompts& prompts, int padIndex, QWidget* parent);

  void setKit(Slot slot) { kitSlot_ = slot; }
  int padIndex() const { return padIndex_; }
  /// What stands at the top: the main pads' number alone, else as in the menus.
  QString label() const;
  bool isSelected() const { return isChecked(); }
  bool isDropTarget() const { return isDropTarget_; }
  bool showingInitConfirm() const { return showingInitConfirm_; }

  /// Reads the store.
  void refresh();
  void select();
  void selectWithPreview();
  void openMenu(const QPoint& globalPosition);
  /// False where there is nothing to copy, or to paste.
  bool copySound();
  bool pasteSound();

  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override { return minimumSizeHint(); }
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  /// A hand or a key selected this pad.
  void chosen();
  /// The ring around it may have to come or go.
  void ringChanged();

 protected:
  void nextCheckState() override {}  // checked follows the store alone
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  const Wave* sound() const;
  void nameForTools();
  void play();
  void askReset();
  void addExchangeMenu(ContextMenu& menu);
  void setDropTarget(bool on);
  const QStringList& nameLines(int width) const;
  QColor fill() const;

  RolandLibrary& store_;
  SamplePlayer& player_;
  Prompts& prompts_;

  Slot kitSlot_ = 0;
  int padIndex_;
  bool showingInitConfirm_ = false;
  bool isDropTarget_ = false;

  // As last read.
  std::optional<QString> soundName_;
  QString note_;

  // The name broken for this width; a layout asks for the height again and again.
  mutable int brokenAt_ = -1;
  mutable QStringList lines_;
};

}  // namespace tamboro
