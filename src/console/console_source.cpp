#include "console/console_source.h"

#include <algorithm>
#include <exception>

namespace firmlane {

void ConsoleSource::poll() {
  world_.poll();
  serve();
}

void ConsoleSource::sleep(Micros until) {
  // Handlers have run since the last look, and a message box sleeps without one.
  if (serve()) {
    return;
  }
  world_.sleep(session_ == nullptr ? until : std::min(until, session_->deadline()));
  serve();
}

bool ConsoleSource::serve() {
  if (session_ == nullptr) {
    return false;
  }
  const bool acted = session_->serve();
  if (session_->quitRequested() && std::uncaught_exceptions() == 0) {
    throw ProgramEnded();
  }
  return acted;
}

}  // namespace firmlane
