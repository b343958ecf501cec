#pragma once

#include <deque>

#include "views/controls/Prompts.h"

namespace tamboro::test {

/// Prompts whose user is the test: each waits until it is answered.
class HandPrompts : public Prompts {
 public:
  using Folder = std::optional<std::filesystem::path>;
  using Files = std::vector<std::filesystem::path>;

  std::deque<std::pair<Alert, std::function<void(std::size_t)>>> alerts;
  std::deque<std::pair<FolderQuestion, std::function<void(Folder)>>> folders;
  std::deque<std::pair<FilesQuestion, std::function<void(Files)>>> files;

  void alert(QWidget*, const Alert& alert, std::function<void(std::size_t)> answer) override {
    alerts.emplace_back(alert, std::move(answer));
  }
  void chooseFolder(QWidget*, const FolderQuestion& question, std::function<void(Folder)> answer) override {
    folders.emplace_back(question, std::move(answer));
  }
  void chooseFiles(QWidget*, const FilesQuestion& question, std::function<void(Files)> answer) override {
    files.emplace_back(question, std::move(answer));
  }
  /// Presses a button of the oldest alert that is up.
  void press(std::size_t button) {
    const auto answer = std::move(alerts.front().second);
    alerts.pop_front();
    answer(button);
  }
};

}  // namespace tamboro::test
