#pragma once

#include <QString>
#include <cstdint>
#include <vector>

#include "model/Wave.h"

namespace tamboro {

/// One sample of a batch rename under its present name.
struct RenameRow {
  WaveId id;
  std::string oldName;

  friend bool operator==(const RenameRow&, const RenameRow&) = default;
};

/// The samples of these ids in the order of their names, equal names in that of their ids; ids that no longer exist are
/// left out. `waves` ascends by id.
std::vector<RenameRow> renameRows(const std::vector<Wave>& waves, std::vector<WaveId> globalIndices);

/// A common name with a running number. It is not fitted to the room of a stored name.
struct RenamePattern {
  QString pattern = QStringLiteral("Name");
  std::int64_t startNumber = 1;

  /// Blanks alone name nothing.
  bool isUsable() const { return !pattern.trimmed().isEmpty(); }
  QString newName(std::size_t position) const;
};

}  // namespace tamboro
