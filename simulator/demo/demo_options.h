// The command line of firmlane-demo.
#pragma once

#include <QStringList>
#include <optional>
#include <string>

#include "app/program.h"
#include "units/unit_models.h"

namespace firmlane::sim {

struct DemoOptions {
  const UnitModel* model = nullptr;
  /// How many times as fast as real time everything runs.
  double speed = 1;
  /// Works the whole thing by itself.
  bool play = false;
  /// Where --play puts its screenshots; empty for a directory of its own.
  std::string screenshots;
  /// The web servers to use instead of the demo's own; empty for those not given.
  Servers servers;
  BuildSwitches switches;
};

/// Reads the arguments, the program's name first. Handles --help and --version itself. Nothing, with a line in `error`, for a wrong one.
std::optional<DemoOptions> readDemoOptions(const QStringList& arguments, std::string& error);

}  // namespace firmlane::sim
