// A record at the line and at the web server, for somebody else's program: what firmlane-simulator --replay runs.
#pragma once

#include <QJsonObject>
#include <functional>

#include "console/options.h"

namespace firmlane::sim {

/// Plays the record of the options until it is at its end, a difference is found, or "quit" asks how far it came; tells of it
/// with `print`. Returns the exit status: 0 when all was played. Needs a QCoreApplication. Throws Failure for a record that
/// cannot be read, and where the system has no pseudo-terminals.
int runReplay(const SimulatorOptions& options, const std::function<void(const QJsonObject&)>& print);

}  // namespace firmlane::sim
