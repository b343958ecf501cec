#include "library/CardWriter.h"

#include <algorithm>

#include "library/CardPaths.h"
#include "library/FileCopy.h"
#include "library/SaveBatches.h"

// On FAT a name, the size behind it and the chain of clusters lie in three places of the disk, and what reaches the
// device first is not ours to say: only an fsync parts what stands before it from what stands behind it. Three rules
// follow. New content is on the device before a name leads to it. A cluster that a name still leads to on the device
// is not given out again: a file that loses its name is held open until the loss is on the device. A name that is to
// be seen before another one is synced before it.
namespace tamboro {
namespace {

constexpr std::size_t removalsHeld = 200;
constexpr int maxNameTries = 10000;
const std::string temporaryPrefix = ".tamboro-";

using Files = std::vector<std::unique_ptr<OpenFile>>;

void quietly(const auto& step) {
  try {
    step();
  } catch (const FileError&) {
    // Tidying up behind a failure: that failure is the one to report.
  }
}

// Whether what `make` makes is new: its numbered name may be taken by what an earlier cut left.
bool isFree(int number, const auto& make) {
  try {
    make();
    return true;
  } catch (const FileError& error) {
    if (error.code() != std::errc::file_exists || number == maxNameTries) throw;
    return false;
  }
}

void syncFolder(const FileSystem& card, const Path& folder) {
  card.open(folder)->sync();
}

void addOnce(std::vector<Path>& paths, const Path& path) {
  if (std::ranges::find(paths, path) == paths.end()) paths.push_back(path);
}

// The removed file, still open; nothing where none is there.
std::unique_ptr<OpenFile> removeHeld(FileSystem& card, const Path& path) {
  if (card.entryStatus(path).kind != FileKind::regular) return nullptr;
  std::unique_ptr<OpenFile> file = card.open(path);
  card.removeFile(path);
  return file;
}

// Step 1. A plain removal would free clusters that the next write fills while the old name still stands on the device:
// after a cut the deleted file would be back with foreign content. A folder is synced before the next one is changed,
// so that parameters go before the audio that they name.
FailedRemovals carryOutRemovals(FileSystem& card, const std::vector<PlannedRemoval>& removals) {
  FailedRemovals failed;
  Files held;
  Path changed;
  const auto syncChanged = [&] {
    if (!changed.empty()) syncFolder(card, changed);
    changed.clear();
  };
  for (const auto& [path, deletion, isParameterFile] : removals) {
    if (failed.deletions.contains(deletion)) continue;  // a sample goes whole or stays whole
    if (changed != folderOf(path)) syncChanged();
    if (held.size() == removalsHeld) {
      syncChanged();
      held.clear();
    }
    try {
      if (std::unique_ptr<OpenFile> file = removeHeld(card, path)) {
        held.push_back(std::move(file));
        changed = folderOf(path);
      }
    } catch (const FileError&) {
      failed.deletions.insert(deletion);
      if (!failed.error) failed.error = std::current_exception();
    }
  }
  syncChanged();
  return failed;
}

// Carries out one batch: steps 2 to 9.
class BatchWriter {
 public:
  /// `root` and `unchanged` are held open: the card's root and a folder of it in which nothing is pending.
  BatchWriter(FileSystem& card, const FileSystem& files, OpenFile& root, OpenFile& unchanged, const SaveBatch& batch)
      : card_(card), files_(files), root_(root), unchanged_(unchanged), batch_(batch) {}

  void run() {
    try {
      makeTemporaryFolder();
      growFolders();
      makeNewFolders();
      createFiles();
      fillFiles();
      putInPlace();
      syncTargetFolders();
      closeFiles();
      removeTemporaryFolder();
    } catch (...) {
      tidy();
      throw;
    }
  }

 private:
  static bool isCopy(const PlannedFile& file) { return std::holds_alternative<Path>(file.content); }
  // Plain numbers: on FAT they need no long-name entries, and nothing takes them for a file of the card.
  Path temporary(std::size_t number) const { return temporaryPath_ / std::to_string(number); }
  Path temporaryFile(std::size_t index) const { return temporary(batch_.newFolders.size() + index); }

  void makeTemporaryFolder();
  void growFolders();
  void grow(const Path& place, const Path& folder);
  void makeNewFolders();
  void makeSiblings(std::size_t first, std::size_t end);
  void createFiles();
  void fillFiles();
  void fill(OpenFile& file, const PlannedFile& planned);
  void putInPlace();
  void syncAudioFolders();
  void syncTargetFolders();
  void closeFiles();
  void removeTemporaryFolder();
  void tidy();

  FileSystem& card_;
  const FileSystem& files_;
  OpenFile& root_;
  OpenFile& unchanged_;
  const SaveBatch& batch_;

  Path temporaryPath_;  ///< empty until the folder is made
  std::unique_ptr<OpenFile> temporaryFolder_;
  std::size_t foldersMade_ = 0;  ///< in the temporary folder; one whose making failed counts
  std::size_t foldersMoved_ = 0;
  std::size_t filesMoved_ = 0;
  std::vector<Path> audioFolders_;   ///< got a copied file's name and aren't synced
  std::vector<Path> targetFolders_;  ///< got any file's name
  Files old_;                        ///< replaced files
  Files new_;                        ///< created files, in the batch's order
};

// Step 2. A folder that an earlier cut left behind is never entered and never deleted: its entries can share clusters
// with files that are in place by now. The unchanged folder goes first: any fsync on FAT writes the allocation table,
// and the new folder's clusters must be known there before the root's entry that leads to them.
void BatchWriter::makeTemporaryFolder() {
  for (int number = 1; temporaryPath_.empty(); ++number) {
    const Path path = temporaryPrefix + std::to_string(number);
    if (isFree(number, [&] { card_.makeFolder(path); })) temporaryPath_ = path;
  }
  temporaryFolder_ = card_.open(temporaryPath_);
  unchanged_.sync();
  root_.sync();
}

// Before step 3. A folder that outgrows its clusters while names come into it has the new cluster in its chain with the
// first sync of a file, and shows what that cluster held before as its entries until it is synced itself. So it grows
// now, by names that are gone again before anything is written, and at its end: nothing that it holds is touched. (A
// device that brings the chain before the cluster can still show such entries behind a cut in these few writes.)
void BatchWriter::growFolders() {
  for (const auto& [folder, entries] : batch_.entries) {
    if (std::ranges::find(batch_.newFolders, folder) == batch_.newFolders.end()) grow(folder, folder);
  }
}

// Makes the folder at `place` large enough for what will come into `folder`.
void BatchWriter::grow(const Path& place, const Path& folder) {
  const auto found = batch_.entries.find(folder);
  if (found == batch_.entries.end()) return;
  const std::size_t count = Placeholders::count(found->second);
  std::vector<Path> placeholders;
  Files held;  // some mounts write what is pending when a file is closed, and the chain first
  try {
    for (int number = 1; placeholders.size() < count; ++number) {
      std::string name = temporaryPrefix + std::to_string(number) + "-";
      name.resize(Placeholders::nameSize, '-');
      if (isFree(number, [&] { held.push_back(card_.create(place / name)); })) placeholders.push_back(place / name);
    }
    syncFolder(card_, place);
    for (const Path& placeholder : placeholders)
      card_.removeFile(placeholder);
    syncFolder(card_, place);
  } catch (...) {
    for (const Path& placeholder : placeholders)
      quietly([&] { card_.removeFile(placeholder); });
    quietly([&] { syncFolder(card_, place); });
    throw;
  }
}

// Step 3, one level of the tree after the other, so that a folder is on the device before it gets folders of its own.
void BatchWriter::makeNewFolders() {
  const auto depth = [&](std::size_t i) {
    return std::distance(batch_.newFolders[i].begin(), batch_.newFolders[i].end());
  };
  for (std::size_t first = 0; first < batch_.newFolders.size();) {
    std::size_t end = first + 1;
    while (end < batch_.newFolders.size() && depth(end) == depth(first))
      ++end;
    makeSiblings(first, end);
    first = end;
  }
}

// A folder's first cluster holds its own "." and ".."; made in its final place, the name could reach the device before
// that cluster does. The move rewrites "..", hence the sync of the moved folders.
void BatchWriter::makeSiblings(std::size_t first, std::size_t end) {
  Files made;
  for (std::size_t i = first; i < end; ++i) {
    ++foldersMade_;
    card_.makeFolder(temporary(i));
    made.push_back(card_.open(temporary(i)));
    grow(temporary(i), batch_.newFolders[i]);
  }
  temporaryFolder_->sync();
  std::vector<Path> parents;
  for (std::size_t i = first; i < end; ++i) {
    card_.rename(temporary(i), batch_.newFolders[i]);
    ++foldersMoved_;
    addOnce(parents, folderOf(batch_.newFolders[i]));
  }
  temporaryFolder_->sync();
  for (const auto& folder : made)
    folder->sync();
  for (const Path& parent : parents)
    syncFolder(card_, parent);
}

// Step 4. The temporary names are on the device while they lead to nothing yet, so no later write touches the folder
// that holds them.
void BatchWriter::createFiles() {
  for (std::size_t i = 0; i < batch_.files.size(); ++i)
    new_.push_back(card_.create(temporaryFile(i)));
  temporaryFolder_->sync();
}

// Step 5. The pages of all files go out side by side and are then awaited; one sync of the unchanged root writes the
// allocation table and flushes the device. Now all content is on the device and nothing of it visible.
void BatchWriter::fillFiles() {
  for (std::size_t i = 0; i < batch_.files.size(); ++i) {
    fill(*new_[i], batch_.files[i]);
    new_[i]->startWriteback();
  }
  for (const auto& file : new_)
    file->startWriteback();
  root_.sync();
}

void BatchWriter::fill(OpenFile& file, const PlannedFile& planned) {
  if (!isCopy(planned)) return file.write(std::get<std::string>(planned.content));
  const Path& source = std::get<Path>(planned.content);
  sourceStatus(files_, source);
  file.append(*files_.open(source));
}

// Step 6. The old file is held open, else its clusters would be free while its name still leads to them. The sync of
// the new file brings its size and first cluster under the new name, in the order in which the names must be seen.
// Behind audio the folder is synced, too, before the parameters that name it: its entry is new there.
void BatchWriter::putInPlace() {
  for (std::size_t i = 0; i < batch_.files.size(); ++i) {
    const PlannedFile& file = batch_.files[i];
    if (!isCopy(file)) syncAudioFolders();
    if (targetStatus(card_, file.path).kind == FileKind::regular) old_.push_back(card_.open(file.path));
    card_.rename(temporaryFile(i), file.path);
    ++filesMoved_;
    addOnce(targetFolders_, folderOf(file.path));
    if (isCopy(file)) addOnce(audioFolders_, folderOf(file.path));
    new_[i]->sync();
  }
}

void BatchWriter::syncAudioFolders() {
  for (const Path& folder : audioFolders_)
    syncFolder(card_, folder);
  audioFolders_.clear();
}

// Step 7.
void BatchWriter::syncTargetFolders() {
  for (const Path& folder : targetFolders_)
    syncFolder(card_, folder);
}

// Step 8. Only now, and the new ones first: some mounts write a file's pending names when it is closed, and what was
// replaced must not become free before that.
void BatchWriter::closeFiles() {
  new_.clear();
  old_.clear();
}

// Step 9. The folder is held open until the root has forgotten it, for the reason of step 1.
void BatchWriter::removeTemporaryFolder() {
  card_.removeFolder(temporaryPath_);
  temporaryPath_.clear();
  root_.sync();
  temporaryFolder_.reset();
}

// After a failure, as far as the card still answers. Files that are in place stay, new or old, and the folders they
// are in are synced before what they replaced becomes free; new empty folders stay, since the next save needs them.
void BatchWriter::tidy() {
  for (const Path& folder : targetFolders_)
    quietly([&] { syncFolder(card_, folder); });
  if (temporaryPath_.empty()) return;
  for (std::size_t i = foldersMoved_; i < foldersMade_; ++i)
    quietly([&] { card_.removeFolder(temporary(i)); });
  for (std::size_t i = filesMoved_; i < new_.size(); ++i)
    quietly([&] { card_.removeFile(temporaryFile(i)); });
  quietly([&] { card_.removeFolder(temporaryPath_); });
  quietly([&] { root_.sync(); });
  closeFiles();
}

}  // namespace

FailedRemovals writeToCard(FileSystem& card, const FileSystem& files, const SavePlan& plan) {
  const std::vector<SaveBatch> batches = cutIntoBatches(card, files, plan);
  const std::unique_ptr<OpenFile> root = card.open(".");
  const std::unique_ptr<OpenFile> unchanged = card.open(cardpaths::systemFolder());
  FailedRemovals failed = carryOutRemovals(card, plan.removals);
  for (const SaveBatch& batch : batches)
    BatchWriter(card, files, *root, *unchanged, batch).run();
  return failed;
}

}  // namespace tamboro
