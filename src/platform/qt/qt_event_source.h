// The real clock and the real event source: Qt's event loop, run from below. Qt's slots only put events into the queue; no
// handler ever runs inside one, so nothing of Qt is on the stack when a handler throws.
#pragma once

#include <QTimer>
#include <atomic>
#include <chrono>

#include "platform/clock.h"

namespace firmlane {

class QtEventSource : public Clock, public EventSource {
 public:
  /// The program's clock runs `timeScale` times as fast as the real one; 1 to 1000. Needs a QCoreApplication.
  explicit QtEventSource(double timeScale = 1.0);

  [[nodiscard]] Micros now() const override;
  [[nodiscard]] std::string timeOfDay() const override;
  void poll() override;
  void sleep(Micros until) override;

  /// Makes the next poll or sleep throw ProgramEnded, and those behind it too. From any thread and from slots.
  void requestEnd();

 private:
  using RealClock = std::chrono::steady_clock;

  void process(bool wait);
  void throwIfEnded() const;
  [[nodiscard]] std::chrono::nanoseconds realSpan(Micros span) const;

  double timeScale_;
  RealClock::time_point start_;
  std::chrono::nanoseconds quietSpan_;
  RealClock::time_point quietUntil_;
  std::chrono::nanoseconds restOwed_{0};
  bool processing_ = false;
  std::atomic<bool> endRequested_ = false;
  QTimer alarm_;
};

}  // namespace firmlane
