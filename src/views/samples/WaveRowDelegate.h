#pragma once

#include "views/lists/RowDelegate.h"
#include "views/lists/RowModel.h"

namespace tamboro {

/// What a sample's cells tell their delegate; texts stand in Qt::DisplayRole.
namespace waveRole {
constexpr int symbol = rowRole::own;    ///< name of the symbol that fills the cell; empty in an empty slot
constexpr int tint = rowRole::own + 1;  ///< int of WaveTint, the symbol's colour
}  // namespace waveRole

enum class WaveTint { quiet, faint, accent, red, orange };

/// Paints a sample's row, cell by cell, as its columns tell.
class WaveRowDelegate : public RowDelegate {
  Q_OBJECT

 public:
  using RowDelegate::RowDelegate;

  QRect editorRect(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  int columnWidth(int column) const override;

 protected:
  void paintCell(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  int rowHeight(const QModelIndex& index) const override;
};

/// What a sample looks like while it is dragged.
QPixmap wavePixmap(const QString& name, double devicePixelRatio);

}  // namespace tamboro
