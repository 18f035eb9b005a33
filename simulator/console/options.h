// The command line of firmlane-simulator.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "units/unit.h"

namespace firmlane::sim {

struct SimulatorOptions {
  const UnitModel* model = nullptr;  // null: no unit, only images
  std::string link;
  double timeScale = 1;
  Faults faults;
  bool startsOff = false;
  std::string directory = ".";
  std::optional<Version> images;
  std::size_t imageSize = 0;  // 0: the usual size of each
  bool serve = false;
  int webPort = 0;     // 0: a free one
  std::string replay;  // a record to play; empty for none
  std::string script;  // a record whose user is written out; empty for none
  std::string files;   // where the files go that its program found; empty for nowhere
  bool help = false;
  bool version = false;
};

/// Reads the arguments behind the program's name. Throws Failure, with a line for the user, for a wrong one.
SimulatorOptions readOptions(const std::vector<std::string>& arguments);
/// What --help prints.
std::string usage();

/// Writes the image files that the options ask for: those of the unit, or without a unit those of all models.
void writeImages(const SimulatorOptions& options);

}  // namespace firmlane::sim
