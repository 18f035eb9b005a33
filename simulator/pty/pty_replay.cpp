#include "pty/pty_replay.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace firmlane::sim {

namespace {
constexpr std::chrono::milliseconds kLook{1};
}  // namespace

PtyReplay::PtyReplay(const Recording& recording, double timeScale)
    : timeScale_(timeScale), replay(recording, *this, ReplayPart::LineAndWeb) {
  for (const Entry& entry : recording.entries) {
    if (entry.kind == "open" && terminals_.find(entry.port()) == terminals_.end()) {
      terminals_.emplace(entry.port(), std::make_unique<PseudoTerminal>());
    }
  }
  clock_.start();
  looking_.setTimerType(Qt::PreciseTimer);
  looking_.callOnTimeout(this, &PtyReplay::look);
  looking_.start(kLook);
}

PtyReplay::~PtyReplay() = default;

std::map<int, std::string> PtyReplay::devices() const {
  std::map<int, std::string> devices;
  for (const auto& [port, terminal] : terminals_) {
    devices[port] = terminal->path();
  }
  return devices;
}

void PtyReplay::look() {
  for (const auto& [port, terminal] : terminals_) {
    if (!terminal) {
      continue;  // gone, as in the record
    }
    if (const Bytes bytes = terminal->read(); !bytes.empty()) {
      replay.hear(port, bytes);
    }
  }
}

Micros PtyReplay::now() const { return std::llround(static_cast<double>(clock_.nsecsElapsed()) * timeScale_ / 1000); }

void PtyReplay::after(Micros span, std::function<void()> action) {
  const double real = static_cast<double>(span) / timeScale_ / kMillisecond;
  QTimer::singleShot(std::chrono::milliseconds(std::max<std::int64_t>(std::llround(std::ceil(real)), 0)), Qt::PreciseTimer, this,
                     std::move(action));
}

bool PtyReplay::holds(const Entry& entry) const {
  const auto found = terminals_.find(entry.port());
  if (found == terminals_.end() || !found->second) {
    return true;
  }
  const bool open = found->second->isOpen();
  return entry.kind == "closed" ? !open : open && found->second->settings().baud == std::stoi(entry.words[1]);
}

std::optional<std::string> PtyReplay::perform(const Entry& entry) {
  if (entry.kind != "heard" && entry.kind != "lost") {
    return onAnswer ? onAnswer(entry) : "nobody plays the web server";
  }
  const auto found = terminals_.find(entry.port());
  if (found == terminals_.end() || !found->second || !found->second->isOpen()) {
    return "the program does not have the port open now";
  }
  if (entry.kind == "lost") {
    found->second.reset();
    return std::nullopt;
  }
  if (!entry.bytes.inFull) {
    return "the record does not hold these bytes in full";
  }
  found->second->write(entry.bytes.first);
  return std::nullopt;
}

}  // namespace firmlane::sim
