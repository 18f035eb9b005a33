// The build switches as they were set when the program was configured. What main() of the delivered program hands to Program.
#pragma once

#include "state/run_state.h"

namespace firmlane {

inline constexpr BuildSwitches kConfiguredSwitches{
    .factoryBuild = FIRMLANE_FACTORY_BUILD != 0,
    .inHouseBuild = FIRMLANE_IN_HOUSE_BUILD != 0,
    .debugView = FIRMLANE_DEBUG_VIEW != 0,
};

}  // namespace firmlane
