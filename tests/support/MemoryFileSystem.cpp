#include "support/MemoryFileSystem.h"

#include <algorithm>
#include <deque>
#include <map>
#include <mutex>
#include <utility>

namespace tamboro::test {

struct MemoryFileSystem::Node {
  FileKind kind = FileKind::folder;
  std::shared_ptr<MemoryVolume> volume;
  std::string bytes;
  Path target;  ///< of a link; empty for anything else
  std::map<std::string, std::shared_ptr<Node>> children;
  std::map<std::string, std::string> shortNames;  ///< to the names of children
};

struct MemoryFileSystem::Disk {
  std::mutex mutex;
  std::shared_ptr<Node> root = std::make_shared<Node>();
  std::vector<std::string> operations;
};

/// Where a path leads: the folder that holds the last name, and what stands there, if anything. The name is empty
/// where the path ends in a folder's own "." or "..".
struct MemoryFileSystem::Place {
  std::shared_ptr<Node> folder;
  std::string name;
  std::shared_ptr<Node> node;
  Path path;  ///< with every link resolved
};

namespace {

using Node = MemoryFileSystem::Node;
using Disk = MemoryFileSystem::Disk;
using Lock = std::lock_guard<std::mutex>;

[[noreturn]] void fail(std::errc error, const Path& path) {
  throw FileError(std::make_error_code(error), path);
}

void mayChange(const Node& folder, const Path& path) {
  if (folder.volume->readOnly) fail(std::errc::read_only_file_system, path);
}

std::deque<std::string> components(const Path& path) {
  std::deque<std::string> names;
  for (const Path& name : path)
    names.push_back(name.string());
  while (!names.empty() && names.back().empty())
    names.pop_back();
  return names;
}

class MemoryFile : public OpenFile {
 public:
  MemoryFile(std::shared_ptr<Disk> disk, std::shared_ptr<Node> node, Path path, bool writable)
      : disk_(std::move(disk)), node_(std::move(node)), path_(std::move(path)), writable_(writable) {}
  ~MemoryFile() override {
    const Lock lock(disk_->mutex);
    note("close ");
  }

  std::size_t read(char* buffer, std::size_t capacity) override {
    const Lock lock(disk_->mutex);
    if (writable_) fail(std::errc::bad_file_descriptor, path_);
    if (node_->kind == FileKind::folder) fail(std::errc::is_a_directory, path_);
    const std::size_t count = std::min(capacity, node_->bytes.size() - std::min(position_, node_->bytes.size()));
    std::copy_n(node_->bytes.data() + position_, count, buffer);
    position_ += count;
    return count;
  }

  void write(std::string_view bytes) override {
    const Lock lock(disk_->mutex);
    if (!writable_) fail(std::errc::bad_file_descriptor, path_);
    node_->bytes += bytes;
    note("write ");
  }

  std::uint64_t size() const override {
    const Lock lock(disk_->mutex);
    return node_->kind == FileKind::folder ? 32 * node_->children.size() : node_->bytes.size();
  }

  void startWriteback() override {
    const Lock lock(disk_->mutex);
    note("writeback ");
  }

  void writeBackVolume() override {
    const Lock lock(disk_->mutex);
    note("volume ");
  }

  void sync() override {
    const Lock lock(disk_->mutex);
    note("sync ");
  }

 private:
  void note(const char* operation) { disk_->operations.push_back(operation + path_.string()); }

  std::shared_ptr<Disk> disk_;
  std::shared_ptr<Node> node_;
  Path path_;
  bool writable_;
  std::size_t position_ = 0;
};

FileStatus statusOf(const Node* node) {
  if (node == nullptr) return {};
  return {node->kind,
          node->kind == FileKind::regular ? node->bytes.size() : 0,
          {1, reinterpret_cast<std::uintptr_t>(node)}};
}

bool holds(const Node& folder, const Node& wanted) {
  return &folder == &wanted || std::any_of(folder.children.begin(), folder.children.end(),
                                           [&](const auto& child) { return holds(*child.second, wanted); });
}

}  // namespace

MemoryFileSystem::MemoryFileSystem() : disk_(std::make_shared<Disk>()), base_(disk_->root), basePath_("/") {
  base_->volume = std::make_shared<MemoryVolume>();
}

MemoryFileSystem::MemoryFileSystem(std::shared_ptr<Disk> disk, std::shared_ptr<Node> base, Path basePath)
    : disk_(std::move(disk)), base_(std::move(base)), basePath_(std::move(basePath)), isRooted_(true) {}

MemoryFileSystem::~MemoryFileSystem() = default;

MemoryFileSystem::Place MemoryFileSystem::find(const Path& path, bool follow) const {
  if (path.empty() && !isRooted_) fail(std::errc::no_such_file_or_directory, path);
  std::vector<Place> way{{nullptr, {}, base_, basePath_}};
  const auto restart = [&] { way.assign(1, {nullptr, {}, disk_->root, "/"}); };
  std::deque<std::string> rest = components(path);
  for (int links = 0; !rest.empty();) {
    std::string name = std::move(rest.front());
    rest.pop_front();
    const Place here = way.back();
    if (const auto known = here.node->shortNames.find(name);
        known != here.node->shortNames.end() && here.node->children.contains(known->second)) {
      name = known->second;
    }
    if (name == "/") {
      restart();
    } else if (here.node->kind != FileKind::folder) {
      fail(std::errc::not_a_directory, path);
    } else if (name == "..") {
      if (way.size() > 1) way.pop_back();
    } else if (name != "." && !name.empty()) {
      const auto child = here.node->children.find(name);
      if (child == here.node->children.end()) {
        if (rest.empty()) return {here.node, name, nullptr, here.path / name};
        fail(std::errc::no_such_file_or_directory, path);
      }
      const Path& target = child->second->target;
      if (!target.empty() && (follow || !rest.empty())) {
        if (++links > 40) fail(std::errc::too_many_symbolic_link_levels, path);
        const auto names = components(target);
        rest.insert(rest.begin(), names.begin(), names.end());
      } else {
        way.push_back({here.node, name, child->second, here.path / name});
      }
    }
  }
  return way.back();
}

MemoryFileSystem::Place MemoryFileSystem::findExisting(const Path& path, bool follow) const {
  Place place = find(path, follow);
  if (!place.node) fail(std::errc::no_such_file_or_directory, path);
  return place;
}

MemoryFileSystem::Place MemoryFileSystem::findNew(const Path& path) const {
  Place place = find(path, false);
  if (place.node) fail(std::errc::file_exists, path);
  mayChange(*place.folder, path);
  return place;
}

std::shared_ptr<Node> MemoryFileSystem::add(const Path& path, FileKind kind) {
  const Place place = findNew(path);
  auto node = std::make_shared<Node>();
  node->kind = kind;
  node->volume = place.folder->volume;
  place.folder->children[place.name] = node;
  return node;
}

FileStatus MemoryFileSystem::status(const Path& path) const {
  const Lock lock(disk_->mutex);
  try {
    return statusOf(find(path, true).node.get());
  } catch (const FileError& error) {
    if (error.code() == std::errc::no_such_file_or_directory || error.code() == std::errc::not_a_directory) return {};
    throw;
  }
}

FileStatus MemoryFileSystem::entryStatus(const Path& path) const {
  const Lock lock(disk_->mutex);
  try {
    return statusOf(find(path, false).node.get());
  } catch (const FileError& error) {
    if (error.code() == std::errc::no_such_file_or_directory || error.code() == std::errc::not_a_directory) return {};
    throw;
  }
}

std::vector<std::string> MemoryFileSystem::list(const Path& folder) const {
  const Lock lock(disk_->mutex);
  const Place place = findExisting(folder, true);
  if (place.node->kind != FileKind::folder) fail(std::errc::not_a_directory, folder);
  std::vector<std::string> names;
  for (const auto& [name, child] : place.node->children)
    names.push_back(name);
  return names;
}

void MemoryFileSystem::read(const Path& file, std::string& content) const {
  const Lock lock(disk_->mutex);
  const Place place = findExisting(file, true);
  if (place.node->kind == FileKind::folder) fail(std::errc::is_a_directory, file);
  if (place.node->kind != FileKind::regular) fail(std::errc::operation_not_supported, file);
  content = place.node->bytes;
}

std::unique_ptr<OpenFile> MemoryFileSystem::open(const Path& path) const {
  const Lock lock(disk_->mutex);
  const Place place = findExisting(path, true);
  if (place.node->kind == FileKind::other) fail(std::errc::operation_not_supported, path);
  disk_->operations.push_back("open " + path.string());
  return std::make_unique<MemoryFile>(disk_, place.node, path, false);
}

std::unique_ptr<OpenFile> MemoryFileSystem::create(const Path& file) {
  const Lock lock(disk_->mutex);
  auto node = add(file, FileKind::regular);
  disk_->operations.push_back("create " + file.string());
  return std::make_unique<MemoryFile>(disk_, std::move(node), file, true);
}

void MemoryFileSystem::makeFolder(const Path& folder) {
  const Lock lock(disk_->mutex);
  add(folder, FileKind::folder);
  disk_->operations.push_back("makeFolder " + folder.string());
}

void MemoryFileSystem::rename(const Path& from, const Path& to) {
  const Lock lock(disk_->mutex);
  const Place source = findExisting(from, false);
  const Place target = find(to, false);
  if (source.name.empty() || target.name.empty()) fail(std::errc::device_or_resource_busy, to);
  mayChange(*target.folder, to);
  if (source.folder->volume != target.folder->volume) fail(std::errc::cross_device_link, to);
  const bool isFolder = source.node->kind == FileKind::folder;
  if (isFolder && holds(*source.node, *target.folder)) fail(std::errc::invalid_argument, to);
  if (target.node) {
    const bool ontoFolder = target.node->kind == FileKind::folder;
    if (isFolder && !ontoFolder) fail(std::errc::not_a_directory, to);
    if (!isFolder && ontoFolder) fail(std::errc::is_a_directory, to);
    if (ontoFolder && !target.node->children.empty()) fail(std::errc::directory_not_empty, to);
  }
  source.folder->children.erase(source.name);
  target.folder->children[target.name] = source.node;
  disk_->operations.push_back("rename " + from.string() + " " + to.string());
}

void MemoryFileSystem::remove(const Path& path, bool folder) {
  const Lock lock(disk_->mutex);
  const Place place = findExisting(path, false);
  if (!folder && place.node->kind == FileKind::folder) fail(std::errc::is_a_directory, path);
  if (folder && place.node->kind != FileKind::folder) fail(std::errc::not_a_directory, path);
  if (place.name.empty()) fail(std::errc::invalid_argument, path);
  mayChange(*place.folder, path);
  if (!place.node->children.empty()) fail(std::errc::directory_not_empty, path);
  place.folder->children.erase(place.name);
  disk_->operations.push_back((folder ? "removeFolder " : "removeFile ") + path.string());
}

void MemoryFileSystem::removeFile(const Path& file) {
  remove(file, false);
}

void MemoryFileSystem::removeFolder(const Path& folder) {
  remove(folder, true);
}

VolumeSpace MemoryFileSystem::space(const Path& path) const {
  const Lock lock(disk_->mutex);
  return findExisting(path, true).node->volume->space;
}

std::string MemoryFileSystem::volumeSerial(const Path& path) const {
  const Lock lock(disk_->mutex);
  return findExisting(path, true).node->volume->serial;
}

Path MemoryFileSystem::resolved(const Path& path) const {
  const Lock lock(disk_->mutex);
  Path missing;
  for (Path stem = path.lexically_normal();; stem = stem.parent_path()) {
    if (!stem.has_filename() && stem.has_relative_path()) stem = stem.parent_path();
    try {
      const Place place = find(stem.empty() ? Path(".") : stem, true);
      const Path whole = place.path / missing;
      return whole.has_filename() ? whole : whole.parent_path();
    } catch (const FileError& error) {
      if (error.code() != std::errc::no_such_file_or_directory) throw;
    }
    missing = missing.empty() ? stem.filename() : stem.filename() / missing;
  }
}

std::unique_ptr<FileSystem> MemoryFileSystem::rooted(const Path& folder) const {
  const Path whole = resolved(folder);
  const Lock lock(disk_->mutex);
  const Place place = findExisting(folder, true);
  if (place.node->kind != FileKind::folder) fail(std::errc::not_a_directory, folder);
  return std::unique_ptr<FileSystem>(new MemoryFileSystem(disk_, place.node, whole));
}

void MemoryFileSystem::addLink(const Path& link, const Path& target) {
  const Lock lock(disk_->mutex);
  add(link, FileKind::other)->target = target;
}

void MemoryFileSystem::addShortName(const Path& file, const std::string& shortName) {
  const Lock lock(disk_->mutex);
  const Place place = findExisting(file, false);
  place.folder->shortNames[shortName] = place.name;
}

void MemoryFileSystem::addSpecial(const Path& path) {
  const Lock lock(disk_->mutex);
  add(path, FileKind::other);
}

void MemoryFileSystem::mount(const Path& folder, const MemoryVolume& volume) {
  makeFolders(*this, folder);
  const Lock lock(disk_->mutex);
  const Place place = findExisting(folder, true);
  auto node = std::make_shared<Node>();
  node->volume = std::make_shared<MemoryVolume>(volume);
  place.folder->children[place.name] = std::move(node);
}

void MemoryFileSystem::setVolume(const Path& path, const MemoryVolume& volume) {
  const Lock lock(disk_->mutex);
  *findExisting(path, true).node->volume = volume;
}

std::vector<std::string> MemoryFileSystem::operations() const {
  const Lock lock(disk_->mutex);
  return disk_->operations;
}

void MemoryFileSystem::clearOperations() {
  const Lock lock(disk_->mutex);
  disk_->operations.clear();
}

}  // namespace tamboro::test
