#include "platform/virtual/virtual_line.h"

#include <string>
#include <utility>

namespace firmlane {

namespace {
constexpr int kBitsPerByte = 10;
Micros byteTime(int baud) { return kBitsPerByte * kSecond / baud; }
}  // namespace

void VirtualWire::send(ByteSpan bytes, int baud) {
  farFreeAt_ = std::max(farFreeAt_, time_.now());
  for (const std::uint8_t byte : bytes) {
    farFreeAt_ += byteTime(baud);
    time_.at(farFreeAt_, [this, byte, baud] {
      if (!settings_ || settings_->baud == baud) {
        deliver(ByteSpan(&byte, 1));
      }
    });
  }
}

void VirtualWire::deliver(ByteSpan bytes) {
  const bool first = arrived_.empty();
  arrived_.insert(arrived_.end(), bytes.begin(), bytes.end());
  if (latency == 0) {
    handOver();
  } else if (first) {
    planHandOver();
  }
}

void VirtualWire::planHandOver() {
  time_.after(latency, [this, generation = generation_] {
    if (generation == generation_) {
      handOver();
    }
  });
}

void VirtualWire::handOver() {
  if (driver_ != nullptr && !arrived_.empty()) {
    driver_->received(std::exchange(arrived_, {}));
  }
}

void VirtualWire::fetch() {
  time_.poll();  // what is due now is in, whether or not the program has slept since
  handOver();
}

void VirtualWire::holdBack(bool held) {
  held_ = held;
  behind_ = behind_ || held;
  if (!held_) {
    pumpOut();
  }
}

void VirtualWire::vanish() {
  SerialDriver* driver = driver_;
  openFailure = Failure(failure_number::kFileNotFound, "No such port: the adapter is not plugged in");
  if (driver != nullptr) {
    close();
    driver->lost(
        Failure(failure_number::kPortGone, "Serial port COM " + std::to_string(number_) + " has gone: its adapter was pulled"));
  }
}

void VirtualWire::open(SerialDriver& driver, const LineSettings& settings) {
  if (openFailure) {
    throw Failure(*openFailure);
  }
  if (settings_) {
    throw Failure(failure_number::kPortInUse, "The port is in use");
  }
  driver_ = &driver;
  settings_ = settings;
  ++opens_;
  ++generation_;
  if (!arrived_.empty()) {
    planHandOver();
  }
  if (changed) {
    changed();
  }
}

void VirtualWire::configure(const LineSettings& settings) {
  settings_ = settings;
  if (changed) {
    changed();
  }
}

void VirtualWire::close() {
  driver_ = nullptr;
  settings_.reset();
  queued_.clear();
  leaving_ = false;
  ++generation_;
  if (changed) {
    changed();
  }
}

void VirtualWire::take(ByteSpan bytes) {
  sent_.insert(sent_.end(), bytes.begin(), bytes.end());
  queued_.insert(queued_.end(), bytes.begin(), bytes.end());
  pumpOut();
}

void VirtualWire::pumpOut() {
  behind_ = held_ || (behind_ && !queued_.empty());
  if (leaving_ || queued_.empty() || (held_ && settings_->handshake == Handshake::Rts)) {
    return;
  }
  leaving_ = true;
  time_.after(byteTime(settings_->baud), [this, generation = generation_] {
    if (generation != generation_) {
      return;
    }
    leaving_ = false;
    const std::uint8_t byte = queued_.front();
    queued_.erase(queued_.begin());
    pumpOut();
    if (heard) {
      heard(byte);
    }
  });
}

VirtualWire& VirtualWires::add(int number) { return wires_.try_emplace(number, time_, number).first->second; }

VirtualWire* VirtualWires::find(int number) {
  const auto found = wires_.find(number);
  return found == wires_.end() ? nullptr : &found->second;
}

VirtualDriver::~VirtualDriver() {
  if (wire_ != nullptr) {
    wire_->close();
  }
}

void VirtualDriver::open(int number, const LineSettings& settings) {
  VirtualWire* wire = wires_.find(number);
  if (wire == nullptr) {
    throw Failure(failure_number::kPortNumber, "There is no port " + std::to_string(number));
  }
  wire->open(*this, settings);
  wire_ = wire;
}

void VirtualDriver::configure(const LineSettings& settings) {
  if (wire_ != nullptr) {
    wire_->configure(settings);
  }
}

void VirtualDriver::close() {
  if (wire_ != nullptr) {
    wire_->close();
    wire_ = nullptr;
  }
}

void VirtualDriver::send(ByteSpan bytes) {
  if (wire_ != nullptr) {
    wire_->take(bytes);
  }
}

void VirtualDriver::fetch() {
  if (wire_ != nullptr) {
    wire_->fetch();
  }
}

void VirtualDriver::discard() {
  if (wire_ != nullptr) {
    wire_->arrived_.clear();
  }
}

std::size_t VirtualDriver::unsent() const { return wire_ != nullptr && wire_->behind_ ? wire_->queued_.size() : 0; }

}  // namespace firmlane
