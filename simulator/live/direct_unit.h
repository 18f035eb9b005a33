// A simulated unit in the program's own process, in real time or a multiple of it, and the line between the two: what the demo
// stands on, on every system. The program's end is a SerialDriver like that of a real port.
#pragma once

#include <functional>
#include <optional>

#include "live/unit_time.h"
#include "platform/serial_port.h"
#include "units/unit.h"

namespace firmlane::sim {

class DirectDriver;

class DirectUnit : private UnitLine {
 public:
  /// The unit stands at port `number`.
  DirectUnit(const UnitModel& model, int number, double timeScale);
  ~DirectUnit() override;
  DirectUnit(const DirectUnit&) = delete;
  DirectUnit& operator=(const DirectUnit&) = delete;

  /// Pulls the adapter between the program and the unit, for good. From outside of handlers.
  void pull();

 private:
  friend class DirectDriver;

  void send(ByteSpan bytes, int baud) override;
  void holdBack(bool held) override;
  [[nodiscard]] std::optional<LineSettings> programEnd() const override;
  void take(ByteSpan bytes);
  void hearWaiting();

  UnitTime time_;
  int number_;
  DirectDriver* driver_ = nullptr;  // that has the port open
  LineSettings settings_;
  int opening_ = 0;        // counts opens: what is under way dies with its own
  Micros lineFreeAt_ = 0;  // when the last byte of the unit's will have arrived
  Bytes waiting_;          // from the program, and not heard yet
  bool held_ = false;
  bool pulled_ = false;

 public:
  Unit unit;
};

/// The program's end. Two drivers may share a unit; one at a time has its port open. The unit outlives them.
class DirectDriver : public SerialDriver {
 public:
  explicit DirectDriver(DirectUnit& unit) : far_(unit) {}
  ~DirectDriver() override { DirectDriver::close(); }
  DirectDriver(const DirectDriver&) = delete;
  DirectDriver& operator=(const DirectDriver&) = delete;

  void open(int number, const LineSettings& settings) override;
  void configure(const LineSettings& settings) override;
  void close() override;
  void send(ByteSpan bytes) override;
  void fetch() override;
  void discard() override;
  [[nodiscard]] std::size_t unsent() const override;

 private:
  friend class DirectUnit;
  DirectUnit& far_;
  bool discarding_ = false;
};

}  // namespace firmlane::sim
