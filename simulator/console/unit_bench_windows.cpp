#include "console/unit_bench.h"
#include "platform/failure.h"

namespace firmlane::sim {

std::unique_ptr<UnitBench> makeUnitBench(const SimulatorOptions& /*options*/,
                                         const std::function<void(const QJsonObject&)>& /*print*/) {
  throw Failure(failure_number::kInvalidArgument,
                "Windows has no pseudo-terminal for a simulated unit; --serve and --make-images work here, and firmlane-demo "
                "brings a unit of its own");
}

}  // namespace firmlane::sim
