// Sleeps that are shorter than what an event loop can wait.
#pragma once

#include <chrono>

namespace firmlane {

/// Sleeps about so long, a small part of a millisecond too, and passes no events.
void nap(std::chrono::nanoseconds span);

}  // namespace firmlane
