#pragma once

#include <functional>

#include "views/controls/DraggedPaths.h"
#include "views/controls/DropFilter.h"

namespace tamboro {

/// Lets a window take folders wherever they are dropped on it; all other drags are left to the children.
class FolderDrop : public DropFilter {
  Q_OBJECT

 public:
  /// `opened` is called as an event of its own.
  FolderDrop(QWidget& content, const FileSystem& files, std::function<void(const Path&)> opened);

 protected:
  bool answer(QDropEvent& event, const QWidget& over) override;

 private:
  const FileSystem& files_;
  std::function<void(const Path&)> opened_;
};

}  // namespace tamboro
