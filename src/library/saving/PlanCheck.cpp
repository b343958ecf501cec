#include "library/saving/PlanCheck.h"

#include <set>

#include "library/CardConflict.h"

namespace tamboro {

void requireUntouched(const FileSystem& card, const SavePlan& plan, const KnownFiles& known, bool replacesChanged) {
  std::set<Path> changed;
  std::set<Path> removed;
  std::string bytes;
  const auto compare = [&](const Path& file) {
    card.read(file, bytes);
    if (!known.holds(file, contentHash(bytes))) changed.insert(file);
  };
  for (const PlannedRemoval& removal : plan.removals) {
    removed.insert(removal.file);
    if (removal.isParameterFile && card.entryStatus(removal.file).kind == FileKind::regular) compare(removal.file);
  }
  for (const PlannedFile& file : plan.files) {
    // The wave lists belong to no one, and what the plan takes away first was looked at above.
    if (file.group == FileGroup::lists || removed.contains(file.path)) continue;
    if (card.entryStatus(file.path).kind != FileKind::regular) continue;  // the writer refuses anything else
    if (!known.isKnown(file.path)) throw CardConflict::unreadFile(file.path);
    if (std::holds_alternative<std::string>(file.content)) compare(file.path);
  }
  if (!changed.empty() && !replacesChanged) throw CardConflict::changedSinceRead(changed.size());
}

}  // namespace tamboro
