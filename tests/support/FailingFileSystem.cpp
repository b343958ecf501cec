#include "support/FailingFileSystem.h"

#include <atomic>
#include <limits>
#include <utility>

namespace tamboro::test {

namespace {

constexpr std::uint64_t never = std::numeric_limits<std::uint64_t>::max();

}  // namespace

struct FailingFileSystem::Plan {
  std::atomic<std::uint64_t> count = 0;
  std::uint64_t first = never;
  std::uint64_t last = 0;
  std::function<bool(FileOperation, const Path&)> picks;
  std::errc error = std::errc::io_error;

  void choose(std::uint64_t from, std::uint64_t to, std::function<bool(FileOperation, const Path&)> where,
              std::errc with) {
    first = from;
    last = to;
    picks = std::move(where);
    error = with;
    count = 0;
  }

  void pass(FileOperation operation, const Path& path) {
    pass(operation, path, [] {});
  }

  /// `torn` is done when the operation is the first to fail.
  template<typename Torn>
  void pass(FileOperation operation, const Path& path, Torn torn) {
    const std::uint64_t number = ++count;
    if ((number < first || number > last) && !(picks && picks(operation, path))) return;
    if (number == first) torn();
    throw FileError(std::make_error_code(error), path);
  }
};

namespace {

class FailingFile : public OpenFile {
 public:
  FailingFile(std::unique_ptr<OpenFile> file, Path path, std::shared_ptr<FailingFileSystem::Plan> plan)
      : file_(std::move(file)), path_(std::move(path)), plan_(std::move(plan)) {}

  std::size_t read(char* buffer, std::size_t capacity) override {
    plan_->pass(FileOperation::fileRead, path_);
    return file_->read(buffer, capacity);
  }
  void write(std::string_view bytes) override {
    plan_->pass(FileOperation::fileWrite, path_, [&] { file_->write(bytes.substr(0, bytes.size() / 2)); });
    file_->write(bytes);
  }
  void startWriteback() override {
    plan_->pass(FileOperation::fileWriteback, path_);
    file_->startWriteback();
  }
  std::uint64_t size() const override { return file_->size(); }
  void writeBackVolume() override {
    plan_->pass(FileOperation::fileWriteBackVolume, path_);
    file_->writeBackVolume();
  }
  void sync() override {
    plan_->pass(FileOperation::fileSync, path_);
    file_->sync();
  }

 private:
  std::unique_ptr<OpenFile> file_;
  Path path_;
  std::shared_ptr<FailingFileSystem::Plan> plan_;
};

}  // namespace

FailingFileSystem::FailingFileSystem(FileSystem& files) : files_(files), plan_(std::make_shared<Plan>()) {}

FailingFileSystem::FailingFileSystem(std::unique_ptr<FileSystem> files, std::shared_ptr<Plan> plan)
    : owned_(std::move(files)), files_(*owned_), plan_(std::move(plan)) {}

FailingFileSystem::~FailingFileSystem() = default;

std::uint64_t FailingFileSystem::count() const {
  return plan_->count;
}

void FailingFileSystem::failAt(std::uint64_t number, std::errc error) {
  plan_->choose(number, number, {}, error);
}

void FailingFileSystem::failFrom(std::uint64_t number, std::errc error) {
  plan_->choose(number, never, {}, error);
}

void FailingFileSystem::failWhere(std::function<bool(FileOperation, const Path&)> picks, std::errc error) {
  plan_->choose(never, 0, std::move(picks), error);
}

void FailingFileSystem::failNothing() {
  plan_->choose(never, 0, {}, std::errc::io_error);
}

FileStatus FailingFileSystem::status(const Path& path) const {
  plan_->pass(FileOperation::status, path);
  return files_.status(path);
}

FileStatus FailingFileSystem::entryStatus(const Path& path) const {
  plan_->pass(FileOperation::entryStatus, path);
  return files_.entryStatus(path);
}

std::vector<std::string> FailingFileSystem::list(const Path& folder) const {
  plan_->pass(FileOperation::list, folder);
  return files_.list(folder);
}

void FailingFileSystem::read(const Path& file, std::string& content) const {
  plan_->pass(FileOperation::read, file);
  files_.read(file, content);
}

std::unique_ptr<OpenFile> FailingFileSystem::open(const Path& path) const {
  plan_->pass(FileOperation::open, path);
  return std::make_unique<FailingFile>(files_.open(path), path, plan_);
}

std::unique_ptr<OpenFile> FailingFileSystem::create(const Path& file) {
  plan_->pass(FileOperation::create, file);
  return std::make_unique<FailingFile>(files_.create(file), file, plan_);
}

void FailingFileSystem::makeFolder(const Path& folder) {
  plan_->pass(FileOperation::makeFolder, folder);
  files_.makeFolder(folder);
}

void FailingFileSystem::rename(const Path& from, const Path& to) {
  plan_->pass(FileOperation::rename, to);
  files_.rename(from, to);
}

void FailingFileSystem::removeFile(const Path& file) {
  plan_->pass(FileOperation::removeFile, file);
  files_.removeFile(file);
}

void FailingFileSystem::removeFolder(const Path& folder) {
  plan_->pass(FileOperation::removeFolder, folder);
  files_.removeFolder(folder);
}

VolumeSpace FailingFileSystem::space(const Path& path) const {
  plan_->pass(FileOperation::space, path);
  return files_.space(path);
}

std::string FailingFileSystem::volumeSerial(const Path& path) const {
  plan_->pass(FileOperation::volumeSerial, path);
  return files_.volumeSerial(path);
}

Path FailingFileSystem::resolved(const Path& path) const {
  plan_->pass(FileOperation::resolved, path);
  return files_.resolved(path);
}

std::unique_ptr<FileSystem> FailingFileSystem::rooted(const Path& folder) const {
  plan_->pass(FileOperation::rooted, folder);
  return std::unique_ptr<FileSystem>(new FailingFileSystem(files_.rooted(folder), plan_));
}

}  // namespace tamboro::test
