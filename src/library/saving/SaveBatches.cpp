#include "library/saving/SaveBatches.h"

#include <algorithm>
#include <map>
#include <set>

#include "library/FileCopy.h"

namespace tamboro {
namespace {

// A file takes a descriptor, and one more where it replaces another; a process may have no more than 1024.
constexpr std::size_t descriptorsPerBatch = 400;
constexpr std::size_t foldersPerBatch = 100;

constexpr std::uint64_t folderEntrySize = 32;
constexpr std::uint64_t temporaryFolderSize = (descriptorsPerBatch + foldersPerBatch + 2) * folderEntrySize;

[[noreturn]] void failForRoom(const Path& path) {
  throw FileError(std::make_error_code(std::errc::no_space_on_device), path);
}

// Follows the free room of the card through a save, in clusters.
class Room {
 public:
  explicit Room(const VolumeSpace& space)
      : clusterSize_(std::max<std::uint64_t>(space.clusterSize, 1)), free_(space.available / clusterSize_) {}

  std::uint64_t clusters(std::uint64_t bytes) const { return bytes / clusterSize_ + (bytes % clusterSize_ != 0); }

  // What a new name in the folder takes beyond the clusters that earlier names have been given.
  std::uint64_t clustersForName(const Path& path) {
    NewEntries& entries = newEntries_[folderOf(path)];
    const std::uint64_t before = entries.roomMade == 0 ? 0 : clustersForEntries(entries.roomMade);
    entries.used += folderEntries(path.filename().native().size());
    entries.roomMade = std::max(entries.roomMade, entries.used);
    return clustersForEntries(entries.roomMade) - before;
  }

  // What a new folder takes; names that come into it find that room there.
  std::uint64_t clustersForFolder(const Path& folder) {
    newEntries_[folder].roomMade = newFolderEntries;
    return clustersForEntries(newFolderEntries);
  }

  bool holds(std::uint64_t needed) const { return needed <= free_; }
  void take(std::uint64_t needed) { free_ -= needed; }
  void giveBack(std::uint64_t freed) { free_ += freed; }

 private:
  std::uint64_t clustersForEntries(std::size_t entries) const {
    return clusters(folderEntrySize * Placeholders::entries * Placeholders::count(entries));
  }

  struct NewEntries {
    std::size_t used = 0;
    std::size_t roomMade = 0;
  };

  std::uint64_t clusterSize_;
  std::uint64_t free_;
  std::map<Path, NewEntries> newEntries_;
};

class Cutter {
 public:
  Cutter(const FileSystem& card, const FileSystem& files, const SavePlan& plan)
      : card_(card), files_(files), plan_(plan), room_(card.space(".")) {
    for (const PlannedRemoval& removal : plan.removals)
      countRemoval(removal.file);
    startBatch();
  }

  std::vector<SaveBatch> cut() {
    for (const Path& folder : plan_.folders) {
      if (isMissing(folder)) addFolder(folder);
    }
    for (const PlannedFile& file : plan_.files)
      addFile(file);
    closeBatch();
    return std::move(batches_);
  }

 private:
  void countRemoval(const Path& path) {
    try {
      const FileStatus status = card_.entryStatus(path);
      if (status.kind == FileKind::regular && removed_.insert(path).second) room_.giveBack(room_.clusters(status.size));
    } catch (const FileError&) {
      // It will be passed over and frees nothing.
    }
  }

  bool isMissing(const Path& folder) const {
    const FileKind kind = card_.status(folder).kind;
    if (kind == FileKind::folder) return false;
    if (kind == FileKind::none) return true;
    throw FileError(std::make_error_code(std::errc::not_a_directory), folder);
  }

  void startBatch() {
    newFolders_.clear();
    entries_.clear();
    fileCount_ = descriptors_ = 0;
    freed_ = needed_ = room_.clusters(temporaryFolderSize);
  }

  void closeBatch() {
    if (newFolders_.empty() && fileCount_ == 0) return;
    batches_.push_back({newFolders_, std::span(plan_.files).subspan(nextFile_, fileCount_), entries_});
    nextFile_ += fileCount_;
    room_.take(needed_);
    room_.giveBack(freed_);
    startBatch();
  }

  void addFolder(const Path& folder) {
    if (newFolders_.size() == foldersPerBatch) closeBatch();
    needed_ += room_.clustersForName(folder) + room_.clustersForFolder(folder);
    if (!room_.holds(needed_)) failForRoom(folder);
    newFolders_.push_back(folder);
    addName(folder);
  }

  void addFile(const PlannedFile& file) {
    const FileStatus old = targetStatus(card_, file.path);
    std::uint64_t need = room_.clusters(contentSize(file));
    const bool isNew = old.kind == FileKind::none || removed_.contains(file.path);
    if (isNew) need += room_.clustersForName(file.path);
    const std::size_t descriptors = isNew ? 1 : 2;
    if (descriptors_ + descriptors > descriptorsPerBatch || (fileCount_ > 0 && !room_.holds(needed_ + need)))
      closeBatch();
    needed_ += need;
    if (!room_.holds(needed_)) failForRoom(file.path);
    if (!removed_.contains(file.path)) freed_ += room_.clusters(old.size);
    ++fileCount_;
    descriptors_ += descriptors;
    if (isNew) addName(file.path);
  }

  void addName(const Path& path) { entries_[folderOf(path)] += folderEntries(path.filename().native().size()); }

  std::uint64_t contentSize(const PlannedFile& file) const {
    if (const auto* bytes = std::get_if<std::string>(&file.content)) return bytes->size();
    return sourceStatus(files_, std::get<Path>(file.content)).size;
  }

  const FileSystem& card_;
  const FileSystem& files_;
  const SavePlan& plan_;
  Room room_;
  std::set<Path> removed_;
  std::vector<SaveBatch> batches_;

  // The batch being filled.
  std::vector<Path> newFolders_;
  std::map<Path, std::size_t> entries_;
  std::size_t nextFile_ = 0;
  std::size_t fileCount_ = 0;
  std::size_t descriptors_ = 0;
  std::uint64_t needed_ = 0;
  std::uint64_t freed_ = 0;
};

}  // namespace

std::vector<SaveBatch> cutIntoBatches(const FileSystem& card, const FileSystem& files, const SavePlan& plan) {
  return Cutter(card, files, plan).cut();
}

}  // namespace tamboro
