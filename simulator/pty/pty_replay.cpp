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
    if (entry.kind == "open" && lines_.find(entry.port()) == lines_.end()) {
      lines_.emplace(entry.port(), std::make_unique<Line>());
    }
  }
  clock_.start();
  looking_.setTimerType(Qt::PreciseTimer);
  looking_.callOnTimeout(this, &PtyReplay::look);
  looking_.start(kLook);
}

PtyReplay::~PtyReplay() = default;

PtyReplay::Line* PtyReplay::lineOf(int port) const {
  const auto found = lines_.find(port);
  return found == lines_.end() ? nullptr : found->second.get();
}

std::map<int, std::string> PtyReplay::devices() const {
  std::map<int, std::string> devices;
  for (const auto& [port, line] : lines_) {
    devices[port] = line->terminal.path();
  }
  return devices;
}

bool PtyReplay::inUse() const {
  return std::any_of(lines_.begin(), lines_.end(),
                     [](const auto& line) { return line.second && line.second->terminal.isOpen(); });
}

void PtyReplay::Line::look() {
  for (const bool change : watch.changes()) {
    changes.push_back(change);
  }
}

void PtyReplay::look() {
  for (const auto& [port, line] : lines_) {
    if (!line) {
      continue;
    }
    line->look();
    line->old = line->changes.size();
    if (const Bytes bytes = line->terminal.read(); !bytes.empty()) {
      replay.hear(port, bytes);
    }
  }
  replay.look();
}

void PtyReplay::observeRequest(const std::string& url) {
  look();
  replay.observeRequest(url);
}

Micros PtyReplay::now() const { return std::llround(static_cast<double>(clock_.nsecsElapsed()) * timeScale_ / 1000); }

void PtyReplay::after(Micros span, std::function<void()> action) {
  const double real = static_cast<double>(span) / timeScale_ / kMillisecond;
  QTimer::singleShot(std::chrono::milliseconds(std::max<std::int64_t>(std::llround(std::ceil(real)), 0)), Qt::PreciseTimer, this,
                     [this, action = std::move(action)] {
                       look();
                       action();
                     });
}

bool PtyReplay::takes(const Entry& entry) {
  Line* line = lineOf(entry.port());
  if (line == nullptr) {
    return true;
  }
  line->look();
  const bool isSo = entry.kind == "closed" || line->terminal.settings().baud == std::stoi(entry.words[1]);
  if (entry.kind == "set") {
    return isSo || !line->changes.empty();
  }
  const bool opens = entry.kind == "open";
  // Closed again already, it is not set any more as it was.
  if (line->changes.empty() || line->changes.front() != opens || (line->changes.size() == 1 && !isSo)) {
    return false;
  }
  line->changes.pop_front();
  line->old -= std::min<std::size_t>(line->old, 1);
  return true;
}

std::string PtyReplay::movedOn(int port) const {
  const Line* line = lineOf(port);
  if (line == nullptr || line->old == 0) {
    return {};
  }
  return (line->changes.front() ? "open " : "closed ") + std::to_string(port);
}

std::optional<std::string> PtyReplay::perform(const Entry& entry) {
  if (entry.kind != "heard" && entry.kind != "lost") {
    return onAnswer ? onAnswer(entry) : "nobody plays the web server";
  }
  Line* line = lineOf(entry.port());
  if (line == nullptr || !line->terminal.isOpen()) {
    return "the program does not have the port open now";
  }
  if (entry.kind == "lost") {
    lines_[entry.port()].reset();
    return std::nullopt;
  }
  if (!entry.bytes.inFull) {
    return "the record does not hold these bytes in full";
  }
  line->terminal.write(entry.bytes.first);
  return std::nullopt;
}

}  // namespace firmlane::sim
