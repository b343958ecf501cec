#pragma once

#include <QString>
#include <functional>
#include <optional>

#include "platform/FileSystem.h"

namespace tamboro {

struct FolderRequest {
  QString prompt;   ///< the accepting button
  QString message;  ///< what to choose
};

/// Asks the user for one folder.
class FolderPanel {
 public:
  FolderPanel() = default;
  FolderPanel(const FolderPanel&) = delete;
  FolderPanel& operator=(const FolderPanel&) = delete;
  virtual ~FolderPanel() = default;

  /// Answers once, on the main thread, with the folder or with nothing where the user gave up.
  virtual void chooseFolder(const FolderRequest& request, std::function<void(std::optional<Path>)> answer) = 0;
};

}  // namespace tamboro
