// What watches a long operation: Watchdog gives every wait its limit, Timer1 keeps a bar moving, UpdateProgress shows how far a
// stream has gone. None of them ends a wait: they raise a flag or change the display, and the loop that waits decides.
#pragma once

#include <cstdint>

#include "progress/activity.h"
#include "progress/wizard_in_charge.h"

namespace firmlane {

class Supervision {
 public:
  Supervision(EventQueue& queue, RunState& state, Form1& form1, WizardInCharge& wizard, Activity& whatGoesOn);

  /// What goes on, for the operations that are supervised to tell it. Limits used up and bytes sent it learns from here.
  Activity& activity;

  /// Ticks counted since this was last set to 0.
  std::int16_t WatchdogTicks = 0;
  /// Tick count at which TimedOut rises.
  std::int16_t WatchdogLimit = 0;
  /// An image or a stream is going out: Watchdog's ticks show its progress.
  bool Sending = false;
  std::int32_t BytesSent = 0;
  std::int32_t BytesTotal = 0;
  /// Position of the moving bar, 0 to 99.
  std::int16_t BarValue = 0;
  /// A file download runs: the bar moves in steps of 1 instead of 5.
  bool SlowBar = false;

  /// Starts counting anew towards `limit` ticks. TimedOut stays as it is.
  void setLimit(int limit);

  /// An image or a stream of `total` bytes (for front panels, digits) begins: nothing of it is sent yet.
  void beginSending(std::int32_t total);

  /// Shows BytesSent and the percentage of BytesTotal, then makes one pass of the event queue. Throws Failure when BytesTotal is
  /// 0.
  void UpdateProgress();

  /// BytesSent of BytesTotal in percent, rounded down; `factor` 4 for front panels, whose total counts digits and not bytes.
  /// Throws Failure when BytesTotal is 0.
  [[nodiscard]] int percentSent(int factor) const;
  /// 4 when FlashTarget is a front panel, else 1.
  [[nodiscard]] int progressFactor() const;
  /// "Programmed ", BytesSent, " bytes (", `percent`, "%)".
  void showPercentText(int percent);
  /// That text, and the bar at that value, mirrored.
  void showProgress(int percent);

 private:
  void onWatchdog();
  void onTimer1();

  EventQueue& queue_;
  RunState& state_;
  Form1& form1_;
  WizardInCharge& wizard_;
};

}  // namespace firmlane
