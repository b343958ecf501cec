#pragma once

#include <deque>
#include <functional>
#include <utility>

#include "platform/BackgroundJobs.h"

namespace tamboro::test {

/// Jobs that run when the test says so, on its own thread.
class HandJobs : public BackgroundJobs {
 public:
  void start(std::function<void()> work, std::function<void()> done) override {
    waiting_.push_back({std::move(work), std::move(done)});
  }
  void waitForAll() override { runAll(); }

  /// Runs the oldest work that hasn't run; false where there is none.
  bool runWork() {
    if (waiting_.empty()) return false;
    Job job = std::move(waiting_.front());
    waiting_.pop_front();
    job.work();
    ended_.push_back(std::move(job.done));
    return true;
  }
  /// Runs the end of the oldest work that has run; false where there is none.
  bool deliver() {
    if (ended_.empty()) return false;
    const auto done = std::move(ended_.front());
    ended_.pop_front();
    done();
    return true;
  }
  /// Runs and delivers until nothing is left, what these start included.
  void runAll() {
    while (runWork() || deliver()) {
    }
  }

  std::size_t waiting() const { return waiting_.size(); }
  std::size_t undelivered() const { return ended_.size(); }

 private:
  struct Job {
    std::function<void()> work;
    std::function<void()> done;
  };
  std::deque<Job> waiting_;
  std::deque<std::function<void()>> ended_;
};

}  // namespace tamboro::test
