#pragma once

#include "views/controls/Prompts.h"

namespace tamboro {

/// Alerts as sheets of our own, panels as the desktop's dialogs where it has some.
class DesktopPrompts : public Prompts {
 public:
  void alert(QWidget* parent, const Alert& alert, std::function<void(std::size_t)> answer) override;
  void chooseFolder(QWidget* parent, const FolderQuestion& question,
                    std::function<void(std::optional<std::filesystem::path>)> answer) override;
  void chooseFiles(QWidget* parent, const FilesQuestion& question,
                   std::function<void(std::vector<std::filesystem::path>)> answer) override;
};

/// Opens a panel for one folder at `start`.
void openFolderPanel(QWidget* parent, const FolderQuestion& question, const QString& start, bool makesFolders,
                     std::function<void(std::optional<std::filesystem::path>)> answer);

/// The bytes of a path that the toolkit gave as text.
std::filesystem::path pathOf(const QString& text);

}  // namespace tamboro
