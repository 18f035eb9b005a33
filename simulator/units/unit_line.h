// What a simulated unit needs of its end of the serial line and of time. Tests give it a line in memory and virtual time, the
// simulator a pseudo-terminal and a scaled real clock.
#pragma once

#include <functional>
#include <optional>

#include "platform/clock.h"
#include "platform/serial_port.h"

namespace firmlane::sim {

class UnitLine {
 public:
  virtual ~UnitLine() = default;
  /// Sends bytes to the program, behind those already under way, one after another at `baud`. They are lost while the
  /// program's end is closed or set to another speed.
  virtual void send(ByteSpan bytes, int baud) = 0;
  /// Holds back what the program sends, or lets it go on.
  virtual void holdBack(bool held) = 0;
  /// How the program's end is set; nothing while it is closed.
  [[nodiscard]] virtual std::optional<LineSettings> programEnd() const = 0;
};

class UnitClock {
 public:
  virtual ~UnitClock() = default;
  [[nodiscard]] virtual Micros now() const = 0;
  /// Runs an action after a span of the unit's time.
  virtual void after(Micros span, std::function<void()> action) = 0;
};

}  // namespace firmlane::sim
