// A unit on a line in memory, in virtual time.
//
//   VirtualWire& wire = wires.add(3);
//   sim::VirtualUnit bench(time, wire, "lwx52");
//   bench.unit.powerOn();
//   ... run the program ...
//   EXPECT_EQ(bench.unit.state().versionOf("Hub"), "2.31");
#pragma once

#include <string_view>

#include "platform/virtual/virtual_line.h"
#include "units/unit.h"

namespace firmlane::sim {

class VirtualUnit : private UnitLine, private UnitClock {
 public:
  /// `model` is a name that findUnitModel knows; another one throws Failure.
  VirtualUnit(VirtualTime& time, VirtualWire& wire, std::string_view model);
  ~VirtualUnit() override;
  VirtualUnit(const VirtualUnit&) = delete;
  VirtualUnit& operator=(const VirtualUnit&) = delete;

  /// Frames reach the program in one piece when their last byte has come, as adapters with a buffer hand them on. Otherwise
  /// each byte arrives by itself.
  bool arriveWhole = false;
  /// Asked before a frame goes out: what it answers with "true" it has dealt with itself.
  std::function<bool(const Bytes& frame, int baud)> intercept;
  /// Called behind each byte that the unit has heard.
  std::function<void()> onHeard;

 private:
  void send(ByteSpan bytes, int baud) override;
  void holdBack(bool held) override { wire_.holdBack(held); }
  [[nodiscard]] std::optional<LineSettings> programEnd() const override { return wire_.settings(); }
  [[nodiscard]] Micros now() const override { return time_.now(); }
  void after(Micros span, std::function<void()> action) override { time_.after(span, std::move(action)); }

  VirtualTime& time_;
  VirtualWire& wire_;
  Micros freeAt_ = 0;

 public:
  Unit unit;
};

}  // namespace firmlane::sim
