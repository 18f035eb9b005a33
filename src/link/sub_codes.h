// What a unit's sub-code means to the program: one table, a row a case. Rows of one sub-code stand in their order; the first
// whose condition holds applies. A sub-code without such a row has no effect.
#pragma once

#include <cstdint>

#include "link/command_set.h"
#include "state/run_state.h"

namespace firmlane {

enum class SubCodeAction {
  Announced,         ///< a boot loader waits to be told to program: answer it
  Erased,            ///< FlashPhase goes on
  Programmed,        ///< the verdict is good
  Failed,            ///< the verdict is bad
  PresetLoaded,      ///< preset 0 is in force
  SerialStored,      ///< the address positions hold the stored serial number
  NextBlock,         ///< the front panel asks for the next batch
  VectorTable,       ///< the front panel asks for its vector table
  SecondGeneration,  ///< nothing but what the row's flag says
};

enum class TimeBox { None, Wireless, Velarc };

struct SubCodeRule {
  std::uint8_t subCode;
  bool (*holds)(const RunState& state, bool micMode);
  SubCodeAction action;
  // Of an announcement.
  void (CommandSet::*answer)() = nullptr;
  bool setsWantAcked = false;
  bool idlesFirst = false;
  TimeBox timeBox = TimeBox::None;
  /// Only a second generation Velarc sends this.
  bool secondGeneration = false;
};

/// The row that applies now, or null.
const SubCodeRule* findSubCode(std::uint8_t subCode, const RunState& state, bool micMode);

}  // namespace firmlane
