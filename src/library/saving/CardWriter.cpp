#include "library/saving/CardWriter.h"

#include <algorithm>
#include <chrono>

#include "library/CardPaths.h"
#include "library/FileCopy.h"
#include "library/saving/SaveBatches.h"

// On FAT a name, the size behind it and the chain of clusters lie in three places of the disk, and what reaches the
// device first is not ours to say: only a flush parts what stands before it from what stands behind it. Four rules
// follow; docs/saving.md tells what was found without them. New content is on the device before a name leads to it. A
// cluster that a name still leads to on the device is not given out again: a file that loses its name is held open
// until the loss is on the device. What is to be seen before something else has a barrier between them. And between a
// rename and the write of the volume behind it there is nothing that takes time: a new name leads to no content until
// then.
namespace tamboro {
namespace {

constexpr std::size_t removalsHeld = 200;
constexpr std::chrono::milliseconds patience{1};
constexpr int maxNameTries = 10000;
constexpr std::uint64_t largeFile = std::uint64_t{1} << 20U;
const std::string temporaryPrefix(cardpaths::temporaryPrefix);

using Clock = std::chrono::steady_clock;
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

// The removed file, still open; nothing where none is there. A link that was read as a record stays one at the next
// load, and is left to the user as a save leaves it.
std::unique_ptr<OpenFile> removeHeld(FileSystem& card, const Path& path, bool isParameterFile) {
  try {
    const FileKind kind = card.entryStatus(path).kind;
    if (isParameterFile && kind == FileKind::other) {
      throw FileError(std::make_error_code(std::errc::operation_not_permitted), path);
    }
    if (kind != FileKind::regular) return nullptr;
    std::unique_ptr<OpenFile> file = card.open(path);
    card.removeFile(path);
    return file;
  } catch (const FileError& error) {
    if (error.code() == std::errc::filename_too_long) return nullptr;  // nothing can stand there
    throw;
  }
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
      if (std::unique_ptr<OpenFile> file = removeHeld(card, path, isParameterFile)) {
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

// Carries out the batches: all but the removals.
class BatchWriter {
 public:
  /// `root` is the card's root, held open.
  BatchWriter(FileSystem& card, const FileSystem& files, OpenFile& root, SaveProgress& progress)
      : card_(card), files_(files), root_(root), progress_(progress) {}

  void run(const std::vector<SaveBatch>& batches) {
    try {
      makeTemporaryFolder();
      for (const SaveBatch& batch : batches)
        write(batch);
      removeTemporaryFolder();
    } catch (const FileError& error) {
      tidy();
      throw FileError(error.code(), known(error.path()));
    } catch (...) {
      tidy();
      throw;
    }
  }

 private:
  Path known(const Path& failed) const;
  // Plain numbers: on FAT they need no long-name entries, and nothing takes them for a file of the card.
  Path temporary(std::size_t number) const { return temporaryPath_ / std::to_string(number); }
  Path temporaryFolder(std::size_t index) const { return temporary(index); }
  Path temporaryFile(std::size_t index) const { return temporary(batch_->newFolders.size() + index); }

  void write(const SaveBatch& batch);
  void barrier();
  void writeBackInTime();
  void makeTemporaryFolder();
  void growFolders();
  void grow(const Path& folder, std::size_t entries, const auto& afterEach);
  void makeNewFolders();
  void fillFiles();
  void fill(OpenFile& file, const PlannedFile& planned);
  void holdReplaced();
  void putInPlace();
  void closeFiles();
  void removeTemporaryFolder();
  void tidy();

  FileSystem& card_;
  const FileSystem& files_;
  OpenFile& root_;
  SaveProgress& progress_;
  Clock::time_point nothingWaited_;  ///< for the device

  Path temporaryPath_;  ///< empty until the folder is made
  std::unique_ptr<OpenFile> temporaryFolder_;

  // The batch being written.
  const SaveBatch* batch_ = nullptr;
  std::size_t foldersMade_ = 0;  ///< in the temporary folder; one whose making failed counts
  std::size_t foldersMoved_ = 0;
  std::size_t filesMoved_ = 0;
  Files old_;  ///< replaced files
  Files new_;  ///< created files, in the batch's order
};

// What the user knows of a place where a step failed: temporary names say nothing to him.
Path BatchWriter::known(const Path& failed) const {
  if (batch_ != nullptr && !temporaryPath_.empty() && failed.parent_path() == temporaryPath_) {
    for (std::size_t i = 0; i < batch_->newFolders.size(); ++i)
      if (failed == temporaryFolder(i)) return batch_->newFolders[i];
    for (std::size_t i = 0; i < batch_->files.size(); ++i)
      if (failed == temporaryFile(i)) return batch_->files[i].path;
  }
  Path path = failed;
  while (std::ranges::any_of(path, [](const Path& name) { return cardpaths::isTemporary(name.native()); }))
    path = path.parent_path();
  return path.empty() || path == "." ? card_.resolved({}) : path;
}

void BatchWriter::write(const SaveBatch& batch) {
  batch_ = &batch;
  foldersMade_ = foldersMoved_ = filesMoved_ = 0;
  growFolders();
  makeNewFolders();
  fillFiles();
  holdReplaced();
  putInPlace();
  closeFiles();
}

// What was done before it is on the device before anything that is done behind it. Writing the volume brings each
// file's size and first cluster into its entry before the entry goes out, but it doesn't flush; a sync flushes, but of
// all that waits it writes the names of one folder and the allocation table only. With nothing left to write it is but
// the flush.
void BatchWriter::barrier() {
  root_.writeBackVolume();
  root_.sync();
  nothingWaited_ = Clock::now();
}

// A system that writes by itself meanwhile does so in another order, and a renamed file's entry is without its content
// until the file is written, too. No mount does so at once; so what waits never waits for long.
void BatchWriter::writeBackInTime() {
  if (Clock::now() - nothingWaited_ < patience) return;
  root_.writeBackVolume();
  nothingWaited_ = Clock::now();
}

// Step 2. A folder that an earlier cut left behind is never entered and never deleted: its entries can share clusters
// with files that are in place by now.
void BatchWriter::makeTemporaryFolder() {
  for (int number = 1; temporaryPath_.empty(); ++number) {
    const Path path = temporaryPrefix + std::to_string(number);
    if (isFree(number, [&] { card_.makeFolder(path); })) temporaryPath_ = path;
  }
  temporaryFolder_ = card_.open(temporaryPath_);
}

// Step 3, for folders that are in place. A folder that outgrows its clusters shows what the new one held before, as its
// entries, while the chain is on the device and the cluster's content isn't. So it grows now, by names that are gone
// again before anything is written. A sync behind each cluster writes its content, then its place in the allocation
// table, then what leads there, as long as nothing of the table waited before and keeps its place in that order. And as
// little else waits, the system has no reason to write by itself in between.
void BatchWriter::growFolders() {
  bool isFirst = true;
  for (const auto& [folder, entries] : batch_->entries) {
    if (std::ranges::find(batch_->newFolders, folder) != batch_->newFolders.end()) continue;
    if (isFirst) barrier();
    isFirst = false;
    const std::unique_ptr<OpenFile> held = card_.open(folder);
    std::uint64_t size = held->size();
    grow(folder, entries, [&] {
      if (held->size() == size) return writeBackInTime();
      held->sync();
      size = held->size();
    });
  }
}

// Makes room for so many entries; `afterEach` is called behind each placeholder.
void BatchWriter::grow(const Path& folder, std::size_t entries, const auto& afterEach) {
  std::vector<Path> placeholders;
  Files held;  // some mounts write what is pending when a file is closed, and the chain first
  const auto remove = [&](const Path& placeholder) { card_.removeFile(placeholder); };
  try {
    for (int number = 1; placeholders.size() < Placeholders::count(entries); ++number) {
      std::string name = temporaryPrefix + std::to_string(number) + "-";
      name.resize(Placeholders::nameSize, '-');
      if (!isFree(number, [&] { held.push_back(card_.create(folder / name)); })) continue;
      placeholders.push_back(folder / name);
      afterEach();
    }
    std::ranges::for_each(placeholders, remove);
  } catch (...) {
    for (const Path& placeholder : placeholders)
      quietly([&] { remove(placeholder); });
    quietly([&] { syncFolder(card_, folder); });
    throw;
  }
}

// Step 4. A folder's first cluster holds its own "." and ".."; made in its final place, the name could reach the device
// before that cluster does. Nothing sees it grow here, so it gets room for all that is ever likely to come.
void BatchWriter::makeNewFolders() {
  for (std::size_t i = 0; i < batch_->newFolders.size(); ++i) {
    ++foldersMade_;
    card_.makeFolder(temporaryFolder(i));
    grow(temporaryFolder(i), newFolderEntries, [] {});
  }
}

// Step 5. Behind its barrier all content is on the device and nothing of it visible. Small files are left to it, so
// that the system joins neighbours into few writes.
void BatchWriter::fillFiles() {
  for (std::size_t i = 0; i < batch_->files.size(); ++i) {
    new_.push_back(card_.create(temporaryFile(i)));
    fill(*new_.back(), batch_->files[i]);
    ++progress_.done;
  }
  barrier();
}

void BatchWriter::fill(OpenFile& file, const PlannedFile& planned) {
  if (const auto* bytes = std::get_if<std::string>(&planned.content)) return file.write(*bytes);
  const Path& source = std::get<Path>(planned.content);
  const bool isLarge = sourceStatus(files_, source).size >= largeFile;
  file.append(*files_.open(source));
  if (isLarge) file.startWriteback();
}

// Step 6. Else a replaced file's clusters would be free while its name still leads to them.
void BatchWriter::holdReplaced() {
  for (const PlannedFile& file : batch_->files) {
    if (targetStatus(card_, file.path).kind == FileKind::regular) old_.push_back(card_.open(file.path));
  }
}

// Step 7, one group of files after the other. New folders go with the first: they are empty or show some of it.
void BatchWriter::putInPlace() {
  for (; foldersMoved_ < batch_->newFolders.size(); ++foldersMoved_)
    card_.rename(temporaryFolder(foldersMoved_), batch_->newFolders[foldersMoved_]);
  if (foldersMoved_ > 0) root_.writeBackVolume();
  nothingWaited_ = Clock::now();
  const auto& files = batch_->files;
  for (; filesMoved_ < files.size(); ++filesMoved_) {
    if (filesMoved_ > 0 && files[filesMoved_].group != files[filesMoved_ - 1].group) barrier();
    ++progress_.placed;
    card_.rename(temporaryFile(filesMoved_), files[filesMoved_].path);
    writeBackInTime();
  }
  barrier();
}

// Step 8. Only now, and the new ones first: some mounts write a file's pending names when it is closed, and what was
// replaced must not become free before that.
void BatchWriter::closeFiles() {
  new_.clear();
  old_.clear();
}

// Step 9. The folder is held open until the root has forgotten it: its clusters, too, are not given out before that.
void BatchWriter::removeTemporaryFolder() {
  card_.removeFolder(temporaryPath_);
  temporaryPath_.clear();
  root_.sync();
  temporaryFolder_.reset();
}

// After a failure, as far as the card still answers. Files that are in place stay, new or old, and are on the device
// before what they replaced becomes free; new empty folders stay, since the next save needs them.
void BatchWriter::tidy() {
  if (temporaryPath_.empty()) return;
  if (foldersMoved_ + filesMoved_ > 0) quietly([&] { barrier(); });
  for (std::size_t i = foldersMoved_; i < foldersMade_; ++i)
    quietly([&] { card_.removeFolder(temporaryFolder(i)); });
  for (std::size_t i = filesMoved_; i < new_.size(); ++i)
    quietly([&] { card_.removeFile(temporaryFile(i)); });
  quietly([&] { card_.removeFolder(temporaryPath_); });
  quietly([&] { root_.sync(); });
  closeFiles();
}

}  // namespace

FailedRemovals writeToCard(FileSystem& card, const FileSystem& files, const SavePlan& plan, SaveProgress* progress) {
  const std::vector<SaveBatch> batches = cutIntoBatches(card, files, plan);
  const std::unique_ptr<OpenFile> root = card.open(".");
  FailedRemovals failed = carryOutRemovals(card, plan.removals);
  if (batches.empty()) return failed;
  SaveProgress unwatched;
  SaveProgress& told = progress != nullptr ? *progress : unwatched;
  told.total = plan.files.size();
  BatchWriter(card, files, *root, told).run(batches);
  return failed;
}

}  // namespace tamboro
