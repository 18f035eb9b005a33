// The maker's two web servers as they were set when the program was configured. What main() of each program hands to Program.
#pragma once

#include "app/program.h"

namespace firmlane {

inline Servers builtInServers() { return {FIRMLANE_SERVER, FIRMLANE_REGISTRATION_SERVER}; }

}  // namespace firmlane
