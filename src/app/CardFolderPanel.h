#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>
#include <vector>

#include "platform/FolderPanel.h"

namespace tamboro {

/// Where the panel for a card opens: at the first volume that holds one, else at the first place for volumes that
/// exists, else at home. Only volumes below one of the places are asked: a look into others can take long.
Path cardPanelStart(const std::vector<Path>& volumes, const std::vector<Path>& places, const Path& home,
                    const std::function<bool(const Path&)>& holdsCard, const std::function<bool(const Path&)>& exists);

/// Where this system mounts volumes, the user's own places first.
std::vector<Path> volumePlaces(const Path& userName);

/// The desktop's folder panel for choosing a card.
class CardFolderPanel : public FolderPanel {
 public:
  explicit CardFolderPanel(const FileSystem& files) : files_(files) {}

  /// The window over which the panel stands, and how a card is told; set before the panel is first used.
  void attach(QWidget* window, std::function<bool(const Path&)> holdsCard);
  void chooseFolder(const FolderRequest& request, std::function<void(std::optional<Path>)> answer) override;

 private:
  Path start() const;

  const FileSystem& files_;
  QPointer<QWidget> window_;
  std::function<bool(const Path&)> holdsCard_;
};

}  // namespace tamboro
