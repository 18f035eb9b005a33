// What differs from one flash target to the next: the link, the waits, the sender, the words. Tables only.
#pragma once

#include <string>
#include <string_view>

#include "state/run_state.h"

namespace firmlane {

/// How the port is set for a run.
struct LinkRule {
  /// Null where the port keeps its speed.
  const char* settings;
  /// In bytes; 0 where the port keeps its buffer.
  int outBuffer;
};
LinkRule linkFor(const RunState& state);

/// Who sends the image.
enum class ImageRoute { None, Flash, NewHub, RF, Front };
/// The sender for the target of a receiver or a second generation Velarc. None where no sender serves it.
ImageRoute routeFor(const RunState& state);

/// Watchdog ticks of a second that a unit has to erase.
int eraseLimitFor(const RunState& state);
/// Interval in milliseconds in which the bar moves meanwhile.
int eraseBarIntervalFor(const RunState& state);

/// Number of a processor of a wireless receiver as the wizard counts them, empty for a target that it does not count.
std::string_view processorNumber(std::string_view target);

/// What the pages call a unit of the product line: "Vel-Arc" or "Receiver".
std::string unitName(const RunState& state);

}  // namespace firmlane
