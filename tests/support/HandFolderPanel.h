#pragma once

#include <deque>
#include <utility>
#include <vector>

#include "platform/FolderPanel.h"

namespace tamboro::test {

/// A folder panel whose user is the test: answers prepared beforehand are given at once, others when the test says.
class HandFolderPanel : public FolderPanel {
 public:
  std::vector<FolderRequest> requests;
  std::deque<std::optional<Path>> prepared;

  void chooseFolder(const FolderRequest& request, std::function<void(std::optional<Path>)> answer) override {
    requests.push_back(request);
    open_.push_back(std::move(answer));
    if (prepared.empty()) return;
    const auto folder = std::move(prepared.front());
    prepared.pop_front();
    this->answer(folder);
  }
  /// Answers the oldest panel that is still up.
  void answer(const std::optional<Path>& folder) {
    const auto callback = std::move(open_.front());
    open_.pop_front();
    callback(folder);
  }
  std::size_t open() const { return open_.size(); }

 private:
  std::deque<std::function<void(std::optional<Path>)>> open_;
};

}  // namespace tamboro::test
