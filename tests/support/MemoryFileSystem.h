#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/FileSystem.h"

namespace tamboro::test {

/// What is mounted at a place of a MemoryFileSystem.
struct MemoryVolume {
  std::string serial;
  VolumeSpace space{1U << 30U, 4096};  ///< only told, never used up
};

/// A file tree in memory that answers like a POSIX one and fails where a test says so. Starts with an empty root
/// folder, where relative paths start too. Rooted ones and open files share the tree, the failures and the record of
/// operations. Safe to use from several threads; what is to fail is set while no operation runs.
class MemoryFileSystem : public FileSystem {
 public:
  /// An operation by its name, as `operations` or the members here have it, and its path (of a rename the new one).
  using Picks = std::function<bool(const std::string& operation, const Path& path)>;

  MemoryFileSystem() : disk_(std::make_shared<Disk>()), base_(disk_->root), basePath_("/") {
    base_->volume = std::make_shared<MemoryVolume>();
  }

  /// Fails the n-th operation from now on, counted from 1. If it is a write, half of the bytes are written.
  void failAt(std::uint64_t number, std::errc error = std::errc::io_error) { disk_->choose(number, number, {}, error); }
  /// Fails the n-th and all that follow it: a card that has been pulled out.
  void failFrom(std::uint64_t number, std::errc error = std::errc::io_error) {
    disk_->choose(number, never, {}, error);
  }
  void failWhere(Picks picks, std::errc error = std::errc::io_error) { disk_->choose(never, 0, picks, error); }
  void failNothing() { disk_->choose(never, 0, {}, {}); }
  /// Operations since a failure was last chosen, failed ones included.
  std::uint64_t count() const { return disk_->count; }

  /// What was changed, synced, opened and closed, in order and with the paths as they were given: "create a",
  /// "write a", "writeback a", "volume a", "sync a", "close a", "open a", "makeFolder a", "rename a b", "removeFile a",
  /// "removeFolder a". Failed operations don't count. Those of rooted ones stand among them.
  std::vector<std::string> operations() const { return disk_->operations; }
  void clearOperations() { disk_->operations.clear(); }

  void addLink(const Path& link, const Path& target) { add(link, FileKind::other)->target = target; }
  /// Something that is neither a file nor a folder, such as a pipe.
  void addSpecial(const Path& path) { add(path, FileKind::other); }
  /// A second name of the file in its folder that a listing doesn't tell, such as FAT's short one.
  void addShortName(const Path& file, const std::string& shortName) {
    disk_->shortNames[shortName] = file.filename().native();
  }
  /// Puts an empty volume in the place of the folder, as when a card is pulled and another one put in: what is rooted
  /// in the old folder still reaches the old one. Makes missing parents.
  void mount(const Path& folder, const MemoryVolume& volume) {
    makeFolders(*this, folder);
    const Place place = findExisting(folder, true);
    place.folder->children[place.name] = std::make_shared<Node>(Node{.volume = std::make_shared<MemoryVolume>(volume)});
  }
  /// Changes the volume that the path lies on; all it holds stays.
  void setVolume(const Path& path, const MemoryVolume& volume) { *findExisting(path, true).node->volume = volume; }

  FileStatus status(const Path& path) const override { return statusOf("status", path, true); }
  FileStatus entryStatus(const Path& path) const override { return statusOf("entryStatus", path, false); }

  std::vector<std::string> list(const Path& folder) const override {
    const auto lock = disk_->pass("list", folder);
    std::vector<std::string> names;
    for (const auto& [name, child] : findFolder(folder).node->children)
      names.push_back(name);
    return names;
  }
  void read(const Path& file, std::string& content) const override {
    const auto lock = disk_->pass("read", file);
    const auto node = findOpenable(file);
    if (node->kind == FileKind::folder) fail(std::errc::is_a_directory, file);
    content = node->bytes;
  }
  std::unique_ptr<OpenFile> open(const Path& path) const override {
    const auto lock = disk_->pass("open", path);
    auto node = findOpenable(path);
    disk_->note("open", path);
    return std::make_unique<File>(disk_, std::move(node), path);
  }
  std::unique_ptr<OpenFile> create(const Path& file) override {
    const auto lock = disk_->pass("create", file);
    auto node = add(file, FileKind::regular);
    disk_->note("create", file);
    return std::make_unique<File>(disk_, std::move(node), file);
  }
  void makeFolder(const Path& folder) override {
    const auto lock = disk_->pass("makeFolder", folder);
    add(folder, FileKind::folder);
    disk_->note("makeFolder", folder);
  }
  void rename(const Path& from, const Path& to) override {
    const auto lock = disk_->pass("rename", to);
    const Place source = findExisting(from, false);
    const Place target = find(to, false);
    if (!target.folder) fail(std::errc::no_such_file_or_directory, to);
    if (source.folder->volume != target.folder->volume) fail(std::errc::cross_device_link, to);
    if (target.node && target.node->kind == FileKind::folder) fail(std::errc::is_a_directory, to);
    source.folder->children.erase(source.name);
    target.folder->children[target.name] = source.node;
    disk_->note("rename", from.native() + " " + to.native());
  }
  void removeFile(const Path& file) override { remove("removeFile", file, false); }
  void removeFolder(const Path& folder) override { remove("removeFolder", folder, true); }

  VolumeSpace space(const Path& path) const override {
    const auto lock = disk_->pass("space", path);
    return findExisting(path, true).node->volume->space;
  }
  std::string volumeSerial(const Path& path) const override {
    const auto lock = disk_->pass("volumeSerial", path);
    return findExisting(path, true).node->volume->serial;
  }
  Path resolved(const Path& path) const override {
    const auto lock = disk_->pass("resolved", path);
    return find(path.lexically_normal(), true).path;
  }
  std::unique_ptr<FileSystem> rooted(const Path& folder) const override {
    const auto lock = disk_->pass("rooted", folder);
    const Place place = findFolder(folder);
    return std::unique_ptr<FileSystem>(new MemoryFileSystem(disk_, place.node, place.path));
  }

 private:
  static constexpr std::uint64_t never = std::numeric_limits<std::uint64_t>::max();

  struct Node {
    FileKind kind = FileKind::folder;
    std::shared_ptr<MemoryVolume> volume = {};
    std::string bytes = {};
    Path target = {};  ///< of a link; empty for anything else
    std::map<std::string, std::shared_ptr<Node>> children = {};
  };

  struct Disk {
    std::mutex mutex;
    std::shared_ptr<Node> root = std::make_shared<Node>();
    std::map<std::string, std::string> shortNames;
    std::vector<std::string> operations;
    std::atomic<std::uint64_t> count = 0;
    std::uint64_t first = never;
    std::uint64_t last = 0;
    Picks picks;
    std::errc error = {};

    void choose(std::uint64_t from, std::uint64_t to, Picks where, std::errc with) {
      std::tie(first, last, picks, error) = std::tuple(from, to, std::move(where), with);
      count = 0;
    }
    /// Every operation begins here: it fails if it is one that is to fail.
    std::unique_lock<std::mutex> pass(const char* operation, const Path& path) {
      const std::uint64_t number = ++count;
      if ((number >= first && number <= last) || (picks && picks(operation, path))) fail(error, path);
      return std::unique_lock(mutex);
    }
    void note(const std::string& operation, const Path& path) { operations.push_back(operation + " " + path.native()); }
  };

  class File : public OpenFile {
   public:
    File(std::shared_ptr<Disk> disk, std::shared_ptr<Node> node, Path path)
        : disk_(std::move(disk)), node_(std::move(node)), path_(std::move(path)) {}
    ~File() override {
      const std::lock_guard lock(disk_->mutex);
      disk_->note("close", path_);
    }
    std::size_t read(char* buffer, std::size_t capacity) override {
      const auto lock = disk_->pass("fileRead", path_);
      if (node_->kind == FileKind::folder) fail(std::errc::is_a_directory, path_);
      const std::size_t count = node_->bytes.copy(buffer, capacity, std::min(position_, node_->bytes.size()));
      position_ += count;
      return count;
    }
    void write(std::string_view bytes) override {
      if (disk_->count + 1 == disk_->first) node_->bytes += bytes.substr(0, bytes.size() / 2);
      note("write");
      node_->bytes += bytes;
    }
    std::uint64_t size() const override {
      return node_->kind == FileKind::folder ? 32 * node_->children.size() : node_->bytes.size();
    }
    void startWriteback() override { note("writeback"); }
    void writeBackVolume() override { note("volume"); }
    void sync() override { note("sync"); }

   private:
    void note(const char* operation) {
      const auto lock = disk_->pass(operation, path_);
      disk_->note(operation, path_);
    }

    std::shared_ptr<Disk> disk_;
    std::shared_ptr<Node> node_;
    Path path_;
    std::size_t position_ = 0;
  };

  /// Where a path leads: the folder that holds the last name, if there is one, and what stands there, if anything.
  struct Place {
    std::shared_ptr<Node> folder;
    std::string name;
    std::shared_ptr<Node> node;
    Path path;  ///< with every link resolved
  };

  MemoryFileSystem(std::shared_ptr<Disk> disk, std::shared_ptr<Node> base, Path basePath)
      : disk_(std::move(disk)), base_(std::move(base)), basePath_(std::move(basePath)), isRooted_(true) {}

  [[noreturn]] static void fail(std::errc error, const Path& path) {
    throw FileError(std::make_error_code(error), path);
  }

  Place find(const Path& path, bool follow) const {
    if (path.empty() && !isRooted_) fail(std::errc::no_such_file_or_directory, path);
    std::vector<Place> way{{nullptr, {}, base_, basePath_}};
    std::deque<std::string> rest(path.begin(), path.end());
    for (int links = 0; !rest.empty();) {
      std::string name = std::move(rest.front());
      rest.pop_front();
      const Place here = way.back();
      const auto longName = disk_->shortNames.find(name);
      if (longName != disk_->shortNames.end() && here.node->children.contains(longName->second))
        name = longName->second;
      if (name == "/") {
        way.assign(1, {nullptr, {}, disk_->root, "/"});
      } else if (name == "." || name.empty()) {
        continue;
      } else if (here.node->kind != FileKind::folder) {
        fail(std::errc::not_a_directory, path);
      } else if (name == "..") {
        if (way.size() > 1) way.pop_back();
      } else {
        const auto child = here.node->children.find(name);
        if (child == here.node->children.end()) {
          const bool isLast = std::ranges::all_of(rest, &std::string::empty);
          Place missing{isLast ? here.node : nullptr, name, nullptr, here.path / name};
          for (const std::string& below : rest)
            if (!below.empty()) missing.path /= below;
          return missing;
        }
        const Path& target = child->second->target;
        if (!target.empty() && (follow || !rest.empty())) {
          if (++links > 40) fail(std::errc::too_many_symbolic_link_levels, path);
          rest.insert(rest.begin(), target.begin(), target.end());
        } else {
          way.push_back({here.node, name, child->second, here.path / name});
        }
      }
    }
    return way.back();
  }
  Place findExisting(const Path& path, bool follow) const {
    Place place = find(path, follow);
    if (!place.node) fail(std::errc::no_such_file_or_directory, path);
    return place;
  }
  std::shared_ptr<Node> findOpenable(const Path& path) const {
    auto node = findExisting(path, true).node;
    if (node->kind == FileKind::other) fail(std::errc::operation_not_supported, path);
    return node;
  }
  Place findFolder(const Path& path) const {
    Place place = findExisting(path, true);
    if (place.node->kind != FileKind::folder) fail(std::errc::not_a_directory, path);
    return place;
  }
  FileStatus statusOf(const char* operation, const Path& path, bool follow) const {
    const auto lock = disk_->pass(operation, path);
    try {
      const auto node = find(path, follow).node;
      if (!node) return {};
      return {node->kind, node->bytes.size(), {1, reinterpret_cast<std::uintptr_t>(node.get())}};
    } catch (const FileError& error) {
      if (error.code() != std::errc::not_a_directory) throw;
      return {};
    }
  }
  std::shared_ptr<Node> add(const Path& path, FileKind kind) {
    const Place place = find(path, false);
    if (place.node) fail(std::errc::file_exists, path);
    if (!place.folder) fail(std::errc::no_such_file_or_directory, path);
    auto node = std::make_shared<Node>(Node{.kind = kind, .volume = place.folder->volume});
    place.folder->children[place.name] = node;
    return node;
  }
  void remove(const char* operation, const Path& path, bool folder) {
    const auto lock = disk_->pass(operation, path);
    const Place place = findExisting(path, false);
    if (!folder && place.node->kind == FileKind::folder) fail(std::errc::is_a_directory, path);
    if (folder && place.node->kind != FileKind::folder) fail(std::errc::not_a_directory, path);
    if (!place.node->children.empty()) fail(std::errc::directory_not_empty, path);
    place.folder->children.erase(place.name);
    disk_->note(operation, path);
  }

  std::shared_ptr<Disk> disk_;
  std::shared_ptr<Node> base_;
  Path basePath_;
  bool isRooted_ = false;
};

}  // namespace tamboro::test
