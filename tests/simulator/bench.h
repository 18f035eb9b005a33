// A unit on a line in memory and a program's end that is worked by hand, byte for byte.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "units/virtual_unit.h"
#include "world.h"

namespace firmlane::sim {

class Bench {
 public:
  explicit Bench(const std::string& model, int baud = 9600, Handshake handshake = Handshake::None) : bench_(time, wire_, model) {
    driver.received = [this](ByteSpan bytes) { received_.insert(received_.end(), bytes.begin(), bytes.end()); };
    driver.open(1, {baud, handshake});
  }

  void run(Micros span) {
    const Micros end = time.now() + span;
    while (time.now() < end) {
      time.sleep(end);
    }
  }

  /// What has come from the unit since the last call, as hex text.
  std::string heard() {
    const std::string text = test::hex(received_);
    received_.clear();
    return text;
  }

  void send(const Bytes& bytes) { driver.send(bytes); }
  void send(const std::string& hexText) { driver.send(test::bytes(hexText)); }

  /// Sends a command, waits, and gives the answer.
  std::string ask(const std::string& hexText, Micros span = 100 * kMillisecond) {
    heard();
    send(hexText);
    run(span);
    return heard();
  }

  /// Switches on, tells a boot loader to program and waits for its report.
  std::string start(const std::string& want, Micros erase = 20 * kSecond) {
    unit.powerOn();
    run(kSecond);
    return ask(want, erase);
  }

  VirtualTime time;
  VirtualWires wires{time};
  VirtualDriver driver{wires};

 private:
  VirtualWire& wire_ = wires.add(1);
  VirtualUnit bench_;
  Bytes received_;

 public:
  Unit& unit = bench_.unit;
  VirtualUnit& line = bench_;
};

// The stream of each kind of loader, as the program sends it.

inline Bytes streamWithSum(const Bytes& image, bool sevenBit) {
  unsigned sum = 0;
  Bytes stream = {1};
  for (const std::uint8_t byte : image) {
    sum += byte;
    if (sevenBit) {
      stream.push_back(byte / 128);
    }
    stream.push_back(sevenBit ? byte % 128 : byte);
  }
  stream.push_back(sum % 128);
  return stream;
}
inline Bytes plainStream(const Bytes& image) { return streamWithSum(image, false); }
inline Bytes sevenBitStream(const Bytes& image) { return streamWithSum(image, true); }

}  // namespace firmlane::sim
