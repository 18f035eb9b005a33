// Brings a fault about, at once.
#pragma once

#include "cell_world.h"

namespace firmlane::test {

/// The computer has lost power: nothing of the program runs on.
struct PowerLost {};

/// Throws PowerLost for that fault. Called from outside of handlers.
void inject(CellWorld& world, Moment moment, Fault fault);

/// All is well again: the unit, the line, and the user's patience.
void heal(CellWorld& world);

}  // namespace firmlane::test
