// A unit in normal operation at the far end of a wire: answers the commands that the test gives it answers for, at its own speed.
#pragma once

#include <map>

#include "world.h"

namespace firmlane::test {

class FakeUnit {
 public:
  FakeUnit(World& world, int port, int baud) : world_(world), wire_(world.wires.add(port)), baud_(baud) {
    wire_.heard = [this](std::uint8_t byte) { hear(byte); };
  }
  ~FakeUnit() { wire_.heard = nullptr; }
  FakeUnit(const FakeUnit&) = delete;
  FakeUnit& operator=(const FakeUnit&) = delete;

  /// Answers to a command's code. One without an answer is only heard.
  std::map<int, std::string> answers;
  Micros delay = 5 * kMillisecond;

  VirtualWire& wire() { return wire_; }
  /// Codes of the commands heard at the unit's speed, in their order.
  [[nodiscard]] const std::vector<int>& heard() const { return heard_; }
  [[nodiscard]] int count(int code) const { return static_cast<int>(std::count(heard_.begin(), heard_.end(), code)); }

 private:
  void hear(std::uint8_t byte) {
    if (!wire_.settings() || wire_.settings()->baud != baud_) {
      return;
    }
    frame_.push_back(byte);
    if (byte != 0x80) {
      return;
    }
    const int code = frame_.size() > 4 ? frame_[4] : -1;
    frame_.clear();
    heard_.push_back(code);
    if (const auto found = answers.find(code); found != answers.end()) {
      world_.after(delay, [&wire = wire_, baud = baud_, answer = bytes(found->second)] { wire.send(answer, baud); });
    }
  }

  World& world_;
  VirtualWire& wire_;
  int baud_;
  Bytes frame_;
  std::vector<int> heard_;
};

/// Codes of the commands, and good answers: the ID of a receiver and its versions, then those of a Velarc.
inline constexpr int kWho = 1;
inline constexpr int kVersions = 94;
inline constexpr int kReset = 114;
inline const std::string kIdAnswer = "02 00 02 2C 02 00 00 02 1F 00 00 00 02 00 00 53 80";
inline const std::string kVersionAnswer = "02 00 00 00 5F 02 05 02 0C 01 07 03 01 00 00 00 00 80";
inline const std::string kVelarcId = "02 00 02 2C 02 00 00 05 01 02 00 00 01 00 00 38 80";
inline const std::string kVelarcVersions = "02 00 00 00 69 01 02 03 05 00 04 01 00 06 02 01 09 00 80";

}  // namespace firmlane::test
