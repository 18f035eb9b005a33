// What a whole program stands on in the tests.
#pragma once

#include <string>

#include "app/program.h"
#include "units/virtual_unit.h"
#include "world.h"

namespace firmlane::test {

Platform platformOver(Ground& ground);

/// "Hub=2.40 DSP=2.31": what the unit's processors hold.
std::string versionsOf(const sim::Unit& unit);

}  // namespace firmlane::test
