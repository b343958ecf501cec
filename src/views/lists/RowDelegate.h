#pragma once

#include <QStyledItemDelegate>

namespace tamboro {

/// Paints the rows of a RowList: section headers here, cells in the list's own delegate. The ground of a row is painted
/// by the list, once for all its cells.
class RowDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  /// What a record's cells share: the row without the column's inset and inner padding.
  static QRect contentRect(const QRect& row);

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  /// Where a field for the row's name stands.
  virtual QRect editorRect(const QStyleOptionViewItem& option, const QModelIndex& index) const = 0;
  /// Device-independent pixels; 0 for the one column that takes what the others leave.
  virtual int columnWidth(int) const { return 0; }

 protected:
  virtual void paintCell(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const = 0;
  /// The same for all rows of a kind.
  virtual int rowHeight(const QModelIndex& index) const = 0;
};

/// Text in one line, cut at its end with the painter's own font, at the leading edge of the rectangle.
void paintRowText(QPainter& painter, Qt::LayoutDirection direction, const QRect& rect, const QString& text);

}  // namespace tamboro
