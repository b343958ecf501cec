#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <utility>

#include "platform/BackgroundJobs.h"

namespace tamboro::test {

/// Jobs that run when the test says so, on its own thread.
class HandJobs : public BackgroundJobs {
 public:
  JobId start(std::function<void()> work, std::function<void()> done) override {
    waiting_.push_back({++lastId_, std::move(work), std::move(done)});
    return lastId_;
  }
  void waitFor(JobId id) override {
    const auto waiting = std::ranges::find(waiting_, id, &Job::id);
    if (waiting != waiting_.end()) {
      std::rotate(waiting_.begin(), waiting, waiting + 1);
      runWork();
    }
    const auto ended = std::ranges::find(ended_, id, &Job::id);
    if (ended == ended_.end()) return;
    std::rotate(ended_.begin(), ended, ended + 1);
    deliver();
  }
  void waitForAll() override { runAll(); }

  /// Runs the oldest work that hasn't run; false where there is none.
  bool runWork() {
    if (waiting_.empty()) return false;
    Job job = std::move(waiting_.front());
    waiting_.pop_front();
    job.work();
    job.work = nullptr;  // what it held is gone before its end
    ended_.push_back(std::move(job));
    return true;
  }
  /// Runs the end of the oldest work that has run; false where there is none.
  bool deliver() {
    if (ended_.empty()) return false;
    const auto done = std::move(ended_.front().done);
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
    JobId id;
    std::function<void()> work;
    std::function<void()> done;
  };
  std::deque<Job> waiting_;
  std::deque<Job> ended_;
  JobId lastId_ = 0;
};

}  // namespace tamboro::test
