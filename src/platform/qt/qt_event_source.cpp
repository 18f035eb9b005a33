#include "platform/qt/qt_event_source.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QTime>
#include <algorithm>
#include <exception>
#include <thread>

#include "platform/event_queue.h"
#include "platform/qt/qt_text.h"

namespace firmlane {

namespace {

using namespace std::chrono_literals;

// After a look at the world that found nothing the next one may wait so long: a stream makes thousands of passes a second, and
// a look costs many times what a pass costs.
constexpr auto kQuietSpan = 500us;
// Below this a sleep of the operating system takes far longer than asked for; such a rest is not worth one.
constexpr auto kShortestNap = 5us;
// Qt's timers count in milliseconds; shorter sleeps are naps that take nothing in.
constexpr auto kShortestWait = 1ms;
// A sleep without an end still comes up for air, should a wake-up get lost.
constexpr auto kLongestWait = std::chrono::microseconds(60s);

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
  const std::chrono::microseconds span = until == kForever ? kLongestWait : std::min(realSpan(until - now()), kLongestWait);
  if (span >= kShortestWait) {
    alarm_.start(std::chrono::duration_cast<std::chrono::milliseconds>(span));
    process(true);
    alarm_.stop();
  } else if (span >= kShortestNap) {
    std::this_thread::sleep_for(span);
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
  const bool found = dispatcher->processEvents(wait ? QEventLoop::WaitForMoreEvents : QEventLoop::AllEvents);
  if (found) {
    // Objects that were put off for deletion outside of any slot wait for an event loop that never comes.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  processing_ = false;
  quietUntil_ = found ? RealClock::time_point() : RealClock::now() + quietSpan_;
  throwIfEnded();
}

void QtEventSource::throwIfEnded() const {
  if (endRequested_ && std::uncaught_exceptions() == 0) {
    throw ProgramEnded();
  }
}

std::chrono::microseconds QtEventSource::realSpan(Micros span) const {
  return std::chrono::microseconds(static_cast<std::int64_t>(static_cast<double>(span) / timeScale_));
}

}  // namespace firmlane
