#include "progress/supervision.h"

namespace firmlane {

namespace {
constexpr int kFull = 100;
constexpr int kFrontFactor = 4;
constexpr int kBarStep = 5;
constexpr int kSlowBarStep = 1;
}  // namespace

Supervision::Supervision(EventQueue& queue, RunState& state, Form1& form1, WizardInCharge& wizard, Activity& whatGoesOn)
    : activity(whatGoesOn), queue_(queue), state_(state), form1_(form1), wizard_(wizard) {
  form1.Watchdog.OnTimer = [this] { onWatchdog(); };
  form1.Timer1.OnTimer = [this] { onTimer1(); };
}

void Supervision::setLimit(int limit) {
  WatchdogTicks = 0;
  WatchdogLimit = static_cast<std::int16_t>(limit);
}

void Supervision::onWatchdog() {
  if (WatchdogTicks < INT16_MAX) {
    ++WatchdogTicks;
  }
  activity.used(WatchdogTicks * form1_.Watchdog.interval() * kMillisecond);
  // A unit that has given its verdict amid the image is not waited for any more; the rest only goes out.
  const bool verdictIsIn = Sending && state_.FlashPhase == flash_phase::kFinished;
  if (WatchdogTicks >= WatchdogLimit && !verdictIsIn) {
    state_.TimedOut = true;
  }
  if (Sending) {
    // Of an image without bytes there is nothing to show; the tick must not fail for it, again and again.
    if (BytesTotal > 0) {
      showProgress(percentSent(1));
    }
    queue_.PumpEvents();
  }
}

void Supervision::onTimer1() {
  if (state_.ImageDone) {
    wizard_.setBar(kFull);
    return;
  }
  BarValue = static_cast<std::int16_t>((BarValue + (SlowBar ? kSlowBarStep : kBarStep)) % kFull);
  wizard_.setBar(BarValue);
}

void Supervision::UpdateProgress() {
  showProgress(percentSent(progressFactor()));
  queue_.PumpEvents();
}

int Supervision::progressFactor() const {
  const std::string& target = state_.FlashTarget;
  return target == "FrontFlash" || target == "Front1Flash" || target == "Front2Flash" ? kFrontFactor : 1;
}

int Supervision::percentSent(int factor) const {
  if (BytesTotal == 0) {
    throw Failure(failure_number::kDivisionByZero, "Division by zero");
  }
  return static_cast<int>(std::int64_t{BytesSent} * factor * kFull / BytesTotal);
}

void Supervision::beginSending(std::int32_t total) {
  BytesSent = 0;
  BytesTotal = total;
  Sending = true;
}

void Supervision::showPercentText(int percent) {
  state_.ProgressPercent = static_cast<std::int16_t>(percent);
  activity.progress(BytesSent, BytesTotal / progressFactor());
  form1_.lblProgressInfo.Caption = "Programmed " + std::to_string(BytesSent) + " bytes (" + std::to_string(percent) + "%)";
}

void Supervision::showProgress(int percent) {
  showPercentText(percent);
  wizard_.setBar(percent);
}

}  // namespace firmlane
