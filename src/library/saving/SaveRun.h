#pragma once

#include <optional>

#include "library/contents/OpenCard.h"
#include "library/saving/SaveJob.h"

namespace tamboro {

/// What a save does where files that it would replace have been changed by others since they were read.
enum class ChangedFiles { refuse, replace };

/// Whether a save copies the card's parameters before it changes them, and where to.
struct BackupChoice {
  bool isWanted = false;
  Path destination;
};

/// One save. It is made and applied on the main thread and written on another: the snapshot is all that the writing
/// knows of the card, and what is edited meanwhile stays dirty.
class SaveRun {
 public:
  /// Takes the snapshot; pending samples among it count as begun from here on. A card is open.
  SaveRun(OpenCard& card, const RecordLives& lives, const BackupChoice& backup, ChangedFiles changed);

  const StagedFiles& stagedFiles() const { return snapshot_.stagedAudioFiles; }
  const SaveProgress& progress() const { return progress_; }
  /// The save's job; throws as `saveJob` does.
  void write(FileSystem& files);

  /// What was written is on the card: takes it over and clears the flags of what is still the same. False, and nothing
  /// of it done, where another load has replaced the card that it was for.
  bool apply(OpenCard& card, RecordLives& lives) const;
  /// Where it is all written but some removals: why the first of these failed. They stay pending.
  std::exception_ptr removalError() const { return result_->deletionError; }
  /// The save has failed: what it has put in place is ours, and the next one may replace it.
  void applyFailure(OpenCard& card, RecordLives& lives) const;

 private:
  void applyKnown(OpenCard& card) const;
  void applyDeletions(OpenCard& card) const;

  SaveSnapshot snapshot_;
  std::uint64_t loadCount_;
  std::size_t cardNumber_;  ///< of the card among those whose lives are known
  RecordLives::State lives_;
  SaveProgress progress_;
  SaveAttempt attempt_;
  std::optional<ExportResult> result_;
};

}  // namespace tamboro
