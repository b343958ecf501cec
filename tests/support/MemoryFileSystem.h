#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/FileSystem.h"

namespace tamboro::test {

/// What is mounted at a place of a MemoryFileSystem.
struct MemoryVolume {
  std::string serial;
  VolumeSpace space{1U << 30U, 4096};  ///< only told, never used up
  bool readOnly = false;               ///< every change fails with "Read-only file system"
};

/// A file tree in memory that answers like a POSIX one. Starts with an empty root folder, where relative paths start
/// too. Rooted ones share the tree. Safe to use from several threads.
class MemoryFileSystem : public FileSystem {
 public:
  struct Disk;
  struct Node;

  MemoryFileSystem();
  ~MemoryFileSystem() override;

  FileStatus status(const Path& path) const override;
  FileStatus entryStatus(const Path& path) const override;
  std::vector<std::string> list(const Path& folder) const override;
  void read(const Path& file, std::string& content) const override;
  std::unique_ptr<OpenFile> open(const Path& path) const override;
  std::unique_ptr<OpenFile> create(const Path& file) override;
  void makeFolder(const Path& folder) override;
  void rename(const Path& from, const Path& to) override;
  void removeFile(const Path& file) override;
  void removeFolder(const Path& folder) override;
  VolumeSpace space(const Path& path) const override;
  std::string volumeSerial(const Path& path) const override;
  Path resolved(const Path& path) const override;
  std::unique_ptr<FileSystem> rooted(const Path& folder) const override;

  void addLink(const Path& link, const Path& target);
  /// A second name of the file in its folder that a listing doesn't tell, such as FAT's short one.
  void addShortName(const Path& file, const std::string& shortName);
  /// Something that is neither a file nor a folder, such as a pipe.
  void addSpecial(const Path& path);
  /// Puts an empty volume in the place of the folder, as when a card is pulled and another one put in: what is rooted
  /// in the old folder still reaches the old one. Makes missing parents.
  void mount(const Path& folder, const MemoryVolume& volume);
  /// Changes the volume that the path lies on; all it holds stays.
  void setVolume(const Path& path, const MemoryVolume& volume);

  /// What was changed, synced, opened and closed, in order and with the paths as they were given: "create a",
  /// "write a", "writeback a", "volume a", "sync a", "close a", "open a", "makeFolder a", "rename a b", "removeFile a",
  /// "removeFolder a". Failed operations don't count. Those of rooted ones stand among them.
  std::vector<std::string> operations() const;
  void clearOperations();

 private:
  struct Place;
  MemoryFileSystem(std::shared_ptr<Disk> disk, std::shared_ptr<Node> base, Path basePath);
  Place find(const Path& path, bool follow) const;
  Place findExisting(const Path& path, bool follow) const;
  Place findNew(const Path& path) const;
  std::shared_ptr<Node> add(const Path& path, FileKind kind);
  void remove(const Path& path, bool folder);

  std::shared_ptr<Disk> disk_;
  std::shared_ptr<Node> base_;
  Path basePath_;
  bool isRooted_ = false;
};

}  // namespace tamboro::test
