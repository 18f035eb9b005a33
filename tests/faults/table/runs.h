// The rows, columns and sheets of the fault table as data: which runs are looked at, in which of their states, and what befalls
// them there.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "state/run_state.h"

namespace firmlane::test {

/// The moment of a run at which a fault comes.
enum class Moment {
  Announce,
  Erase,
  FirstByte,
  MiddleByte,
  LastByte,
  Verdict,
  Between,    // the processor is done, another one waits
  FinalRead,  // the unit is read once more
  SerialNumber,
  Preset
};

enum class Fault {
  Silence,
  NoiseBefore,
  NoiseInside,
  WrongChecksum,
  JustInTime,
  JustTooLate,
  Twice,
  Cut,
  OtherProcessor,
  EarlyVerdict,
  WrongVerdict,
  HeldLine,
  LostLine,
  Box,
  Exit,
  Closed,
  PowerFailure
};

inline constexpr std::array kFaults = {
    Fault::Silence,  Fault::NoiseBefore, Fault::NoiseInside,    Fault::WrongChecksum, Fault::JustInTime,   Fault::JustTooLate,
    Fault::Twice,    Fault::Cut,         Fault::OtherProcessor, Fault::EarlyVerdict,  Fault::WrongVerdict, Fault::HeldLine,
    Fault::LostLine, Fault::Box,         Fault::Exit,           Fault::Closed,        Fault::PowerFailure};

const char* momentName(Moment moment);
const char* faultName(Fault fault);

enum class Pages { Wireless, Velarc2, OldVelarc, ProductionLine };

/// One run under faults: a processor of a unit, programmed from the set on disk.
struct Run {
  const char* title;
  Pages pages;
  const char* model;
  const char* processor;  // the one whose run meets the fault
  const char* behind;     // another one that is behind too, so that there is something between; empty for none
  Micros eraseLimit;
  Micros verdictLimit;
  std::span<const Moment> moments;
};

std::span<const Run> runs();

/// Whether the fault can happen at that moment of that run: a unit that has nothing to say there cannot say it late.
bool applies(const Run& run, Moment moment, Fault fault);

}  // namespace firmlane::test
