#include "platform/ThreadJobs.h"

#include <QObject>
#include <QThread>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <utility>

namespace tamboro {

namespace {

using JobId = BackgroundJobs::JobId;

/// The works that have ended, in that order. The one thing that the threads share.
class EndedQueue {
 public:
  void push(JobId job) {
    {
      const std::lock_guard lock(mutex_);
      jobs_.push_back(job);
    }
    changed_.notify_one();
  }

  void remove(JobId job) {
    const std::lock_guard lock(mutex_);
    std::erase(jobs_, job);
  }

  bool tryPop(JobId& job) {
    const std::lock_guard lock(mutex_);
    return popLocked(job);
  }

  JobId pop() {
    std::unique_lock lock(mutex_);
    JobId job = 0;
    changed_.wait(lock, [&] { return popLocked(job); });
    return job;
  }

 private:
  bool popLocked(JobId& job) {
    if (jobs_.empty()) return false;
    job = jobs_.front();
    jobs_.pop_front();
    return true;
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<JobId> jobs_;
};

/// A thread for each job: there are seldom more than one or two, each of them takes long, and none may wait behind
/// another one's slow card. What `done` holds never leaves the main thread.
class ThreadJobs : public BackgroundJobs {
 public:
  ThreadJobs() = default;
  ThreadJobs(const ThreadJobs&) = delete;
  ThreadJobs& operator=(const ThreadJobs&) = delete;
  ~ThreadJobs() override {
    for (auto& [number, job] : jobs_)
      job.thread->wait();
  }

  JobId start(std::function<void()> work, std::function<void()> done) override {
    const JobId number = ++lastNumber_;
    auto run = [this, number, work = std::move(work)]() noexcept {
      work();
      ended_.push(number);
      QMetaObject::invokeMethod(
          &receiver_, [this] { deliverOne(); }, Qt::QueuedConnection);
    };
    Job& job = jobs_[number];
    job.done = std::move(done);
    job.thread.reset(QThread::create(std::move(run)));
    job.thread->start(QThread::HighPriority);
    return number;
  }

  void waitFor(JobId number) override {
    const auto job = jobs_.find(number);
    if (job == jobs_.end()) return;
    job->second.thread->wait();
    ended_.remove(number);
    finish(number);
  }

  void waitForAll() override {
    while (!jobs_.empty())
      finish(ended_.pop());
  }

 private:
  struct Job {
    std::unique_ptr<QThread> thread;
    std::function<void()> done;
  };

  void deliverOne() {
    // The event of an end that was waited for finds nothing, or a later end a little early.
    JobId number = 0;
    if (ended_.tryPop(number)) finish(number);
  }

  void finish(JobId number) {
    const auto node = jobs_.extract(number);
    node.mapped().thread->wait();  // what the work held is gone with it
    node.mapped().done();
  }

  QObject receiver_;
  EndedQueue ended_;
  std::map<JobId, Job> jobs_;
  JobId lastNumber_ = 0;
};

}  // namespace

std::unique_ptr<BackgroundJobs> makeThreadJobs() {
  return std::make_unique<ThreadJobs>();
}

}  // namespace tamboro
