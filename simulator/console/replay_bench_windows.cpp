#include "console/replay_bench.h"
#include "platform/failure.h"

namespace firmlane::sim {

int runReplay(const SimulatorOptions& /*options*/, const std::function<void(const QJsonObject&)>& /*print*/) {
  throw Failure(failure_number::kInvalidArgument, "Windows has no pseudo-terminal on which a record could be played");
}

}  // namespace firmlane::sim
