// A unit's time on Qt's event loop: the real clock, or a multiple of it.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <functional>
#include <map>

#include "units/unit_line.h"

namespace firmlane::sim {

class UnitTime : public UnitClock {
 public:
  /// Runs `timeScale` times as fast as the real clock.
  explicit UnitTime(double timeScale);

  [[nodiscard]] Micros now() const override;
  void after(Micros span, std::function<void()> action) override;

  /// How long a program may halt on a busy machine before a unit may take that for its end, however fast its time runs.
  [[nodiscard]] Micros leastSilence() const;

  /// Does all that is due by now without waiting for the event loop.
  void runDue();

 private:
  void setAlarm();

  double timeScale_;
  QElapsedTimer clock_;
  std::multimap<Micros, std::function<void()>> planned_;
  QTimer alarm_;  // for the first of them
};

}  // namespace firmlane::sim
