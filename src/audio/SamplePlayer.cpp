#include "audio/SamplePlayer.h"

#include "audio/AudioOutput.h"
#include "audio/Sound.h"

namespace tamboro {

SamplePlayer::SamplePlayer(QObject* parent) : QObject(parent), output_(std::make_unique<AudioOutput>()) {}

SamplePlayer::~SamplePlayer() = default;

void SamplePlayer::play(const std::filesystem::path& location, std::int64_t index) {
  stop();
  const std::uint64_t current = ++sound_;
  auto sound = Sound::open(location);
  // Called on another thread, which may only leave a message.
  const auto ended = [this, current] {
    QMetaObject::invokeMethod(
        this, [this, current] { finish(current); }, Qt::QueuedConnection);
  };
  if (!sound) return stop();
  output_->play(std::move(sound), ended);
  setPlayingIndex(index);
}

void SamplePlayer::stop() {
  ++sound_;
  output_->silence();
  setPlayingIndex(std::nullopt);
}

void SamplePlayer::finish(std::uint64_t sound) {
  if (sound == sound_) stop();
}

void SamplePlayer::setPlayingIndex(std::optional<std::int64_t> index) {
  if (playingIndex_ == index) return;
  playingIndex_ = index;
  Q_EMIT playingIndexChanged();
}

}  // namespace tamboro
