// Waiting for a unit's answer, with a limit. Watchdog keeps the limit, so time that passes under a message box does not count.
#pragma once

#include <functional>

#include "platform/screen.h"
#include "platform/serial_port.h"
#include "progress/supervision.h"

namespace firmlane {

/// Seconds that a unit has for an answer in the factory's procedures.
inline constexpr int kAnswerSeconds = 10;
/// Bytes of the shortest answer to them: the receive event comes for that many.
inline constexpr int kShortestAnswer = 8;
/// Milliseconds between two of Timer3's reports while one of them runs.
inline constexpr int kReportInterval = 100;

class UnitAnswer {
 public:
  UnitAnswer(FormHost& host, const SerialPort& port, Supervision& supervision, RunState& state, Form1& form1)
      : host_(host), port_(port), supervision_(supervision), state_(state), form1_(form1) {}

  /// Waits, passing events, until `come` holds or `seconds` have gone by; `interval` is that of Watchdog's ticks in milliseconds.
  /// Returns whether it came. Clears TimedOut first; Watchdog runs on afterwards. Throws Failure as soon as the port has gone.
  bool await(const std::function<bool()>& come, int seconds = kAnswerSeconds, int interval = 1000);

  /// Tells the user that no answer came and offers another try. An answer that arrived while the question stood is taken in.
  bool askAgain();

  /// Passes events for about a second, so that the user can press Exit between two tries.
  void pause();

 private:
  FormHost& host_;
  const SerialPort& port_;
  Supervision& supervision_;
  RunState& state_;
  Form1& form1_;
};

}  // namespace firmlane
