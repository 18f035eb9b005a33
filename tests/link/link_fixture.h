// The main port's link over the ground of all logic tests: port 1 open at 9600, a far end that the test works by hand.
#pragma once

#include <gtest/gtest.h>

#include "link_world.h"

namespace firmlane::test {

class LinkTest : public testing::Test {
 protected:
  void open() {
    world_.mainPort.setNumber(1);
    world_.mainPort.setReceiveThreshold(1);
    world_.mainPort.Open();
  }
  /// Bytes arrive in one piece; what follows from them at once has happened.
  void arrive(const std::string& hexText) {
    wire_.deliver(bytes(hexText));
    world_.run(50 * kMillisecond);
  }
  /// A good report with this sub-code.
  static std::string report(int subCode, const std::string& address = "00 00 00") {
    Bytes frame = bytes("02" + address + "1F");
    frame.push_back(static_cast<std::uint8_t>(subCode));
    unsigned sum = 0;
    for (std::size_t i = 1; i < frame.size(); ++i) {
      sum += frame[i];
    }
    frame.push_back(sum & 0x7FU);
    return hex(frame) + "3E 3E";
  }

  LinkWorld world_;
  VirtualWire& wire_ = world_.wires.add(1);
  RunState& state_ = world_.state;
  ReceivePath& receive_ = world_.receivePath;
};

}  // namespace firmlane::test
