#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/RepeatingTimer.h"

namespace tamboro::test {

/// Timers that tick when the test says so.
class HandTimers : public Timers {
 public:
  std::unique_ptr<RepeatingTimer> repeat(double seconds, std::function<void()> tick) override {
    auto timer = std::make_unique<HandTimer>();
    timer->settings = std::make_shared<Settings>(seconds, std::move(tick));
    started_.push_back(timer->settings);
    return timer;
  }
  /// One tick of every timer that runs now.
  void tick() {
    for (const auto& timer : std::vector(started_))
      if (const auto running = timer.lock()) running->second();
  }
  /// The periods of the running timers in seconds, as they were asked for.
  std::vector<double> periods() const {
    std::vector<double> result;
    for (const auto& timer : started_)
      if (const auto running = timer.lock()) result.push_back(running->first);
    return result;
  }

 private:
  using Settings = std::pair<double, std::function<void()>>;
  struct HandTimer : RepeatingTimer {
    std::shared_ptr<Settings> settings;
  };
  std::vector<std::weak_ptr<Settings>> started_;
};

}  // namespace tamboro::test
