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
    started_.push_back({seconds, std::move(tick), timer->life});
    return timer;
  }

  /// One tick of every timer that runs now.
  void tick() {
    const std::vector<Started> all = started_;
    for (const Started& timer : all) {
      if (!timer.life.expired()) timer.tick();
    }
  }
  /// The periods of the running timers in seconds, as they were asked for.
  std::vector<double> periods() const {
    std::vector<double> result;
    for (const Started& timer : started_) {
      if (!timer.life.expired()) result.push_back(timer.seconds);
    }
    return result;
  }

 private:
  struct HandTimer : RepeatingTimer {
    std::shared_ptr<int> life = std::make_shared<int>();
  };
  struct Started {
    double seconds;
    std::function<void()> tick;
    std::weak_ptr<int> life;
  };
  std::vector<Started> started_;
};

}  // namespace tamboro::test
