#pragma once

#include <QAbstractTableModel>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <vector>

namespace tamboro {

/// Which row of a list: a record's key in one of the list's sections. Under a record's row there can be one with its
/// details; a section's header has no record. Rows are named so across every change of the list.
struct RowKey {
  enum class Kind { header, record, detail };
  int section = 0;
  std::int64_t record = 0;
  Kind kind = Kind::record;
  auto operator<=>(const RowKey&) const = default;
};

/// What a cell tells besides Qt's own roles. A list's own roles start at `own`.
namespace rowRole {
constexpr int flags = Qt::UserRole + 1;       ///< unsigned int of Qt::ItemFlags; invalid: those of the row's kind
constexpr int isEcho = Qt::UserRole + 2;      ///< another row of the list stands for this record and is selected
constexpr int accessible = Qt::UserRole + 3;  ///< int of QAccessible::Role; invalid: a list item
constexpr int isControl = Qt::UserRole + 4;   ///< the cell is pressed for itself, not for its row
constexpr int isEmpty = Qt::UserRole + 5;     ///< a slot with nothing in it, which tools that read the screen pass over
constexpr int own = Qt::UserRole + 16;
}  // namespace rowRole

/// An index list over records that someone else holds: the rows' order lives here, their values are asked for.
class RowModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  using Values = std::function<QVariant(const RowKey& row, int column, int role)>;

  RowModel(int columns, Values values, QObject* parent = nullptr);

  /// Another set or order of rows resets the model; otherwise the changed rows are announced. True after a reset.
  bool setRows(std::vector<RowKey> rows, const std::set<RowKey>& changed);
  const std::vector<RowKey>& rows() const { return rows_; }
  std::optional<RowKey> key(const QModelIndex& index) const;
  QModelIndex indexOf(const RowKey& key) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  int columns_;
  Values values_;
  std::vector<RowKey> rows_;
};

}  // namespace tamboro
