#include "library/saving/SaveJob.h"

#include <algorithm>

#include "library/contents/CardCheck.h"
#include "library/saving/Backup.h"
#include "library/saving/CardWriter.h"
#include "library/saving/PlanCheck.h"
#include "library/saving/SavePlan.h"

namespace tamboro {
namespace {

void backUpQuietly(const SaveSnapshot& snapshot, const FileSystem& card, FileSystem& files) {
  try {
    backup(card, files, snapshot.root, snapshot.backupDestination);
  } catch (const std::exception&) {
    // A card must stay savable without room or rights for its backup.
  }
}

SaveAttempt attemptOf(const SavePlan& plan) {
  SaveAttempt attempt;
  for (const PlannedFile& file : plan.files) {  // in its order, the lists last
    const auto* bytes = std::get_if<std::string>(&file.content);
    if (file.group != FileGroup::lists)
      attempt.written.emplace_back(file.path, bytes ? contentHash(*bytes) : KnownFiles::anyContent);
  }
  for (const PlannedRemoval& removal : plan.removals)
    attempt.removed.emplace_back(removal.file, removal.deletion);
  return attempt;
}

}  // namespace

ExportResult saveJob(const SaveSnapshot& snapshot, FileSystem& files, SaveAttempt& attempt, SaveProgress* progress) {
  // A save can start by itself long after the card was pulled and another one mounted in its place.
  requireSameCard(files, snapshot.root, snapshot.serial, snapshot.known);
  // From here on the card is held: asked again, since it can have changed between the question and the hold.
  const std::unique_ptr<FileSystem> card = files.rooted(snapshot.root);
  requireSameCard(*card, ".", snapshot.serial, snapshot.known);
  requireFoldersInside(*card);
  ExportResult result;
  const SavePlan plan = makeSavePlan(snapshot, *card, result);
  requireUntouched(*card, plan, snapshot.known, snapshot.replacesChanged);

  if (snapshot.backupBeforeSave) backUpQuietly(snapshot, *card, files);
  attempt = attemptOf(plan);
  SaveProgress unwatched;
  SaveProgress& told = progress != nullptr ? *progress : unwatched;
  FailedRemovals failed;
  try {
    failed = writeToCard(*card, files, plan, &told);
  } catch (...) {
    // What wasn't come to isn't ours: by the next save another program can have put a file of its own there.
    attempt.written.resize(std::min<std::size_t>(attempt.written.size(), told.placed));
    throw;
  }
  result.failedDeletions.merge(failed.deletions);
  if (!result.deletionError) result.deletionError = failed.error;
  return result;
}

}  // namespace tamboro
