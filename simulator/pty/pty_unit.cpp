#include "pty/pty_unit.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace firmlane::sim {

namespace {
constexpr int kBitsPerByte = 10;
constexpr std::chrono::milliseconds kReopenWatch{5};
// However fast the unit's time runs, a program that shares a busy machine may halt for this long without breaking off.
constexpr Micros kLeastSilence = 250 * kMillisecond;
}  // namespace

PtyUnit::PtyUnit(const UnitModel& model, double timeScale)
    : timeScale_(timeScale), notifier_(terminal_.descriptor(), QSocketNotifier::Read), unit(model, *this, *this) {
  clock_.start();
  unit.timing.leastSilence = std::llround(static_cast<double>(kLeastSilence) * timeScale);
  notifier_.setEnabled(false);
  connect(&notifier_, &QSocketNotifier::activated, this, &PtyUnit::listen);
  alarm_.setSingleShot(true);
  alarm_.setTimerType(Qt::PreciseTimer);
  alarm_.callOnTimeout(this, &PtyUnit::runDue);
  reopenWatch_.setTimerType(Qt::PreciseTimer);
  reopenWatch_.callOnTimeout(this, &PtyUnit::watchForProgram);
  reopenWatch_.start(kReopenWatch);
}

PtyUnit::~PtyUnit() {
  unit.onChange = nullptr;
  unit.onHappening = nullptr;
}

void PtyUnit::listen() {
  const Bytes bytes = terminal_.read();
  // The last bytes before closing count as sent at the speed that was set then.
  hearing_ = true;
  for (const std::uint8_t byte : bytes) {
    unit.hear(byte);
  }
  hearing_ = false;
  if (!terminal_.isOpen()) {
    terminal_.discardUnread();
    notifier_.setEnabled(false);
    reopenWatch_.start(kReopenWatch);
  }
}

void PtyUnit::watchForProgram() {
  if (terminal_.isOpen() && !held_) {
    reopenWatch_.stop();
    notifier_.setEnabled(true);
  }
}

void PtyUnit::send(ByteSpan bytes, int baud) {
  lineFreeAt_ = std::max(lineFreeAt_, now()) + static_cast<Micros>(bytes.size()) * kBitsPerByte * kSecond / baud;
  after(lineFreeAt_ - now(), [this, baud, copy = Bytes(bytes.begin(), bytes.end())] {
    if (terminal_.isOpen() && terminal_.settings().baud == baud) {
      terminal_.write(copy);
    }
  });
}

void PtyUnit::holdBack(bool held) {
  // No modem lines here: what is not read fills the system's buffer until the program's writes wait.
  held_ = held;
  notifier_.setEnabled(false);
  reopenWatch_.start(kReopenWatch);
}

std::optional<LineSettings> PtyUnit::programEnd() const {
  if (!hearing_ && !terminal_.isOpen()) {
    return std::nullopt;
  }
  return terminal_.settings();
}

Micros PtyUnit::now() const { return std::llround(static_cast<double>(clock_.nsecsElapsed()) * timeScale_ / 1000); }

void PtyUnit::after(Micros span, std::function<void()> action) {
  planned_.emplace(now() + span, std::move(action));
  setAlarm();
}

void PtyUnit::runDue() {
  while (!planned_.empty() && planned_.begin()->first <= now()) {
    const auto due = planned_.extract(planned_.begin());
    due.mapped()();
  }
  setAlarm();
}

void PtyUnit::setAlarm() {
  if (planned_.empty()) {
    return;
  }
  const double left = static_cast<double>(planned_.begin()->first - now()) / timeScale_ / kMillisecond;
  alarm_.start(std::chrono::milliseconds(std::max<std::int64_t>(std::llround(std::ceil(left)), 0)));
}

}  // namespace firmlane::sim
