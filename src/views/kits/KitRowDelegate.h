#pragma once

#include "views/lists/RowDelegate.h"
#include "views/lists/RowModel.h"

namespace tamboro {

/// What a kit's row tells its delegate.
namespace kitRole {
constexpr int slot = rowRole::own;  ///< as shown
constexpr int name = rowRole::own + 1;
constexpr int subtitle = rowRole::own + 2;
constexpr int isDirty = rowRole::own + 3;
}  // namespace kitRole

/// Paints a kit's row: the slot, the name over the subtitle, the dot of unsaved changes.
class KitRowDelegate : public RowDelegate {
  Q_OBJECT

 public:
  using RowDelegate::RowDelegate;

  QRect editorRect(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  /// The line of a row, from its corner, that a double click renames.
  QRect nameLine(const QSize& row, Qt::LayoutDirection direction, const QModelIndex& index) const;

 protected:
  void paintCell(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  int rowHeight(const QModelIndex& index) const override;
};

}  // namespace tamboro
