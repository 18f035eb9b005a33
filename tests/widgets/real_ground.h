// The ground that tests against the real world stand on: Qt's event loop below the program's queue, with an end to every wait.
#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "platform/event_queue.h"
#include "platform/qt/qt_event_source.h"

namespace firmlane::test {

struct RealGround {
  QtEventSource source;
  EventQueue queue{source, source};

  /// Passes events until `done` holds; fails the test when that takes longer than `limit`.
  void runUntil(const std::function<bool()>& done, Micros limit = 5 * kSecond) {
    const Micros deadline = queue.now() + limit;
    while (!done() && queue.now() < deadline) {
      queue.waitEventsUntil(std::min(deadline, queue.now() + 10 * kMillisecond));
    }
    EXPECT_TRUE(done()) << "waited " << limit / kMillisecond << " ms in vain";
  }
  /// Passes events for a span of time.
  void run(Micros span) {
    for (const Micros until = queue.now() + span; queue.now() < until;) {
      queue.waitEventsUntil(until);
    }
  }
};

}  // namespace firmlane::test
