// The one queue through which everything happens: clicks, receive events, timer ticks, HTTP states. It keeps the rules of
// nesting and of holding in one place for every backend. It knows nothing of what the events mean.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <vector>

#include "platform/clock.h"
#include "platform/failure.h"

namespace firmlane {

class EventSlot;
class Timer;

/// Thrown by the operation that ends the program, caught in main alone. Ports and files close as the stack unwinds.
struct ProgramEnded {};

class EventQueue {
 public:
  using Handler = std::function<void()>;

  EventQueue(Clock& clock, EventSource& source) : clock_(clock), source_(source) {}
  EventQueue(const EventQueue&) = delete;
  EventQueue& operator=(const EventQueue&) = delete;
  ~EventQueue() = default;

  /// Runs the events that are pending now, each once, and returns. Handlers may call it again, to any depth. A pass that finds
  /// nothing rests for some ten microseconds, so a loop that counts passes does not burn the processor.
  void PumpEvents();

  /// Sleeps until an event is pending, then runs what is pending. The call for every loop that only events can end.
  void WaitEvents();

  /// As WaitEvents, but returns at the latest when the clock reaches `until`.
  void waitEventsUntil(Micros until);

  /// Puts an event behind those already pending.
  void post(Handler handler);

  /// Sleeps until `done` holds; no handler runs meanwhile, events collect. This is what a message box does to the program.
  void holdUntil(const std::function<bool()>& done);

  /// Sleeps until the clock reaches `until`; no handler runs meanwhile.
  void holdUntilTime(Micros until);

  /// Takes what a handler throws as Failure when it runs as an event, so it never strikes the wait that was pumping.
  void setFailureHandler(std::function<void(const Failure&)> handler) { failureHandler_ = std::move(handler); }

  [[nodiscard]] Micros now() const { return clock_.now(); }
  [[nodiscard]] const Clock& clock() const { return clock_; }

 private:
  friend class EventSlot;
  friend class Timer;

  struct Entry {
    std::uint64_t number;
    Handler handler;
    EventSlot* slot;  // null for a plain posted event
  };

  void collect();
  void runPending();
  void runHandler(const Handler& handler);
  [[nodiscard]] Micros nextDue() const;
  void enqueue(Handler handler, EventSlot* slot);
  void remove(const EventSlot* slot);

  Clock& clock_;
  EventSource& source_;
  std::deque<Entry> pending_;
  std::uint64_t lastNumber_ = 0;
  std::vector<Timer*> timers_;
  std::function<void(const Failure&)> failureHandler_;
};

/// An event of which at most one is pending, such as a timer's tick or a port's receive event. Its handler may run again while
/// an earlier run is still on the stack.
class EventSlot {
 public:
  EventSlot(EventQueue& queue, EventQueue::Handler handler) : queue_(queue), handler_(std::move(handler)) {}
  ~EventSlot() { drop(); }
  EventSlot(const EventSlot&) = delete;
  EventSlot& operator=(const EventSlot&) = delete;

  /// Makes the event pending; no effect when it already is.
  void raise();
  /// Takes a pending event back.
  void drop();

 private:
  friend class EventQueue;

  EventQueue& queue_;
  EventQueue::Handler handler_;
  bool pending_ = false;
};

/// A repeating timer with an enable switch and an interval in milliseconds; interval 0 means no ticks. Setting the interval or
/// enabling starts the interval anew and drops a tick that is pending; so does disabling.
class Timer {
 public:
  explicit Timer(EventQueue& queue);
  ~Timer();
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  void setInterval(int milliseconds);
  void setEnabled(bool enabled);
  /// Sets the interval and enables.
  void start(int milliseconds);
  void stop() { setEnabled(false); }
  [[nodiscard]] int interval() const { return interval_; }
  [[nodiscard]] bool enabled() const { return enabled_; }

  /// What a tick does.
  std::function<void()> OnTimer;

 private:
  friend class EventQueue;

  void restart();
  [[nodiscard]] bool running() const { return enabled_ && interval_ > 0; }
  void raiseIfDue(Micros now);

  EventQueue& queue_;
  EventSlot tick_;
  int interval_ = 0;
  bool enabled_ = false;
  Micros due_ = kForever;
};

}  // namespace firmlane
