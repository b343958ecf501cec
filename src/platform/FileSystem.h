#pragma once

#include <cstdint>
#include <exception>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace tamboro {

/// A place on disk. Names on a card are bytes and need not be UTF-8, so a path is never turned into text except to
/// be shown.
using Path = std::filesystem::path;

/// What the system answers when a file operation fails. Thrown by every operation of FileSystem and OpenFile.
class FileError : public std::exception {
 public:
  FileError(std::error_code code, Path path);

  const std::error_code& code() const { return code_; }
  const Path& path() const { return path_; }
  /// The system's own message with the file's name behind it; what the user reads.
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  std::error_code code_;
  Path path_;
  std::string text_;
};

enum class FileKind : std::uint8_t { none, regular, folder, other };

/// Tells one file from another whatever it is called: a FAT volume answers to a long name, its short one and either in
/// any case. Holds as long as the file is open somewhere; FAT has no numbers of its own for its files.
struct FileIdentity {
  std::uint64_t volume = 0;
  std::uint64_t number = 0;

  friend auto operator<=>(const FileIdentity&, const FileIdentity&) = default;
};

struct FileStatus {
  FileKind kind = FileKind::none;
  std::uint64_t size = 0;  ///< bytes; 0 for anything but a regular file
  FileIdentity identity;   ///< of what stands there
};

struct VolumeSpace {
  std::uint64_t available = 0;    ///< bytes that a user process can still write
  std::uint64_t clusterSize = 1;  ///< bytes; what a file takes is a multiple of it
};

/// A file or folder held open. The destructor closes it and never throws.
class OpenFile {
 public:
  OpenFile() = default;
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  virtual ~OpenFile() = default;

  /// Up to `capacity` further bytes; 0 at the end.
  virtual std::size_t read(char* buffer, std::size_t capacity) = 0;
  /// Appends all bytes or throws.
  virtual void write(std::string_view bytes) = 0;
  /// Appends what is left of `source`.
  virtual void append(OpenFile& source);
  /// Bytes; of a folder what its names take, as far as the file system tells.
  virtual std::uint64_t size() const = 0;
  /// Begins to send what was written, so that the device is not idle while more is written. Promises nothing.
  virtual void startWriteback() = 0;
  /// Sends all that waits for the volume that this lies on, names and allocation before anything that depends on them,
  /// and returns when it has arrived. Doesn't ask the device to flush: that is what a `sync` behind it does.
  virtual void writeBackVolume() = 0;
  /// Returns when content and size are on the device (fsync). Works for folders too.
  virtual void sync() = 0;
};

/// All disk access of the program goes through this interface. Every operation throws FileError where it can't do
/// what it says. Safe to use from any thread as long as no two calls change the same path.
class FileSystem {
 public:
  FileSystem() = default;
  FileSystem(const FileSystem&) = delete;
  FileSystem& operator=(const FileSystem&) = delete;
  virtual ~FileSystem() = default;

  /// What stands at the path, links followed; kind `none` where nothing does (a dangling link included). Throws for
  /// any other failure, such as a folder on the way that can't be entered.
  virtual FileStatus status(const Path& path) const = 0;
  /// The same of the entry itself: a link is `other`.
  virtual FileStatus entryStatus(const Path& path) const = 0;
  /// The names in a folder as bytes, hidden ones included, without "." and "..", in ascending byte order.
  virtual std::vector<std::string> list(const Path& folder) const = 0;
  /// Replaces `content` by the file's bytes. A caller that reads many files hands in the same string.
  virtual void read(const Path& file, std::string& content) const = 0;
  /// Opens a regular file or a folder for reading; never waits for a device or a pipe (throws for those).
  virtual std::unique_ptr<OpenFile> open(const Path& path) const = 0;
  /// Makes a new empty file and opens it for writing; fails if anything stands at the path.
  virtual std::unique_ptr<OpenFile> create(const Path& file) = 0;
  /// Makes one folder; fails if anything stands at the path or the parent is missing.
  virtual void makeFolder(const Path& folder) = 0;
  /// Moves a file over whatever file or link stands at the new path, or a folder to a path where nothing or an empty
  /// folder stands. Both lie on one volume.
  virtual void rename(const Path& from, const Path& to) = 0;
  /// Removes a file or a link, not what the link names.
  virtual void removeFile(const Path& file) = 0;
  /// Removes an empty folder.
  virtual void removeFolder(const Path& folder) = 0;
  virtual VolumeSpace space(const Path& path) const = 0;
  /// The serial number of the volume that the path lies on, the same when it is plugged in again; empty where it has
  /// none or none can be known.
  virtual std::string volumeSerial(const Path& path) const = 0;
  /// The path with every link on it resolved; the part that doesn't exist yet is kept as it stands.
  virtual Path resolved(const Path& path) const = 0;
  /// A file system whose relative paths start at this folder, which it holds open: what is mounted at the same place
  /// later is not reached through it. Its empty path is the folder itself; absolute paths lead where they always do.
  /// Outlives the file system it came from.
  virtual std::unique_ptr<FileSystem> rooted(const Path& folder) const = 0;
};

/// Makes a folder and its missing parents; does nothing where it exists.
void makeFolders(FileSystem& files, const Path& folder);
/// Removes a file, a link or a folder with all it holds; follows no link. Throws at the first failure.
void removeTree(FileSystem& files, const Path& path);

}  // namespace tamboro
