// The command line of firmlane-console.
#pragma once

#include <QStringList>
#include <optional>
#include <string>

#include "app/program.h"
#include "platform/qt/port_map.h"

namespace firmlane {

struct ConsoleOptions {
  std::string text;       // what was asked for with --help or --version, and nothing else is to be done
  std::string directory;  // empty for the program's own choice
  Servers servers;
  PortMap::Devices ports;
  double timeScale = 1;
  std::string recordFile;  // empty for none
  bool stopAtFailure = false;
  BuildSwitches switches;
};

/// Reads the arguments, the program's name first. Nothing, with one line in `error`, for a wrong one.
std::optional<ConsoleOptions> readConsoleOptions(const QStringList& arguments, std::string& error);

}  // namespace firmlane
