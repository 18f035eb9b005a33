// The one form in which a failure reaches the user.
#pragma once

#include <string>

#include "platform/screen.h"
#include "state/run_state.h"

namespace firmlane {

/// Keeps context, description and number in ErrorText and shows them in a critical box; returns when the user has read it.
void tellFailure(FormHost& host, RunState& state, const std::string& context, const Failure& failure);

}  // namespace firmlane
