#include "live/direct_unit.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <utility>

namespace firmlane::sim {

namespace {
constexpr int kBitsPerByte = 10;
}  // namespace

DirectUnit::DirectUnit(const UnitModel& model, int number, double timeScale)
    : time_(timeScale), number_(number), unit(model, *this, time_) {
  unit.timing.leastSilence = time_.leastSilence();
}

DirectUnit::~DirectUnit() {
  unit.onChange = nullptr;
  unit.onHappening = nullptr;
}

void DirectUnit::pull() {
  pulled_ = true;
  waiting_.clear();
  ++opening_;
  if (DirectDriver* driver = std::exchange(driver_, nullptr); driver != nullptr && driver->lost) {
    driver->lost(
        Failure(failure_number::kPortGone, "Serial port COM " + std::to_string(number_) + " has gone: its adapter was pulled"));
  }
}

void DirectUnit::send(ByteSpan bytes, int baud) {
  lineFreeAt_ = std::max(lineFreeAt_, time_.now()) + static_cast<Micros>(bytes.size()) * kBitsPerByte * kSecond / baud;
  time_.after(lineFreeAt_ - time_.now(), [this, baud, copy = Bytes(bytes.begin(), bytes.end())] {
    if (driver_ != nullptr && settings_.baud == baud && !driver_->discarding_ && driver_->received) {
      driver_->received(copy);
    }
  });
}

void DirectUnit::holdBack(bool held) {
  held_ = held;
  if (!held) {
    time_.after(0, [this] { hearWaiting(); });
  }
}

std::optional<LineSettings> DirectUnit::programEnd() const {
  return driver_ == nullptr ? std::nullopt : std::optional(settings_);
}

void DirectUnit::take(ByteSpan bytes) {
  waiting_.insert(waiting_.end(), bytes.begin(), bytes.end());
  // The unit answers from the event loop, never from within the program's call.
  time_.after(0, [this, opening = opening_] {
    if (opening == opening_) {
      hearWaiting();
    }
  });
}

void DirectUnit::hearWaiting() {
  if (held_) {
    return;
  }
  for (const std::uint8_t byte : std::exchange(waiting_, {})) {
    unit.hear(byte);
  }
}

void DirectDriver::open(int number, const LineSettings& settings) {
  const std::string name = "COM " + std::to_string(number);
  if (number != far_.number_ || far_.pulled_) {
    throw Failure(ENOENT, "There is no serial port " + name);
  }
  if (far_.driver_ != nullptr) {
    throw Failure(EBUSY, "Serial port " + name + " is in use by another program");
  }
  far_.driver_ = this;
  far_.settings_ = settings;
  ++far_.opening_;
}

void DirectDriver::configure(const LineSettings& settings) {
  if (far_.driver_ == this) {
    far_.settings_ = settings;
  }
}

void DirectDriver::close() {
  if (far_.driver_ != this) {
    return;
  }
  // The last bytes before closing count as sent at the speed that was set then.
  far_.hearWaiting();
  far_.waiting_.clear();
  far_.driver_ = nullptr;
  ++far_.opening_;
}

void DirectDriver::send(ByteSpan bytes) {
  if (far_.driver_ == this) {
    far_.take(bytes);
  }
}

void DirectDriver::fetch() { far_.time_.runDue(); }

void DirectDriver::discard() {
  discarding_ = true;
  far_.time_.runDue();
  discarding_ = false;
}

std::size_t DirectDriver::unsent() const { return far_.driver_ == this && far_.held_ ? far_.waiting_.size() : 0; }

}  // namespace firmlane::sim
