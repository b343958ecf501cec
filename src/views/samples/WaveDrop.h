#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "library/imports/SoundSource.h"
#include "views/controls/DraggedPaths.h"
#include "views/controls/DropFilter.h"

namespace tamboro {

/// What sounds can come of in a drag: its folders that hold no card, and its other items whose extension, in lower
/// case, is "wav".
std::vector<SoundSource> droppedSounds(const QMimeData& data, const FileSystem& files,
                                       const std::function<bool(const Path&)>& holdsCard);

/// Lets a list take sounds wherever they are dropped on it, also over a name that is being edited. A drag without any
/// that begins with a folder is for the window.
class WaveDrop : public DropFilter {
  Q_OBJECT

 public:
  /// What was dropped, and the folder that the window would have taken.
  using Dropped = std::function<void(std::vector<SoundSource> sounds, std::optional<Path> folder)>;

  /// `dropped` is called as an event of its own.
  WaveDrop(QWidget& list, const FileSystem& files, std::function<bool(const Path&)> holdsCard, Dropped dropped);

 Q_SIGNALS:
  /// A drag that would be taken hovers over the list, or doesn't any more.
  void targetedChanged(bool isTargeted);

 protected:
  bool answer(QDropEvent& event, const QWidget& over) override;
  void leave() override { setTargeted(false); }

 private:
  const std::vector<SoundSource>& sounds(const QDropEvent& event);
  void setTargeted(bool isTargeted);

  const FileSystem& files_;
  std::function<bool(const Path&)> holdsCard_;
  Dropped dropped_;
  QByteArray askedFor_;  ///< the items whose answer is `sounds_`: the disk isn't asked at every move
  std::vector<SoundSource> sounds_;
  bool isTargeted_ = false;
};

}  // namespace tamboro
