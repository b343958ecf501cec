#include "views/lists/RowModel.h"

#include <algorithm>

namespace tamboro {

RowModel::RowModel(int columns, Values values, QObject* parent)
    : QAbstractTableModel(parent), columns_(columns), values_(std::move(values)) {}

bool RowModel::setRows(std::vector<RowKey> rows, const std::set<RowKey>& changed) {
  if (rows != rows_) {
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
    return true;
  }
  if (changed.empty()) return false;
  // One signal a run of rows: a change of the tags touches thousands.
  const auto isChanged = [&](int row) {
    return row < rowCount() && changed.contains(rows_[static_cast<std::size_t>(row)]);
  };
  for (int row = 0; row < rowCount(); ++row) {
    if (!isChanged(row)) continue;
    const int first = row;
    while (isChanged(row + 1))
      ++row;
    Q_EMIT dataChanged(index(first, 0), index(row, columns_ - 1));
  }
  return false;
}

std::optional<RowKey> RowModel::key(const QModelIndex& index) const {
  return index.isValid() ? std::optional(rows_[static_cast<std::size_t>(index.row())]) : std::nullopt;
}

QModelIndex RowModel::indexOf(const RowKey& key) const {
  const auto place = std::find(rows_.begin(), rows_.end(), key);
  return place == rows_.end() ? QModelIndex() : index(static_cast<int>(place - rows_.begin()), 0);
}

int RowModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int RowModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

Qt::ItemFlags RowModel::flags(const QModelIndex& index) const {
  const auto row = key(index);
  if (!row || row->kind == RowKey::Kind::header) return Qt::ItemNeverHasChildren;
  const QVariant own = values_(*row, index.column(), rowRole::flags);
  if (own.isValid()) return Qt::ItemFlags::fromInt(own.toUInt());
  const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
  return row->kind == RowKey::Kind::record ? flags | Qt::ItemIsSelectable : flags;
}

QVariant RowModel::data(const QModelIndex& index, int role) const {
  const auto row = key(index);
  return row ? values_(*row, index.column(), role) : QVariant();
}

}  // namespace tamboro
