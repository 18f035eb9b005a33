// The program's clock and what the event queue needs of the world outside.
#pragma once

#include <cstdint>
#include <limits>
#include <string>

namespace firmlane {

/// A point or a span of the program's clock in microseconds. The clock is steady; its zero is arbitrary.
using Micros = std::int64_t;

inline constexpr Micros kMillisecond = 1000;
inline constexpr Micros kSecond = 1000 * kMillisecond;
inline constexpr Micros kForever = std::numeric_limits<Micros>::max();

/// Time as the program sees it. Real, scaled or virtual: the logic cannot tell.
class Clock {
 public:
  virtual ~Clock() = default;
  [[nodiscard]] virtual Micros now() const = 0;
  /// The time of day as a text for diagnosis fields, such as "14:03:59".
  [[nodiscard]] virtual std::string timeOfDay() const = 0;
};

/// Where events come from: the user, the ports, the network. Its implementation posts events to the queue and never runs a
/// handler itself. Either call may throw ProgramEnded when the outside ends the program.
class EventSource {
 public:
  virtual ~EventSource() = default;
  /// Takes in what has happened outside; does not wait.
  virtual void poll() = 0;
  /// Sleeps until something may have happened outside, or until the clock reaches `until`. May return early.
  virtual void sleep(Micros until) = 0;
};

}  // namespace firmlane
