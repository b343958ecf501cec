#include "audio/AudioFile.h"

#include <fcntl.h>
#include <sndfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tamboro {
namespace {

// Beyond what any converter makes; a header that claims more is no sound, and would only cost time to convert.
constexpr int highestRate = 1'000'000;
constexpr std::size_t valuesPerRead = 8192;

// A card's float samples can be anything, and what isn't a number would spread through a whole conversion.
float audible(float value) {
  return std::isfinite(value) ? std::clamp(value, -1.0F, 1.0F) : 0.0F;
}

int openRegularFile(const std::filesystem::path& location) {
  const int descriptor = ::open(location.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (descriptor < 0) return -1;
  struct stat status {};
  if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) return descriptor;
  ::close(descriptor);
  return -1;
}

}  // namespace

std::optional<AudioFile> AudioFile::open(const std::filesystem::path& location) {
  const int descriptor = openRegularFile(location);
  if (descriptor < 0) return std::nullopt;
  SF_INFO info{};
  // The descriptor stays ours: which failures would close it differs.
  SNDFILE* file = sf_open_fd(descriptor, SFM_READ, &info, SF_FALSE);
  if (!file || info.channels < 1 || info.samplerate < 1 || info.samplerate > highestRate) {
    if (file) sf_close(file);
    ::close(descriptor);
    return std::nullopt;
  }
  return AudioFile(descriptor, file, info.samplerate, info.channels);
}

AudioFile::AudioFile(int descriptor, SNDFILE* file, int rate, int channels)
    : descriptor_(descriptor),
      file_(file),
      rate_(rate),
      channels_(static_cast<std::size_t>(channels)),
      raw_(std::max<std::size_t>(valuesPerRead / channels_, 1) * channels_) {}

AudioFile::AudioFile(AudioFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)),
      file_(std::exchange(other.file_, nullptr)),
      rate_(other.rate_),
      channels_(other.channels_),
      raw_(std::move(other.raw_)),
      stereo_(std::move(other.stereo_)) {}

AudioFile::~AudioFile() {
  if (!file_) return;
  sf_close(file_);
  ::close(descriptor_);
}

const std::vector<float>& AudioFile::read() {
  const auto frames = sf_readf_float(file_, raw_.data(), static_cast<sf_count_t>(raw_.size() / channels_));
  mixDown(static_cast<std::size_t>(std::max<sf_count_t>(frames, 0)));
  return stereo_;
}

void AudioFile::mixDown(std::size_t frames) {
  stereo_.resize(2 * frames);
  const bool isStereo = channels_ == 2;
  for (std::size_t i = 0; i < frames; ++i) {
    const float* frame = raw_.data() + i * channels_;
    if (isStereo) {
      stereo_[2 * i] = audible(frame[0]);
      stereo_[2 * i + 1] = audible(frame[1]);
      continue;
    }
    float sum = 0;
    for (std::size_t channel = 0; channel < channels_; ++channel) {
      sum += audible(frame[channel]);
    }
    stereo_[2 * i] = stereo_[2 * i + 1] = sum / static_cast<float>(channels_);
  }
}

}  // namespace tamboro
