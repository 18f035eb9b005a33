// A simulated unit on a line in memory whose next frame can be spoiled on its way to the program.
#pragma once

#include <functional>
#include <optional>

#include "platform/virtual/virtual_line.h"
#include "units/unit.h"

namespace firmlane::test {

class FaultyUnit : private sim::UnitLine, private sim::UnitClock {
 public:
  FaultyUnit(VirtualTime& time, VirtualWire& wire, const std::string& model);
  ~FaultyUnit() override;
  FaultyUnit(const FaultyUnit&) = delete;
  FaultyUnit& operator=(const FaultyUnit&) = delete;

  /// A frame on its way: what arrives instead of it, and when.
  struct Arrival {
    Micros at = 0;
    Bytes bytes;
  };
  using Spoiler = std::function<std::vector<Arrival>(const Bytes& frame)>;

  /// Spoils the next frame that `concerns` picks out; all others pass.
  void spoilNext(std::function<bool(const Bytes&)> concerns, Spoiler spoiler);
  /// Sends bytes to the program now, at the unit's speed.
  void say(const Bytes& bytes) { wire_.send(bytes, unit.speed()); }
  /// Sends a frame with this sub-code.
  void report(int subCode);

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
  std::function<bool(const Bytes&)> concerns_;
  Spoiler spoiler_;

 public:
  sim::Unit unit;
};

/// A frame's sub-code; 0 for one that has none.
int subCodeOf(const Bytes& frame);

}  // namespace firmlane::test
