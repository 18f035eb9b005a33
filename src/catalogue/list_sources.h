// Which update list serves which product: where it lies, how its copy is called, what is read from it. Tables only.
#pragma once

#include <array>
#include <span>
#include <string_view>

#include "catalogue/update_list.h"
#include "state/run_state.h"

namespace firmlane {

using SystemTable = std::array<SystemRecord, kMostSystems>;
/// Writes one field of a SYSTEM line into its place in a record.
using SystemField = void (*)(SystemRecord& record, std::string_view text);

struct FirmwareListSource {
  const char* path;  // on the maker's web server
  const char* localCopy;
  const char* entryTag;
  SystemTable RunState::*systems;             // null where SYSTEM lines are not read
  std::span<const SystemField> systemFields;  // in the order of the line
};

struct SoftwareListSource {
  const char* path;
  const char* localCopy;
};

/// The lists for ProductCode and OldVelarc as they stand.
const FirmwareListSource& firmwareListFor(const RunState& state);
const SoftwareListSource& softwareListFor(const RunState& state);

}  // namespace firmlane
