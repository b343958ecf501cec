#pragma once

#include <QAbstractItemView>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPointer>
#include <map>

#include "views/lists/RowModel.h"

namespace tamboro {

class RowDelegate;

/// A list of records in the program's look. It names rows by key, so that place, selection and edits under way outlive
/// every change of the rows; what it is told to show it never reports back as the user's doing. Columns stand side by
/// side in a row; a cell that is a control of its own is pressed, by whatever means, without selecting its row.
class RowList : public QAbstractItemView {
  Q_OBJECT

 public:
  RowList(RowModel* model, RowDelegate* delegate, QWidget* parent = nullptr);

  const RowModel& rows() const { return *rows_; }
  void setRows(std::vector<RowKey> rows, const std::set<RowKey>& changed);
  std::set<RowKey> selectedKeys() const;
  void setSelectedKeys(const std::set<RowKey>& keys);
  void reveal(const RowKey& key);
  /// The cells of this column are named otherwise than before: assistive tools are told of those in sight.
  void announceColumn(int column);
  /// The column with the row's name, where the keyboard stands unless it was moved to a control of the row.
  void setMainColumn(int column) { mainColumn_ = column; }
  /// Whether the keys that move the cursor, and typing that finds a name, select as they go. They do without this.
  void setCursorSelects(bool on) { cursorSelects_ = on; }

  struct Field {
    QString objectName, accessibleName, placeholder, text;
  };
  /// A field over the row's name, or the one that stands there, with the text. It stays open, wherever the focus goes,
  /// until Return commits what is in it or its row goes.
  void openField(const RowKey& key, const Field& texts, std::function<void(const QString&)> commit);
  QLineEdit* field(const RowKey& key) const;
  QList<QLineEdit*> fields() const;
  void revealField(const QLineEdit& field);
  /// Takes the widget that fills the detail row; it goes with its row.
  void openDetail(const RowKey& key, QWidget* detail);
  QWidget* detail(const RowKey& key) const;
  QWidgetList details() const;

  /// What the row's press does, or the control's in that cell, by whatever means.
  void press(const QModelIndex& index);
  void showMenu(const QModelIndex& index, const QPoint& globalPosition);
  bool isInUse() const;
  bool isControl(const QModelIndex& index) const;
  bool isRowSelected(int row) const;

  /// In the viewport.
  QRect visualRect(const QModelIndex& index) const override;
  QRect cellRect(const RowKey& key, int column) const;
  QModelIndex indexAt(const QPoint& point) const override;
  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
  void keyboardSearch(const QString& search) override;
  void reset() override;

 Q_SIGNALS:
  /// The user selected other rows.
  void selectionEdited();
  /// A row that can't be selected was pressed.
  void rowPressed(const tamboro::RowKey& key);
  void cellPressed(const tamboro::RowKey& key, int column);
  /// Space or Return on a row's name; F2, Delete or Backspace anywhere in a row.
  void rowActivated(const tamboro::RowKey& key, Qt::Key pressed);
  /// The place is that of the first click, from the row's corner: the list may have moved since.
  void rowDoubleClicked(const tamboro::RowKey& key, const QPoint& place);
  void menuRequested(const tamboro::RowKey& key, const QPoint& globalPosition);
  /// The mouse drags the row away; only while drags are enabled.
  void dragRequested(const tamboro::RowKey& key);

 protected:
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
  int horizontalOffset() const override { return 0; }
  int verticalOffset() const override;
  bool isIndexHidden(const QModelIndex&) const override { return false; }
  void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index, const QEvent* event) const override;
  QRegion visualRegionForSelection(const QItemSelection& selection) const override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void updateGeometries() override;
  void updateEditorGeometries() override;
  void scrollContentsBy(int dx, int dy) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Place {
    RowKey key;
    int y;
  };

  const std::vector<int>& tops() const;
  int rowAt(int y) const;
  QRect rowRect(int row) const;
  QRect cellRect(const QRect& row, int column) const;
  void paintRow(QPainter& painter, QStyleOptionViewItem& option, int row) const;
  void paintGround(QPainter& painter, const QRect& row, int place) const;
  bool isSelectable(int row) const;
  int nearestSelectable(int row, int step) const;
  QModelIndex landing(int row) const;
  QModelIndex control(const QModelIndex& index, int step) const;
  bool activate(QKeyEvent& event);
  bool isSecondClick(const QPoint& point, const std::optional<RowKey>& key) const;
  void beginControl(const QModelIndex& index);
  void hover(const QModelIndex& index);
  void updateRow(int row);
  void announce(int event, const QModelIndex& index);
  std::optional<Place> place() const;
  void keepPlace(const std::optional<Place>& place);
  QLineEdit* makeField(const RowKey& key, const Field& texts, std::function<void(const QString&)> commit);
  void closeField(const RowKey& key);
  void keepKeyboard(const RowKey& key, int row, int column);
  void dropWidgetsOfGoneRows();

  RowModel* rows_;
  RowDelegate* delegate_;
  int mainColumn_ = 0;
  bool cursorSelects_ = true;
  bool isSearching_ = false;
  bool isFilling_ = false;
  QPersistentModelIndex hovered_;
  QPersistentModelIndex sunken_;  ///< the control that the mouse holds down
  std::optional<RowKey> pressed_;
  QPoint pressedPlace_;  ///< from the pressed row's corner
  QPoint pressedPoint_;  ///< in the viewport
  QRect pressedArea_;    ///< the pressed row's, in the viewport, as it was
  QElapsedTimer sincePress_;
  std::map<RowKey, QPointer<QLineEdit>> fields_;
  std::map<RowKey, QPointer<QWidget>> details_;
  mutable std::vector<int> tops_;  ///< each row's upper edge and the last one's lower; empty while unknown
};

}  // namespace tamboro
