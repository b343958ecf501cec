#pragma once

#include <QString>
#include <QStringList>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

class QWidget;

namespace tamboro {

struct AlertButton {
  enum class Role { cancel, destructive, prominent };
  QString title;
  Role role = Role::cancel;
};

/// A title, a text under it and buttons in the order in which they stand.
struct Alert {
  QString title;
  QString text;
  std::vector<AlertButton> buttons = {{QStringLiteral("OK"), AlertButton::Role::cancel}};
};

struct FolderQuestion {
  QString prompt;   ///< the accepting button
  QString message;  ///< what to choose
};

struct FilesQuestion {
  QString title;
  QStringList nameFilters;  ///< as in QFileDialog: "Audio (*.wav)"
};

/// Everything the screens ask the user outside their own window content. One interface, so that tests can answer. Each
/// call returns at once and answers once, later, on the main thread; `parent` is the window that waits for the answer.
class Prompts {
 public:
  Prompts() = default;
  Prompts(const Prompts&) = delete;
  Prompts& operator=(const Prompts&) = delete;
  virtual ~Prompts() = default;

  /// Answers with the position of the pressed button; Escape and closing press the one in the cancel role.
  virtual void alert(QWidget* parent, const Alert& alert, std::function<void(std::size_t)> answer) = 0;
  /// A folder, new ones can be made; nothing where the user gave up.
  virtual void chooseFolder(QWidget* parent, const FolderQuestion& question,
                            std::function<void(std::optional<std::filesystem::path>)> answer) = 0;
  /// Any number of files; none where the user gave up.
  virtual void chooseFiles(QWidget* parent, const FilesQuestion& question,
                           std::function<void(std::vector<std::filesystem::path>)> answer) = 0;
};

}  // namespace tamboro
