#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/FileSystem.h"

namespace tamboro::test {

/// The operations of FileSystem and, with `file` in front, those of OpenFile.
enum class FileOperation : std::uint8_t {
  status,
  entryStatus,
  list,
  read,
  open,
  create,
  makeFolder,
  rename,
  removeFile,
  removeFolder,
  space,
  volumeSerial,
  resolved,
  rooted,
  fileRead,
  fileWrite,
  fileWriteback,
  fileWriteBackVolume,
  fileSync,
};

/// Passes every operation on to another file system, counts it and fails the chosen ones before anything happens. The
/// file systems rooted in it and the files opened through it count and fail with it. What to fail is set while no
/// operation runs; the counter may be read from any thread.
class FailingFileSystem : public FileSystem {
 public:
  struct Plan;

  explicit FailingFileSystem(FileSystem& files);
  ~FailingFileSystem() override;

  /// Operations since the start or since a failure was last chosen, failed ones included.
  std::uint64_t count() const;
  /// Fails the n-th operation from now on, counted from 1. If it is a write, half of the bytes are written.
  void failAt(std::uint64_t number, std::errc error = std::errc::io_error);
  /// Fails the n-th and all that follow it: a card that has been pulled out.
  void failFrom(std::uint64_t number, std::errc error = std::errc::io_error);
  /// Fails those that the test picks by operation and path (for a rename the new one).
  void failWhere(std::function<bool(FileOperation, const Path&)> picks, std::errc error = std::errc::io_error);
  void failNothing();

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

 private:
  FailingFileSystem(std::unique_ptr<FileSystem> files, std::shared_ptr<Plan> plan);

  std::unique_ptr<FileSystem> owned_;
  FileSystem& files_;
  std::shared_ptr<Plan> plan_;
};

}  // namespace tamboro::test
