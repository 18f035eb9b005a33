#include "pty/pty_unit.h"

#include <algorithm>
#include <chrono>

namespace firmlane::sim {

namespace {
constexpr int kBitsPerByte = 10;
constexpr std::chrono::milliseconds kReopenWatch{5};
}  // namespace

PtyUnit::PtyUnit(const UnitModel& model, double timeScale)
    : time_(timeScale), notifier_(terminal_.descriptor(), QSocketNotifier::Read), unit(model, *this, time_) {
  unit.timing.leastSilence = time_.leastSilence();
  notifier_.setEnabled(false);
  connect(&notifier_, &QSocketNotifier::activated, this, &PtyUnit::listen);
  reopenWatch_.setTimerType(Qt::PreciseTimer);
  reopenWatch_.callOnTimeout(this, &PtyUnit::watchForProgram);
  reopenWatch_.start(kReopenWatch);
}

PtyUnit::~PtyUnit() {
  unit.onChange = nullptr;
  unit.onHappening = nullptr;
}

void PtyUnit::pull() {
  notifier_.setEnabled(false);
  reopenWatch_.stop();
  terminal_.vanish();
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
  lineFreeAt_ = std::max(lineFreeAt_, time_.now()) + static_cast<Micros>(bytes.size()) * kBitsPerByte * kSecond / baud;
  time_.after(lineFreeAt_ - time_.now(), [this, baud, copy = Bytes(bytes.begin(), bytes.end())] {
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

}  // namespace firmlane::sim
