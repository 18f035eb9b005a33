// What can be seen of a simulated unit from outside: for tests, for the bench window and for the simulator's output.
#pragma once

#include <string>
#include <vector>

#include "units/unit_models.h"

namespace firmlane::sim {

enum class Phase {
  Off,
  Starting,     // boot loaders announce themselves
  Erasing,      // one of them was told to program
  Receiving,    // it takes its image
  Judging,      // it makes up its verdict
  Finished,     // verdict given; nothing more until the unit is switched off and on
  Microphones,  // takes a microphone table
  Running       // normal operation
};

struct ProcessorState {
  const ProcessorModel* model = nullptr;
  Version version;
  bool blank = false;  // erased and not programmed since
};

struct UnitState {
  const UnitModel* model = nullptr;
  std::int32_t serial = 0;  // without the model digit that the program puts in front
  std::vector<ProcessorState> processors;
  Phase phase = Phase::Off;
  int target = -1;           // index of the processor that is or was programmed since power-on; -1 none
  std::size_t received = 0;  // bytes of the current image or table heard on the line
  bool verdictGood = false;  // of the last verdict
  std::string complaint;     // why the last image was refused; empty when it was not
  int presetLoads = 0;
  Bytes microphoneTable;  // 15 models of 42 bytes, as last sent; empty before

  [[nodiscard]] const ProcessorState* find(std::string_view processor) const;
  /// Version of a processor as the model shows it, such as "2.31"; "blank" after an erase, empty for a processor that it has not.
  [[nodiscard]] std::string versionOf(std::string_view processor) const;
  /// One line that tells what the unit is doing now.
  [[nodiscard]] std::string doing() const;
};

/// The phase as one word: "off", "starting", ...
std::string_view phaseName(Phase phase);

}  // namespace firmlane::sim
