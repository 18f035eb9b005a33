// What the user of a record did, as a script for the console: with it and a player at the line a customer's run is repeated.
#pragma once

#include <string>

#include "replay/recording.h"

namespace firmlane::sim {

/// One command a line. In front of each action stands a wait for the words that the user had before him, and behind the last one
/// for those with which the record ends.
std::string consoleScript(const Recording& recording);

}  // namespace firmlane::sim
