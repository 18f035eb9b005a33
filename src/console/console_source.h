// The event source of the console: the world below it, and the session that is served whenever the program looks at the world.
#pragma once

#include "console/console_session.h"
#include "platform/clock.h"

namespace firmlane {

class ConsoleSource : public EventSource {
 public:
  explicit ConsoleSource(EventSource& world) : world_(world) {}

  /// From now on the session is served. It must live until the program has ended.
  void attach(ConsoleSession& session) { session_ = &session; }

  // Both throw ProgramEnded once the script has asked for the end.
  void poll() override;
  void sleep(Micros until) override;

 private:
  bool serve();

  EventSource& world_;
  ConsoleSession* session_ = nullptr;
};

}  // namespace firmlane
