// Virtual time: the clock jumps to the next thing that happens, so minutes of waiting take milliseconds and come out the same
// in each run. A sleep that nothing can end fails at once instead of hanging.
#pragma once

#include <functional>
#include <map>
#include <stdexcept>
#include <utility>

#include "platform/clock.h"

namespace firmlane {

/// The program sleeps and nothing is left that could wake it.
class NothingCanHappen : public std::logic_error {
 public:
  NothingCanHappen() : std::logic_error("the program waits for something that can never come") {}
};

class VirtualTime : public Clock, public EventSource {
 public:
  using Action = std::function<void()>;

  [[nodiscard]] Micros now() const override { return now_; }
  [[nodiscard]] std::string timeOfDay() const override;
  void poll() override;
  void sleep(Micros until) override;

  /// The world acts at a time, or after a span, both in microseconds. Actions at one time run in the order of their planning.
  /// They run outside of any handler: they may put events into the queue and must not run handlers.
  void at(Micros time, Action action);
  void after(Micros span, Action action) { at(now_ + span, std::move(action)); }

  /// Fails with NothingCanHappen when the clock passes this time: a run that never ends is found even while timers tick.
  void setEnd(Micros time) { end_ = time; }

 private:
  void runDue();

  Micros now_ = 0;
  Micros end_ = kForever;
  std::multimap<Micros, Action> actions_;
};

}  // namespace firmlane
