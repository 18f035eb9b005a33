#include "units/unit_state.h"

#include <algorithm>
#include <array>

namespace firmlane::sim {

const ProcessorState* UnitState::find(std::string_view processor) const {
  const auto found = std::find_if(processors.begin(), processors.end(),
                                  [processor](const ProcessorState& state) { return processor == state.model->name; });
  return found == processors.end() ? nullptr : &*found;
}

std::string UnitState::versionOf(std::string_view processor) const {
  const ProcessorState* state = find(processor);
  if (state == nullptr) {
    return "";
  }
  return state->blank ? "blank" : versionText(state->version, model->versionNumbers());
}

std::string UnitState::doing() const {
  const std::string loader = target < 0 ? "" : std::string(processors[static_cast<std::size_t>(target)].model->name) + ": ";
  switch (phase) {
    case Phase::Off:
      return "switched off";
    case Phase::Starting:
      return "starting, boot loaders announce themselves";
    case Phase::Erasing:
      return loader + "erasing";
    case Phase::Receiving:
      return loader +
             (received == 0 ? "erased, waits for its image" : "programming, " + std::to_string(received) + " bytes received");
    case Phase::Judging:
      return loader + "checking " + std::to_string(received) + " bytes";
    case Phase::Finished:
      return loader + (verdictGood ? "programmed" : "failed, " + complaint) + "; waits to be switched off";
    case Phase::Microphones:
      return "microphone table, " + std::to_string(received) + " bytes received";
    case Phase::Running:
      break;
  }
  return "running";
}

std::string_view phaseName(Phase phase) {
  constexpr std::array<std::string_view, 8> kNames = {"off",     "starting", "erasing",     "receiving",
                                                      "judging", "finished", "microphones", "running"};
  return kNames.at(static_cast<std::size_t>(phase));
}

}  // namespace firmlane::sim
