// A unit in normal operation: what it answers to the commands that it hears.
#pragma once

#include <optional>

#include "units/unit_frames.h"
#include "units/unit_state.h"

namespace firmlane::sim {

struct UnitAnswer {
  FrameEnd end;
  std::int32_t address;
  std::uint8_t code;
  Bytes data;
};

/// Carries out a command and gives the answer; nothing for a command without an answer, an unknown one, or one for another unit.
std::optional<UnitAnswer> answerTo(const HeardFrame& command, UnitState& unit);

/// The command that stores a serial number.
bool isSetSerial(const HeardFrame& command);
/// The command that restarts the unit as if it were switched off and on.
bool isForceReset(const HeardFrame& command);

}  // namespace firmlane::sim
