#pragma once

#include <QObject>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

namespace tamboro {

class AudioOutput;

/// Plays one sample at a time, so that a sound can be heard before it is assigned. A sound starts at its beginning, at
/// full volume, once. Main thread only; no operation reports a failure: a file that can't be opened or a machine
/// without sound leaves the player idle.
class SamplePlayer : public QObject {
  Q_OBJECT

 public:
  explicit SamplePlayer(QObject* parent = nullptr);
  ~SamplePlayer() override;

  /// The wave id of the sample that sounds; absent once its last frame was heard.
  std::optional<std::int64_t> playingIndex() const { return playingIndex_; }
  /// Cuts off any sound and starts this one.
  void play(const std::filesystem::path& location, std::int64_t index);
  void stop();

 Q_SIGNALS:
  void playingIndexChanged();

 private:
  void finish(std::uint64_t sound);
  void setPlayingIndex(std::optional<std::int64_t> index);

  std::optional<std::int64_t> playingIndex_;
  /// Counts the sounds, so that the end of an earlier one is told from the current one's.
  std::uint64_t sound_ = 0;
  std::unique_ptr<AudioOutput> output_;
};

}  // namespace tamboro
