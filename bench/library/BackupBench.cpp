// What the backup before a save costs on a card of 100 kits and 10,000 samples, in memory, against the least that any
// such backup does: remove the old copy, then read and write each file, in one thread.

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "library/Backup.h"
#include "platform/RealFileSystem.h"

namespace tamboro::bench {
namespace {

namespace fs = std::filesystem;

constexpr int rounds = 9;
constexpr double limit = 1.6;

void writeWhole(const Path& file, const std::string& bytes) {
  const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
  if (descriptor < 0 || ::write(descriptor, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) abort();
  ::close(descriptor);
}

std::string numbered(const char* format, int number) {
  char text[32];
  std::snprintf(text, sizeof text, format, number);
  return text;
}

void makeCard(const Path& card) {
  fs::create_directories(card / "KIT");
  fs::create_directories(card / "SYSTEM");
  for (int kit = 1; kit <= 100; ++kit)
    writeWhole(card / "KIT" / numbered("kit%03d.spd", kit), std::string(16000, 'k'));
  for (int bank = 0; bank < 100; ++bank) {
    const Path folder = card / "WAVE/PRM" / numbered("%02d", bank);
    fs::create_directories(folder);
    for (int file = 0; file < 100; ++file)
      writeWhole(folder / numbered("%02d.spd", file), std::string(500, 's'));
  }
  for (const char* name : {"tag_list.spd", "wavelist_name.spd", "wavelist_tagnum.spd", "wavelist_tagname.spd"})
    writeWhole(card / "SYSTEM" / name, std::string(150000, 'x'));
}

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
  std::string buffer(256 * 1024, '\0');
  for (const Path& file : listing.files) {
    const int from = ::open((card / file).c_str(), O_RDONLY);
    const ssize_t size = ::read(from, buffer.data(), buffer.size());
    ::close(from);
    const int to = ::open((destination / file).c_str(), O_WRONLY | O_CREAT | O_EXCL, 0666);
    if (size < 0 || ::write(to, buffer.data(), static_cast<std::size_t>(size)) != size) abort();
    ::close(to);
  }
}

template<typename Work>
double seconds(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

bool measure(const Path& place) {
  const Path card = place / "card";
  makeCard(card);
  const Listing listing = listingOf(card);
  const std::unique_ptr<FileSystem> files = makeRealFileSystem();
  const std::unique_ptr<FileSystem> rooted = files->rooted(card);
  double ours = 1e9;
  double floor = 1e9;
  // The first round of each makes the copy that the next ones replace.
  for (int i = 0; i < rounds; ++i) {
    floor = std::min(floor, seconds([&] { copyPlainly(listing, card, place / "plain"); }) + (i == 0 ? 1e9 : 0));
    ours = std::min(ours, seconds([&] { backup(*rooted, *files, card, place / "backup"); }) + (i == 0 ? 1e9 : 0));
  }
  std::fprintf(stderr, "backup: %.1f ms against %.1f ms\n", ours * 1e3, floor * 1e3);
  std::printf("%-24s %8.3f %8.3f\n", "backup", ours / floor, limit);
  return ours <= floor * limit;
}

}  // namespace
}  // namespace tamboro::bench

int main() {
  std::string place = "/dev/shm/tamboro-bench-XXXXXX";
  if (::mkdtemp(place.data()) == nullptr) return 2;
  const bool isMet = tamboro::bench::measure(place);
  std::filesystem::remove_all(place);
  return isMet ? 0 : 1;
}
