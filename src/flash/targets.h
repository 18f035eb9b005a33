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
struct ImageRule {
  /// None where no sender serves the target.
  ImageRoute route;
  /// Null for an image that stands in memory.
  const char* file;
  /// The image serves all processors of the unit.
  bool wholeUnit;
};
/// Which image goes to the target, and how.
ImageRule imageFor(const RunState& state);

/// Watchdog ticks of a second that a unit has to erase.
int eraseLimitFor(const RunState& state);
/// Interval in milliseconds in which the bar moves meanwhile.
int eraseBarIntervalFor(const RunState& state);

/// Number of a processor of a wireless receiver as the wizard counts them, empty for a target that it does not count.
std::string_view processorNumber(std::string_view target);

/// What the pages call a unit of the product line: "Vel-Arc" or "Receiver".
std::string unitName(const RunState& state);

}  // namespace firmlane
