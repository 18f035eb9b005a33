#include "catalogue/list_sources.h"

#include "state/file_names.h"

namespace firmlane {

namespace {

constexpr const char* kVelarcCopy = file_name::kVelarcList;
constexpr const char* kWirelessCopy = file_name::kWirelessList;

template <auto Field>
void set(SystemRecord& record, std::string_view text) {
  record.*Field = text;
}

constexpr SystemField kWirelessFields[] = {set<&SystemRecord::SystemVersion>, set<&SystemRecord::ReleaseDate>,
                                           set<&SystemRecord::SystemNote>,    set<&SystemRecord::DspVersion>,
                                           set<&SystemRecord::HubVersion>,    set<&SystemRecord::RfVersion>,
                                           set<&SystemRecord::FrontVersion>,  set<&SystemRecord::SystemDir>};
// The sixth is the version of its Front image.
constexpr SystemField kVelarcFields[] = {set<&SystemRecord::SystemVersion>, set<&SystemRecord::ReleaseDate>,
                                         set<&SystemRecord::SystemNote>,    set<&SystemRecord::DspVersion>,
                                         set<&SystemRecord::HubVersion>,    set<&SystemRecord::RfVersion>,
                                         set<&SystemRecord::SystemDir>};

constexpr FirmwareListSource kVelarc2List = {"/Velarc2/updatevrc.txt", kVelarcCopy, "VRC", &RunState::VrcSystems, kVelarcFields};
constexpr FirmwareListSource kOldVelarcList = {"/Velarc/update.txt", kVelarcCopy, "VRC", nullptr, {}};
constexpr FirmwareListSource kWirelessList = {"/LWX/updateV4.txt", kWirelessCopy, "WLS", &RunState::LwxSystems, kWirelessFields};

// Both generations of the Velarc find their software in the older list.
constexpr SoftwareListSource kVelarcSoftware = {"/Velarc/update.txt", kVelarcCopy};
constexpr SoftwareListSource kWirelessSoftware = {"/lwx/updatev4.txt", kWirelessCopy};

bool isVelarc(const RunState& state) { return state.ProductCode == "VC"; }

}  // namespace

const FirmwareListSource& firmwareListFor(const RunState& state) {
  if (!isVelarc(state)) {
    return kWirelessList;
  }
  return state.OldVelarc ? kOldVelarcList : kVelarc2List;
}

const SoftwareListSource& softwareListFor(const RunState& state) { return isVelarc(state) ? kVelarcSoftware : kWirelessSoftware; }

}  // namespace firmlane
