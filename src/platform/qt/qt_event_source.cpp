#include "platform/qt/qt_event_source.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QTime>
#include <algorithm>
#include <exception>

#include "platform/event_queue.h"
#include "platform/qt/nap.h"
#include "platform/qt/qt_text.h"

namespace firmlane {

namespace {

using namespace std::chrono_literals;

// Looks at the world stand so far apart: a stream makes thousands of passes a second, and a look costs many times what a pass
// costs. A sleep is a look of its own and comes back at once.
constexpr auto kQuietSpan = 500us;
// One event of Qt's often brings the next; so many rounds a look takes at most.
constexpr int kMostRounds = 8;
// Going to sleep costs as much processor time as some passes. So shorter rests are saved up until they make a nap.
constexpr auto kNap = 100us;
// Qt's timers count in milliseconds; shorter sleeps are naps that take nothing in.
constexpr auto kShortestWait = 1ms;
// A sleep without an end still comes up for air, should a wake-up get lost.
constexpr std::chrono::nanoseconds kLongestWait = 60s;

}  // namespace

QtEventSource::QtEventSource(double timeScale)
    : timeScale_(std::clamp(timeScale, 1.0, 1000.0)), start_(RealClock::now()), quietSpan_(realSpan(kQuietSpan.count())) {
  alarm_.setTimerType(Qt::PreciseTimer);
  alarm_.setSingleShot(true);
}

Micros QtEventSource::now() const {
  const auto real = std::chrono::duration_cast<std::chrono::duration<double, std::micro>>(RealClock::now() - start_);
  return static_cast<Micros>(real.count() * timeScale_);
}

std::string QtEventSource::timeOfDay() const { return fromQt(QTime::currentTime().toString(QStringLiteral("HH:mm:ss"))); }

void QtEventSource::poll() {
  throwIfEnded();
  if (RealClock::now() >= quietUntil_) {
    process(false);
  }
}

void QtEventSource::sleep(Micros until) {
  throwIfEnded();
  const std::chrono::nanoseconds span = until == kForever ? kLongestWait : std::min(realSpan(until - now()), kLongestWait);
  if (span >= kShortestWait) {
    alarm_.start(std::chrono::duration_cast<std::chrono::milliseconds>(span));
    process(true);
    alarm_.stop();
    return;
  }
  restOwed_ += std::max(span, std::chrono::nanoseconds::zero());
  if (restOwed_ >= kNap) {
    nap(restOwed_);
    restOwed_ = {};
  }
}

void QtEventSource::requestEnd() {
  endRequested_ = true;
  if (QCoreApplication* application = QCoreApplication::instance()) {
    if (QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance(application->thread())) {
      dispatcher->wakeUp();
    }
  }
}

void QtEventSource::process(bool wait) {
  if (processing_) {  // a slot that asks for events gets none: handlers must not run on top of Qt
    return;
  }
  processing_ = true;
  QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
  bool found = dispatcher->processEvents(wait ? QEventLoop::WaitForMoreEvents : QEventLoop::AllEvents);
  if (found) {
    for (int round = 1; found && round < kMostRounds; ++round) {
      found = dispatcher->processEvents(QEventLoop::AllEvents);
    }
    // Objects that were put off for deletion outside of any slot wait for an event loop that never comes.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  processing_ = false;
  quietUntil_ = RealClock::now() + quietSpan_;
  throwIfEnded();
}

void QtEventSource::throwIfEnded() const {
  if (endRequested_ && std::uncaught_exceptions() == 0) {
    throw ProgramEnded();
  }
}

std::chrono::nanoseconds QtEventSource::realSpan(Micros span) const {
  constexpr double kNanosPerMicro = 1000.0;
  return std::chrono::nanoseconds(static_cast<std::int64_t>(static_cast<double>(span) * kNanosPerMicro / timeScale_));
}

}  // namespace firmlane
