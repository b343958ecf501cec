#pragma once

#include <filesystem>

namespace tamboro {

/// The desktop's viewer of files, behind an interface so that tests see what it is asked.
class FileViewer {
 public:
  FileViewer() = default;
  FileViewer(const FileViewer&) = delete;
  FileViewer& operator=(const FileViewer&) = delete;
  virtual ~FileViewer() = default;

  /// Opens a window on the folder's content; returns at once and reports nothing.
  virtual void showFolder(const std::filesystem::path& folder) = 0;
};

}  // namespace tamboro
