#include "platform/RealFileSystem.h"

#include <dirent.h>
#include <fcntl.h>
#if defined(__linux__)
#include <sys/sendfile.h>
#endif
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/VolumeSerial.h"

// POSIX. Every call goes through the *at() family relative to a held folder, so that one class serves both the whole
// tree and a folder that keeps its identity whatever is mounted over its path.

namespace tamboro {

namespace {

[[noreturn]] void fail(int error, const Path& path) {
  throw FileError(std::error_code(error, std::system_category()), path);
}

/// A system call again and again while signals interrupt it.
template<typename Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR)
    result = call();
  return result;
}

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;
  // Not repeated when interrupted: the number is free again by then and may be another thread's.
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  int number() const { return number_; }

 private:
  int number_;
};

/// `name` is how the system is told the path, `path` how the caller gave it.
Descriptor openAt(int folder, const char* name, int flags, const Path& path) {
  const int number = uninterrupted([&] { return ::openat(folder, name, flags | O_CLOEXEC | O_NOCTTY, 0666); });
  if (number < 0) fail(errno, path);
  return Descriptor(number);
}

struct stat statusOf(const Descriptor& descriptor, const Path& path) {
  struct stat status {};
  if (::fstat(descriptor.number(), &status) != 0) fail(errno, path);
  return status;
}

struct statvfs volumeOf(const Descriptor& descriptor, const Path& path) {
  struct statvfs volume {};
  if (uninterrupted([&] { return ::fstatvfs(descriptor.number(), &volume); }) != 0) fail(errno, path);
  return volume;
}

/// Opens for reading without ever waiting: a pipe or a device would hold up the program. Where the system allows that,
/// the time of the reading isn't noted: ten thousand files that were only read would be written to at the next save.
Descriptor openQuietly(int folder, const char* name, const Path& path) {
#if defined(O_NOATIME)
  const int number =
      uninterrupted([&] { return ::openat(folder, name, O_RDONLY | O_NONBLOCK | O_NOATIME | O_CLOEXEC | O_NOCTTY); });
  if (number >= 0) return Descriptor(number);
  if (errno != EPERM) fail(errno, path);
#endif
  return openAt(folder, name, O_RDONLY | O_NONBLOCK, path);
}

std::pair<Descriptor, struct stat> openToRead(int folder, const char* name, const Path& path) {
  Descriptor descriptor = openQuietly(folder, name, path);
  const struct stat status = statusOf(descriptor, path);
  if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) fail(EOPNOTSUPP, path);
  return {std::move(descriptor), status};
}

std::size_t readSome(const Descriptor& descriptor, char* buffer, std::size_t capacity, const Path& path) {
  const ssize_t count = uninterrupted([&] { return ::read(descriptor.number(), buffer, capacity); });
  if (count < 0) fail(errno, path);
  return static_cast<std::size_t>(count);
}

class PosixFile : public OpenFile {
 public:
  PosixFile(Descriptor descriptor, Path path, bool isFolder)
      : descriptor_(std::move(descriptor)), path_(std::move(path)), isFolder_(isFolder) {}

  std::size_t read(char* buffer, std::size_t capacity) override {
    return readSome(descriptor_, buffer, capacity, path_);
  }

  void write(std::string_view bytes) override {
    while (!bytes.empty()) {
      const ssize_t count = uninterrupted([&] { return ::write(descriptor_.number(), bytes.data(), bytes.size()); });
      if (count <= 0) fail(count < 0 ? errno : EIO, path_);
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
  }

  void append(OpenFile& source) override {
#if defined(__linux__)
    // Within the system, past this program's memory. What fails there fails again below, where it is known which of
    // the two files it was.
    if (const auto* from = dynamic_cast<PosixFile*>(&source)) {
      constexpr std::size_t most = std::size_t{1} << 30U;
      const auto send = [&] { return ::sendfile(descriptor_.number(), from->descriptor_.number(), nullptr, most); };
      while (uninterrupted(send) > 0) {
      }
    }
#endif
    OpenFile::append(source);
  }

  std::uint64_t size() const override {
    return static_cast<std::uint64_t>(statusOf(descriptor_, path_).st_size);
  }

  void startWriteback() override {
#if defined(__linux__)
    ::sync_file_range(descriptor_.number(), 0, 0, SYNC_FILE_RANGE_WRITE);  // a failure is told by the sync behind it
#endif
  }

  void writeBackVolume() override {
#if defined(__linux__)
    if (uninterrupted([&] { return ::syncfs(descriptor_.number()); }) != 0) fail(errno, path_);
#else
    ::sync();
#endif
  }

  void sync() override {
#if defined(F_FULLFSYNC)
    // There a plain fsync leaves the bytes in the device's cache.
    if (uninterrupted([&] { return ::fcntl(descriptor_.number(), F_FULLFSYNC); }) != -1) return;
#endif
    if (uninterrupted([&] { return ::fsync(descriptor_.number()); }) == 0) return;
    // Some network file systems have no sync of a folder and say so.
    if (isFolder_ && errno == EINVAL) return;
    fail(errno, path_);
  }

 private:
  Descriptor descriptor_;
  Path path_;
  bool isFolder_;
};

class PosixFileSystem : public FileSystem {
 public:
  PosixFileSystem() : root_(-1) {}
  PosixFileSystem(Descriptor root, Path path) : root_(std::move(root)), rootPath_(std::move(path)) {}

  FileStatus status(const Path& path) const override { return status(path, 0); }
  FileStatus entryStatus(const Path& path) const override { return status(path, AT_SYMLINK_NOFOLLOW); }
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
  FileStatus status(const Path& path, int flags) const;
  int base() const { return isRooted() ? root_.number() : AT_FDCWD; }
  bool isRooted() const { return root_.number() >= 0; }
  /// The held folder itself is asked for by the empty path, which no system call takes.
  const char* at(const Path& path) const { return isRooted() && path.empty() ? "." : path.c_str(); }
  Path heldPath() const;

  Descriptor root_;
  Path rootPath_;
};

FileStatus PosixFileSystem::status(const Path& path, int flags) const {
  struct stat status {};
  if (uninterrupted([&] { return ::fstatat(base(), at(path), &status, flags); }) != 0) {
    if (errno == ENOENT || errno == ENOTDIR) return {};
    fail(errno, path);
  }
  const FileIdentity identity{status.st_dev, status.st_ino};
  if (S_ISREG(status.st_mode)) return {FileKind::regular, static_cast<std::uint64_t>(status.st_size), identity};
  return {S_ISDIR(status.st_mode) ? FileKind::folder : FileKind::other, 0, identity};
}

std::vector<std::string> PosixFileSystem::list(const Path& folder) const {
  // The stream takes a descriptor of its own and closes it.
  const int number =
      uninterrupted([&] { return ::openat(base(), at(folder), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK); });
  if (number < 0) fail(errno, folder);
  DIR* const stream = ::fdopendir(number);
  if (stream == nullptr) {
    const int error = errno;
    ::close(number);
    fail(error, folder);
  }
  const std::unique_ptr<DIR, int (*)(DIR*)> closer(stream, &::closedir);
  std::vector<std::string> names;
  for (errno = 0; const dirent* entry = ::readdir(stream); errno = 0) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  if (errno != 0) fail(errno, folder);
  std::sort(names.begin(), names.end());
  return names;
}

void PosixFileSystem::read(const Path& file, std::string& content) const {
  const auto [descriptor, status] = openToRead(base(), at(file), file);
  if (S_ISDIR(status.st_mode)) fail(EISDIR, file);
  // One byte more than the file had tells its end by a short read, without a further call for an empty one.
  const auto expected = static_cast<std::size_t>(status.st_size);
  content.resize(expected + 1);
  std::size_t size = 0;
  while (true) {
    if (size == content.size()) content.resize(2 * size);
    const std::size_t count = readSome(descriptor, content.data() + size, content.size() - size, file);
    size += count;
    if (count == 0 || (size == expected && size < content.size())) break;
  }
  content.resize(size);
}

std::unique_ptr<OpenFile> PosixFileSystem::open(const Path& path) const {
  auto [descriptor, status] = openToRead(base(), at(path), path);
  return std::make_unique<PosixFile>(std::move(descriptor), path, S_ISDIR(status.st_mode));
}

std::unique_ptr<OpenFile> PosixFileSystem::create(const Path& file) {
  return std::make_unique<PosixFile>(openAt(base(), at(file), O_WRONLY | O_CREAT | O_EXCL, file), file, false);
}

void PosixFileSystem::makeFolder(const Path& folder) {
  if (::mkdirat(base(), at(folder), 0777) != 0) fail(errno, folder);
}

void PosixFileSystem::rename(const Path& from, const Path& to) {
  if (::renameat(base(), at(from), base(), at(to)) != 0) fail(errno, to);
}

void PosixFileSystem::removeFile(const Path& file) {
  if (::unlinkat(base(), at(file), 0) != 0) fail(errno, file);
}

void PosixFileSystem::removeFolder(const Path& folder) {
  if (::unlinkat(base(), at(folder), AT_REMOVEDIR) != 0) fail(errno, folder);
}

VolumeSpace PosixFileSystem::space(const Path& path) const {
  const struct statvfs volume = volumeOf(openToRead(base(), at(path), path).first, path);
  const std::uint64_t cluster = std::max<std::uint64_t>(volume.f_frsize, 1);
  return {volume.f_bavail * cluster, cluster};
}

std::string PosixFileSystem::volumeSerial(const Path& path) const {
  const auto [descriptor, status] = openToRead(base(), at(path), path);
  return serialOfVolume(descriptor.number(), status.st_dev);
}

Path PosixFileSystem::heldPath() const {
#if defined(__linux__)
  std::error_code ignored;
  Path current = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(root_.number()), ignored);
  if (current.is_absolute()) return current;
#endif
  return rootPath_;
}

Path PosixFileSystem::resolved(const Path& path) const {
  try {
    const Path whole = std::filesystem::absolute(isRooted() ? heldPath() / path : path);
    Path result = std::filesystem::weakly_canonical(whole);
    return result.has_filename() || result == result.root_path() ? result : result.parent_path();
  } catch (const std::filesystem::filesystem_error& error) {
    throw FileError(error.code(), path);
  }
}

std::unique_ptr<FileSystem> PosixFileSystem::rooted(const Path& folder) const {
  Descriptor root = openAt(base(), at(folder), O_RDONLY | O_DIRECTORY | O_NONBLOCK, folder);
  // Joined as it stands: resolving it takes longer than reading a few files, and most who ask never need it.
  return std::make_unique<PosixFileSystem>(std::move(root), isRooted() ? rootPath_ / folder : folder);
}

}  // namespace

std::unique_ptr<FileSystem> makeRealFileSystem() {
  return std::make_unique<PosixFileSystem>();
}

}  // namespace tamboro
