// What the backup before a save costs, against the least that any such backup does: remove the old copy, then read and
// write each file, in one thread.

#include "library/saving/Backup.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

#include "library/LibraryBench.h"
#include "library/Measure.h"

namespace tamboro::bench {
namespace {

namespace fs = std::filesystem;

constexpr int rounds = 9;
constexpr double limit = 1.6;

/// The files and folders of a card, relative, folders before what they hold.
struct Listing {
  std::vector<Path> folders;
  std::vector<Path> files;
};

Listing listingOf(const Path& card) {
  Listing listing;
  for (const auto& entry : fs::recursive_directory_iterator(card))
    (entry.is_directory() ? listing.folders : listing.files).push_back(entry.path().lexically_relative(card));
  return listing;
}

void copyPlainly(const Listing& listing, const Path& card, const Path& destination) {
  fs::remove_all(destination);
  fs::create_directories(destination);
  for (const Path& folder : listing.folders)
    fs::create_directory(destination / folder);
  std::string buffer(1 << 20, '\0');
  for (const Path& file : listing.files) {
    const int from = ::open((card / file).c_str(), O_RDONLY);
    const ssize_t size = ::read(from, buffer.data(), buffer.size());
    ::close(from);
    const int to = ::open((destination / file).c_str(), O_WRONLY | O_CREAT | O_EXCL, 0666);
    if (size < 0 || ::write(to, buffer.data(), static_cast<std::size_t>(size)) != size) std::abort();
    ::close(to);
  }
}

}  // namespace

bool measureBackup(const Path& card, const Path& place) {
  const Listing listing = listingOf(card);
  const std::unique_ptr<FileSystem> files = makeRealFileSystem();
  const std::unique_ptr<FileSystem> rooted = files->rooted(card);
  const Duration measured = ratio(
      "backup", rounds, [&] { backup(*rooted, *files, card, place / "backup"); },
      [&] { copyPlainly(listing, card, place / "plain"); });
  return report("backup", measured.wall, limit);
}

}  // namespace tamboro::bench
