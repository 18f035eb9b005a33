#include "console/end_on_signal.h"

namespace firmlane::sim {

// Without a pseudo-terminal there is nothing to remove.
EndOnSignal::EndOnSignal() = default;

}  // namespace firmlane::sim
