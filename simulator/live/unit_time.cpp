#include "live/unit_time.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace firmlane::sim {

namespace {
constexpr Micros kLeastSilence = 250 * kMillisecond;
}  // namespace

UnitTime::UnitTime(double timeScale) : timeScale_(timeScale) {
  clock_.start();
  alarm_.setSingleShot(true);
  alarm_.setTimerType(Qt::PreciseTimer);
  alarm_.callOnTimeout([this] { runDue(); });
}

Micros UnitTime::now() const { return std::llround(static_cast<double>(clock_.nsecsElapsed()) * timeScale_ / 1000); }

Micros UnitTime::leastSilence() const { return std::llround(static_cast<double>(kLeastSilence) * timeScale_); }

void UnitTime::after(Micros span, std::function<void()> action) {
  planned_.emplace(now() + span, std::move(action));
  setAlarm();
}

void UnitTime::runDue() {
  while (!planned_.empty() && planned_.begin()->first <= now()) {
    const auto due = planned_.extract(planned_.begin());
    due.mapped()();
  }
  setAlarm();
}

void UnitTime::setAlarm() {
  if (planned_.empty()) {
    return;
  }
  const double left = static_cast<double>(planned_.begin()->first - now()) / timeScale_ / kMillisecond;
  alarm_.start(std::chrono::milliseconds(std::max<std::int64_t>(std::llround(std::ceil(left)), 0)));
}

}  // namespace firmlane::sim
