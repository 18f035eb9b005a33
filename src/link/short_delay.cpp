#include "link/short_delay.h"

namespace firmlane {

ShortDelay::ShortDelay(EventQueue& queue, RunState& state, Form1& form1) : queue_(queue), state_(state), form1_(form1) {
  form1.Delaytimer.OnTimer = [this] {
    if (--state_.DelayTicks <= 0) {
      state_.DelayDone = true;
      form1_.Delaytimer.stop();
    }
  };
}

void ShortDelay::Delay(int milliseconds, int ticks) {
  state_.DelayDone = false;
  form1_.Delaytimer.setInterval(milliseconds);
  state_.DelayTicks = static_cast<std::int16_t>(ticks);
  state_.DelayDone = false;
  form1_.Delaytimer.setEnabled(true);
  while (!state_.DelayDone) {
    queue_.WaitEvents();
  }
}

}  // namespace firmlane
