#include "library/SaveJob.h"

#include "library/Backup.h"
#include "library/CardWriter.h"
#include "library/SavePlan.h"

namespace tamboro {
namespace {

void backUpQuietly(const SaveSnapshot& snapshot, const FileSystem& card, FileSystem& files) {
  try {
    backup(card, files, snapshot.root, snapshot.backupDestination);
  } catch (const std::exception&) {
    // A card must stay savable without room or rights for its backup.
  }
}

}  // namespace

void requireSameVolume(const FileSystem& files, const Path& root, const VolumeIdentity& volume) {
  if (files.volumeIdentity(root) == volume) return;
  throw FileError(std::make_error_code(std::errc::no_such_device), root);
}

ExportResult saveJob(const SaveSnapshot& snapshot, FileSystem& files, SaveProgress* progress) {
  // A save can start by itself long after the card was pulled and another one mounted in its place.
  requireSameVolume(files, snapshot.root, snapshot.volume);
  // From here on the card is held: asked again, since it can have changed between the question and the hold.
  const std::unique_ptr<FileSystem> card = files.rooted(snapshot.root);
  requireSameVolume(*card, ".", snapshot.volume);

  if (snapshot.backupBeforeSave) backUpQuietly(snapshot, *card, files);
  ExportResult result;
  const SavePlan plan = makeSavePlan(snapshot, *card, result);
  writeToCard(*card, files, plan, progress);
  return result;
}

}  // namespace tamboro
