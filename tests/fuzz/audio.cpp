// An audio file as a card may hold it, from its bytes to the frames that the device gets.

#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <vector>

#include "audio/Sound.h"
#include "fuzz/Fuzzing.h"

namespace tamboro::fuzz {
namespace {

/// A file without a place on a disk.
class MemoryFile {
 public:
  explicit MemoryFile(std::span<const std::uint8_t> bytes) : descriptor_(memfd_create("sound", MFD_CLOEXEC)) {
    require(descriptor_ >= 0, "there is memory for a file");
    require(write(descriptor_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()), "it takes the input");
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { close(descriptor_); }
  std::filesystem::path path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  int descriptor_;
};

}  // namespace

void tryInput(std::span<const std::uint8_t> input) {
  // A header can promise a day of silence; what comes later is like what came before.
  constexpr std::size_t enough = 1U << 16U;
  constexpr std::size_t part = 1024;
  const MemoryFile file(input);
  const std::shared_ptr<Sound> sound = Sound::open(file.path());
  if (sound == nullptr) return;
  require(!sound->isTaken(), "what opens can be heard");
  std::vector<float> frames(2 * part);
  for (std::size_t taken = 0; taken < enough && !sound->isTaken();) {
    while (sound->decodePart()) {
    }
    const std::size_t count = sound->take(frames.data(), part);
    require(count > 0 || sound->isTaken(), "until the end there is always something to take");
    for (std::size_t value = 0; value < 2 * count; ++value)
      require(std::isfinite(frames[value]), "each value is a number");
    taken += count;
  }
}

}  // namespace tamboro::fuzz
