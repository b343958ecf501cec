#pragma once

#include <QMimeData>
#include <QObject>
#include <functional>
#include <optional>

#include "library/store/RolandLibrary.h"

class QDropEvent;
class QWidget;

namespace tamboro {

/// Links are followed; what can't be asked is none.
bool isFolderHere(const FileSystem& files, const Path& path);

/// The folder that a drag carries: its first item, when that is a folder on this computer. Further items don't count.
std::optional<Path> droppedFolder(const QMimeData& data, const FileSystem& files);

/// Lets a window take folders wherever they are dropped on it, also over a field; all other drags are left to the
/// children. A child that answers for its own place has to be made later: the last filter is asked first.
class FolderDrop : public QObject {
  Q_OBJECT

 public:
  /// `opened` is called as an event of its own: the source of the drag isn't kept waiting for a load.
  FolderDrop(QWidget& content, const FileSystem& files, std::function<void(const Path&)> opened);
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool takes(QDropEvent& event);

  QWidget& content_;
  const FileSystem& files_;
  std::function<void(const Path&)> opened_;
};

}  // namespace tamboro
