#include "audio/Sound.h"

#include <algorithm>
#include <utility>

#include "audio/OutputFormat.h"

namespace tamboro {
namespace {

// So little that the caller of open() can wait for it, and that a new sound soon gets its turn after an old one's part;
// so much that it lasts until the decoding thread comes to it.
constexpr std::size_t partSize = 4096;

}  // namespace

std::shared_ptr<Sound> Sound::open(const std::filesystem::path& location) {
  auto file = AudioFile::open(location);
  if (!file) return nullptr;
  auto sound = std::make_shared<Sound>(std::move(*file));
  sound->decodePart();
  return sound->isTaken() ? nullptr : sound;
}

Sound::Sound(AudioFile file)
    : file_(std::move(file)),
      resampler_(file_->rate()),
      ring_(std::make_unique_for_overwrite<float[]>(outputChannels * capacity)) {}

bool Sound::decodePart() {
  std::size_t written = written_.load(std::memory_order_relaxed);
  const std::size_t room = taken_.load(std::memory_order_acquire) + capacity - written;
  const std::size_t end = written + std::min(room, partSize);
  while (!isDecoded() && written < end) {
    const std::size_t place = written % capacity;
    const std::size_t count =
        resampler_.take(ring_.get() + outputChannels * place, std::min(end - written, capacity - place));
    written += count;
    written_.store(written, std::memory_order_release);
    if (count == 0) readBlock();
  }
  return !isDecoded() && room > 0;
}

void Sound::readBlock() {
  if (!file_) {
    isDecoded_.store(true, std::memory_order_release);
  } else if (const auto& block = file_->read(); !block.empty()) {
    resampler_.put(block);
  } else {
    resampler_.end();
    // Closed as soon as it is read: an open file would keep the card from being unmounted.
    file_.reset();
  }
}

std::size_t Sound::take(float* frames, std::size_t count) {
  const std::size_t start = taken_.load(std::memory_order_relaxed);
  const std::size_t end = std::min(start + count, written_.load(std::memory_order_acquire));
  for (std::size_t at = start; at < end;) {
    const std::size_t place = at % capacity;
    const std::size_t part = std::min(end - at, capacity - place);
    std::copy_n(ring_.get() + outputChannels * place, outputChannels * part, frames);
    frames += outputChannels * part;
    at += part;
  }
  taken_.store(end, std::memory_order_release);
  return end - start;
}

bool Sound::isTaken() const {
  // In this order: what was written before the flag counts.
  return isDecoded() && taken_.load(std::memory_order_relaxed) == written_.load(std::memory_order_acquire);
}

}  // namespace tamboro
