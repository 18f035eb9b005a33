#include "personal/unit_answer.h"

namespace firmlane {

bool UnitAnswer::await(const std::function<bool()>& come, int seconds, int interval) {
  state_.TimedOut = false;
  supervision_.setLimit(static_cast<int>(seconds * kSecond / (interval * kMillisecond)));
  form1_.Watchdog.start(interval);
  while (!come() && !state_.TimedOut) {
    if (!port_.IsOpen()) {
      form1_.Watchdog.stop();
      port_.requireOpen();
    }
    host_.queue().WaitEvents();
  }
  return come();
}

bool UnitAnswer::askAgain() {
  const MessageButton button =
      host_.showMessageBox({.text = "No answer from the receiver, try again?", .buttons = MessageButtons::YesNo});
  host_.queue().PumpEvents();
  return button == MessageButton::Yes;
}

void UnitAnswer::pause() {
  const Micros end = host_.queue().now() + kSecond;
  while (host_.queue().now() < end) {
    host_.queue().waitEventsUntil(end);
  }
}

}  // namespace firmlane
