// The short delays of the system, all made by Delaytimer of the main form.
#pragma once

#include "platform/event_queue.h"
#include "state/form1.h"
#include "state/run_state.h"

namespace firmlane {

class ShortDelay {
 public:
  ShortDelay(EventQueue& queue, RunState& state, Form1& form1);

  /// Lets events run for `ticks` ticks of `milliseconds` each.
  void Delay(int milliseconds, int ticks);

 private:
  EventQueue& queue_;
  RunState& state_;
  Form1& form1_;
};

}  // namespace firmlane
