#pragma once

#include <QLineEdit>
#include <QPointer>
#include <QTreeView>
#include <map>

#include "views/controls/RowModel.h"

namespace tamboro {

class RowDelegate;

/// A list of records in the program's look. It names rows by key, so that place, selection and edits under way outlive
/// every change of the rows; what it is told to show it never reports back as the user's doing.
class RowList : public QTreeView {
  Q_OBJECT

 public:
  RowList(RowModel* model, RowDelegate* delegate, QWidget* parent = nullptr);

  const RowModel& rows() const { return *rows_; }
  void setRows(std::vector<RowKey> rows, const std::set<RowKey>& changed);
  std::set<RowKey> selectedKeys() const;
  void setSelectedKeys(const std::set<RowKey>& keys);
  void reveal(const RowKey& key);

  /// A field over the row's name. It stays open, wherever the focus goes, until it is closed or its row goes.
  QLineEdit* openEditor(const RowKey& key, const QString& text);
  void closeEditor(const RowKey& key);
  QLineEdit* editor(const RowKey& key) const;
  QList<QLineEdit*> editors() const;

  /// What the row's press does, by whatever means.
  void press(const QModelIndex& index);
  void showMenu(const QModelIndex& index, const QPoint& globalPosition);
  bool isInUse() const;

 Q_SIGNALS:
  /// The user selected other rows.
  void selectionEdited();
  /// A row that can't be selected was pressed.
  void rowPressed(const tamboro::RowKey& key);
  /// The place is that of the first click, from the row's corner: the list may have moved since.
  void rowDoubleClicked(const tamboro::RowKey& key, const QPoint& place);
  void menuRequested(const tamboro::RowKey& key, const QPoint& globalPosition);

 protected:
  void drawRow(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  void drawBranches(QPainter*, const QRect&, const QModelIndex&) const override {}
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void updateEditorGeometries() override;

 private:
  void paintGround(QPainter& painter, const QRect& row, const QModelIndex& index) const;
  bool isSelectable(int row) const;
  void hover(int row);
  void announce(int event, const QModelIndex& index);
  void keepPlace(const std::optional<std::pair<RowKey, int>>& place);
  std::optional<std::pair<RowKey, int>> place() const;

  RowModel* rows_;
  RowDelegate* delegate_;
  bool isFilling_ = false;
  int hoveredRow_ = -1;
  std::optional<RowKey> pressed_;
  QPoint pressedPlace_;
  std::map<RowKey, QPointer<QLineEdit>> editors_;
};

}  // namespace tamboro
