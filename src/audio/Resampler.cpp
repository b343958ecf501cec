#include "audio/Resampler.h"

#include <soxr.h>

#include <algorithm>
#include <new>

#include "audio/OutputFormat.h"

namespace tamboro {
namespace {

soxr* makeConverter(int rate) {
  if (rate == outputRate) return nullptr;
  // Below the noise of 20 bits, flat to 20 kHz.
  const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_HQ, 0);
  soxr* converter = soxr_create(rate, outputRate, outputChannels, nullptr, nullptr, &quality, nullptr);
  if (!converter) throw std::bad_alloc();
  return converter;
}

}  // namespace

void Resampler::Closer::operator()(soxr* converter) const {
  soxr_delete(converter);
}

Resampler::Resampler(int rate) : rate_(static_cast<std::size_t>(rate)), converter_(makeConverter(rate)) {}

void Resampler::put(const std::vector<float>& frames) {
  input_.erase(input_.begin(), input_.begin() + static_cast<std::ptrdiff_t>(outputChannels * read_));
  read_ = 0;
  input_.insert(input_.end(), frames.begin(), frames.end());
  put_ += frames.size() / outputChannels;
}

void Resampler::end() {
  hasEnded_ = true;
}

std::size_t Resampler::take(float* frames, std::size_t count) {
  if (!converter_) return copy(frames, count);
  if (!hasEnded_) return convert(frames, count);
  // The converter's own way to an end rounds the length down as well as up, and makes seconds of each frame at once
  // where a header claims a rate of a few. So silence is put behind the sound until all of it is out.
  const std::size_t wanted = std::min(count, due() - taken_);
  std::size_t written = 0;
  while (wanted > 0 && written == 0) {
    if (unread() == 0) {
      constexpr std::size_t silence = 1024;
      input_.assign(outputChannels * silence, 0.0F);
      read_ = 0;
    }
    written = convert(frames, wanted);
  }
  return written;
}

std::size_t Resampler::convert(float* frames, std::size_t count) {
  std::size_t written = 0;
  // It takes no more at a time than `count` asks for. Without input it would take the sound for ended.
  for (std::size_t left = unread(); left > 0 && written == 0; left = unread()) {
    std::size_t used = 0;
    const float* from = input_.data() + outputChannels * read_;
    soxr_process(converter_.get(), from, left, &used, frames, count, &written);
    if (used + written == 0) break;
    read_ += used;
  }
  taken_ += written;
  return written;
}

std::size_t Resampler::copy(float* frames, std::size_t count) {
  const std::size_t taken = std::min(count, unread());
  std::copy_n(input_.data() + outputChannels * read_, outputChannels * taken, frames);
  read_ += taken;
  return taken;
}

std::size_t Resampler::unread() const {
  return input_.size() / outputChannels - read_;
}

std::size_t Resampler::due() const {
  return (put_ * outputRate + rate_ - 1) / rate_;
}

}  // namespace tamboro
