// Serial lines in memory. A VirtualWire is one numbered port with a far end, where a unit model or a test listens and talks.
// Bytes travel at the set speed, so both ends hear them when they would have heard them on a real line.
#pragma once

#include <functional>
#include <map>
#include <optional>

#include "platform/serial_port.h"
#include "platform/virtual/virtual_time.h"

namespace firmlane {

/// One port: what the program's end has done, and what the far end may do.
class VirtualWire {
 public:
  VirtualWire(VirtualTime& time, int number) : time_(time), number_(number) {}

  // The far end.

  /// Called for each byte when it has left the program's end at the speed set there.
  std::function<void(std::uint8_t)> heard;
  /// Called when the program opens, closes or configures its end.
  std::function<void()> changed;
  /// Sends bytes towards the program, one after another at `baud`; they are lost while its end is set to another speed. While it
  /// is closed they wait for the next opening, as in an adapter that nobody listens to.
  void send(ByteSpan bytes, int baud);
  /// As send, but all bytes arrive at once and whatever the speed: for tests of the receive path.
  void deliver(ByteSpan bytes);
  /// Bytes that have arrived raise their event so much later, together with those that come meanwhile, as with an adapter that
  /// gathers them; a read takes them at once.
  Micros latency = 0;
  /// Settings of the program's end; nothing while it is closed.
  [[nodiscard]] const std::optional<LineSettings>& settings() const { return settings_; }
  /// Holds back what the program sends (RTS handshake), or lets it go on.
  void holdBack(bool held);
  /// Pulls the adapter: the program's end is lost.
  void vanish();

  // Faults that meet the next opens: a port in use, or not there.
  std::optional<Failure> openFailure;

  // What went over the wire, for assertions.

  /// Everything that the program has sent so far.
  [[nodiscard]] const Bytes& sent() const { return sent_; }
  /// How often the program's end was opened.
  [[nodiscard]] int opens() const { return opens_; }
  [[nodiscard]] bool isOpen() const { return settings_.has_value(); }

 private:
  friend class VirtualDriver;

  void open(SerialDriver& driver, const LineSettings& settings);
  void configure(const LineSettings& settings);
  void close();
  void take(ByteSpan bytes);
  void pumpOut();
  void planHandOver();
  void handOver();
  void fetch();

  VirtualTime& time_;
  int number_;
  SerialDriver* driver_ = nullptr;
  std::optional<LineSettings> settings_;
  Bytes sent_;
  Bytes arrived_;                     // not yet handed over to the program
  std::vector<std::uint8_t> queued_;  // taken from the program, not yet left
  bool leaving_ = false;
  bool held_ = false;
  bool behind_ = false;  // what was taken while it was held back, or before, has not all left yet
  int generation_ = 0;  // counts opens, so bytes under way die with the connection
  int opens_ = 0;
  Micros farFreeAt_ = 0;
};

/// The wires of a machine, by port number. A number without a wire has no hardware.
class VirtualWires {
 public:
  explicit VirtualWires(VirtualTime& time) : time_(time) {}
  VirtualWire& add(int number);
  [[nodiscard]] VirtualWire* find(int number);

 private:
  VirtualTime& time_;
  std::map<int, VirtualWire> wires_;
};

class VirtualDriver : public SerialDriver {
 public:
  explicit VirtualDriver(VirtualWires& wires) : wires_(wires) {}
  VirtualDriver(const VirtualDriver&) = delete;
  VirtualDriver& operator=(const VirtualDriver&) = delete;
  ~VirtualDriver() override;

  void open(int number, const LineSettings& settings) override;
  void configure(const LineSettings& settings) override;
  void close() override;
  void send(ByteSpan bytes) override;
  [[nodiscard]] std::size_t unsent() const override;
  void fetch() override;
  void discard() override;

 private:
  friend class VirtualWire;
  VirtualWires& wires_;
  VirtualWire* wire_ = nullptr;
};

}  // namespace firmlane
