#include "views/samples/BatchRename.h"

#include <algorithm>

namespace tamboro {

std::vector<RenameRow> renameRows(const std::vector<Wave>& waves, std::vector<WaveId> globalIndices) {
  std::ranges::sort(globalIndices);
  std::vector<RenameRow> rows;
  for (const Wave& wave : waves)
    if (std::ranges::binary_search(globalIndices, wave.id())) rows.push_back({wave.id(), wave.name()});
  std::ranges::stable_sort(rows, {}, &RenameRow::oldName);
  return rows;
}

QString RenamePattern::newName(std::size_t position) const {
  return pattern + QLatin1Char(' ') + QString::number(startNumber + static_cast<std::int64_t>(position));
}

}  // namespace tamboro
