#include <signal.h>

#include <QCoreApplication>

#include "console/end_on_signal.h"

namespace firmlane::sim {

/// The signals stay blocked and are looked for.
EndOnSignal::EndOnSignal() {
  sigset_t ends;
  sigemptyset(&ends);
  sigaddset(&ends, SIGINT);
  sigaddset(&ends, SIGTERM);
  sigprocmask(SIG_BLOCK, &ends, nullptr);
  timer_.callOnTimeout([] {
    sigset_t pending;
    sigpending(&pending);
    if (sigismember(&pending, SIGINT) == 1 || sigismember(&pending, SIGTERM) == 1) {
      QCoreApplication::quit();
    }
  });
  constexpr std::chrono::milliseconds kLook{100};
  timer_.start(kLook);
}

}  // namespace firmlane::sim
