// The limit on a unit's silence in the waits for which Watchdog is off. It begins with the wait that it stands in and counts
// ticks of its own, so time that passes under a message box does not count.
#pragma once

#include "platform/event_queue.h"

namespace firmlane {

class SilenceLimit {
 public:
  explicit SilenceLimit(EventQueue& queue) : timer_(queue) {
    constexpr int kTick = 1000;
    timer_.OnTimer = [this] { ++seconds_; };
    timer_.start(kTick);
  }

  /// What a unit that owes an answer has.
  static constexpr int kSeconds = 60;

  [[nodiscard]] bool passed(int seconds = kSeconds) const { return seconds_ >= seconds; }

 private:
  Timer timer_;
  int seconds_ = 0;
};

}  // namespace firmlane
