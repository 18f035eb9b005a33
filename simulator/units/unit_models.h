// The simulated models as data: what each unit says about itself, how fast it talks and how each of its processors is programmed.
#pragma once

#include <span>
#include <string_view>

#include "platform/clock.h"
#include "units/firmware.h"

namespace firmlane::sim {

enum class Family { Wireless, Velarc2, OldVelarc };

/// How a boot loader takes its image.
enum class LoaderKind {
  Plain,     // start byte, image, sum
  SevenBit,  // the same, each image byte in two bytes
  Records,   // S-record text under RTS handshake
  Front      // length, then batches of hexadecimal digit values, each asked for
};

struct ProcessorModel {
  const char* name;
  ImageKind image;
  LoaderKind loader;
  std::uint8_t announce;  // sub-code of the announcement; + 1 erased, + 2 programmed, + 3 failed
  std::uint8_t want;      // sub-code of the frame that starts its programming
  Micros eraseTime;
  Version version;      // what it runs until it is programmed
  int versionPosition;  // where its version stands in the version answer, counted from 1; 0 when it is not told there
};

struct UnitModel {
  const char* name;   // such as "lwx52", for command lines
  const char* title;  // such as "LWX-52 (Two Channel)"
  Family family;
  std::uint8_t modelByte;                      // in the ID answer
  int runSpeed;                                // baud in normal operation
  int bootSpeed;                               // baud of its boot loaders
  std::int32_t serial;                         // until another one is stored
  std::span<const ProcessorModel> processors;  // in the order in which they announce themselves

  /// How many numbers its versions have.
  [[nodiscard]] int versionNumbers() const { return family == Family::Wireless ? 2 : 3; }
};

/// All models.
std::span<const UnitModel> unitModels();
/// The model of this name; null for an unknown one.
const UnitModel* findUnitModel(std::string_view name);

}  // namespace firmlane::sim
