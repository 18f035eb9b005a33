#include "platform/event_queue.h"

#include <algorithm>

namespace firmlane {

namespace {
// How long a pass rests that found nothing to do. Short enough for loops that count thousands of passes.
constexpr Micros kIdleRest = 20;
}  // namespace

void EventQueue::PumpEvents() {
  collect();
  if (pending_.empty()) {
    source_.sleep(now() + kIdleRest);
    return;
  }
  runPending();
}

void EventQueue::WaitEvents() { waitEventsUntil(kForever); }

void EventQueue::waitEventsUntil(Micros until) {
  collect();
  while (pending_.empty() && now() < until) {
    source_.sleep(std::min(until, nextDue()));
    collect();
  }
  runPending();
}

void EventQueue::post(Handler handler) { enqueue(std::move(handler), nullptr); }

void EventQueue::holdUntil(const std::function<bool()>& done) {
  while (!done()) {
    source_.sleep(kForever);
  }
}

void EventQueue::holdUntilTime(Micros until) {
  while (now() < until) {
    source_.sleep(until);
  }
}

void EventQueue::collect() {
  source_.poll();
  const Micros time = now();
  std::vector<Timer*> due;
  std::copy_if(timers_.begin(), timers_.end(), std::back_inserter(due), [time](const Timer* t) { return t->due_ <= time; });
  std::stable_sort(due.begin(), due.end(), [](const Timer* a, const Timer* b) { return a->due_ < b->due_; });
  for (Timer* timer : due) {
    timer->raiseIfDue(time);
  }
}

void EventQueue::runPending() {
  const std::uint64_t last = lastNumber_;
  while (!pending_.empty() && pending_.front().number <= last) {
    Entry entry = std::move(pending_.front());
    pending_.pop_front();
    if (entry.slot != nullptr) {
      entry.slot->pending_ = false;
    }
    runHandler(entry.handler);
  }
}

void EventQueue::runHandler(const Handler& handler) {
  try {
    handler();
  } catch (const Failure& failure) {
    if (!failureHandler_) {
      throw;
    }
    failureHandler_(failure);
  }
}

Micros EventQueue::nextDue() const {
  Micros next = kForever;
  for (const Timer* timer : timers_) {
    next = std::min(next, timer->due_);
  }
  return next;
}

void EventQueue::enqueue(Handler handler, EventSlot* slot) { pending_.push_back({++lastNumber_, std::move(handler), slot}); }

void EventQueue::remove(const EventSlot* slot) {
  std::erase_if(pending_, [slot](const Entry& entry) { return entry.slot == slot; });
}

void EventSlot::raise() {
  if (!pending_) {
    pending_ = true;
    queue_.enqueue(handler_, this);
  }
}

void EventSlot::drop() {
  if (pending_) {
    pending_ = false;
    queue_.remove(this);
  }
}

Timer::Timer(EventQueue& queue)
    : queue_(queue), tick_(queue, [this] {
        if (OnTimer) {
          OnTimer();
        }
      }) {
  queue_.timers_.push_back(this);
}

Timer::~Timer() { std::erase(queue_.timers_, this); }

void Timer::setInterval(int milliseconds) {
  interval_ = milliseconds;
  restart();
}

void Timer::setEnabled(bool enabled) {
  enabled_ = enabled;
  restart();
}

void Timer::start(int milliseconds) {
  interval_ = milliseconds;
  setEnabled(true);
}

void Timer::restart() {
  tick_.drop();
  due_ = running() ? queue_.now() + interval_ * kMillisecond : kForever;
}

void Timer::raiseIfDue(Micros now) {
  tick_.raise();
  // Ticks that fall due while one is pending are lost, and the cadence stays: a program that was held for a minute does not
  // count sixty seconds afterwards.
  const Micros step = interval_ * kMillisecond;
  due_ += ((now - due_) / step + 1) * step;
}

}  // namespace firmlane
