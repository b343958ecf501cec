#include "audio/AudioOutput.h"

#include <chrono>
#include <utility>

#include "audio/OutputThread.h"

namespace tamboro {
namespace {

constexpr std::chrono::seconds patience{2};

}  // namespace

AudioOutput::AudioOutput() : thread_(std::make_shared<OutputThread>(feeder_)) {
  patience_.setInterval(patience);
  patience_.callOnTimeout([this] { watch(); });
}

AudioOutput::~AudioOutput() {
  thread_->end();
}

void AudioOutput::play(std::shared_ptr<Sound> sound, std::function<void()> ended) {
  renders_ = thread_->renders();
  patience_.start();
  thread_->play(std::move(sound), std::move(ended));
}

void AudioOutput::silence() {
  patience_.stop();
  thread_->play(nullptr, nullptr);
}

void AudioOutput::watch() {
  const std::size_t before = std::exchange(renders_, thread_->renders());
  if (renders_ != before) return;
  patience_.stop();
  thread_->giveUp();
}

}  // namespace tamboro
