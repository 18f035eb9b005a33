#include "state/run_state.h"

#include <algorithm>
#include <functional>

namespace firmlane {

namespace {

struct Field {
  std::string_view name;
  std::function<RunStateValue(const RunState&)> read;
};

RunStateValue asValue(bool value) { return value; }
RunStateValue asValue(std::int16_t value) { return std::int32_t{value}; }
RunStateValue asValue(std::int32_t value) { return value; }
RunStateValue asValue(const std::string& value) { return value; }
template <std::size_t N>
RunStateValue asValue(const std::array<std::string, N>& value) {
  return std::vector<std::string>(value.begin(), value.end());
}
template <std::size_t N>
RunStateValue asValue(const std::array<SystemRecord, N>& value) {
  return std::vector<SystemRecord>(value.begin(), value.end());
}

template <typename T>
Field field(std::string_view name, T RunState::*member) {
  return {name, [member](const RunState& state) { return asValue(state.*member); }};
}

// NOLINTNEXTLINE(readability-function-size): a table of the fields
std::vector<Field> makeFields() {
  return {
      field("ComPort", &RunState::ComPort),
      field("PortChosen", &RunState::PortChosen),
      field("ProductCode", &RunState::ProductCode),
      field("FactoryBuild", &RunState::FactoryBuild),
      field("FactoryFirstPass", &RunState::FactoryFirstPass),
      field("SerialNumber", &RunState::SerialNumber),
      field("SerialStep", &RunState::SerialStep),
      field("GotId", &RunState::GotId),
      field("ContactBlank", &RunState::ContactBlank),
      field("MicAck", &RunState::MicAck),
      field("FileSerial", &RunState::FileSerial),
      field("FlashTarget", &RunState::FlashTarget),
      field("IdRxBuf", &RunState::IdRxBuf),
      field("SerialRead", &RunState::SerialRead),
      field("GetVersionsSent", &RunState::GetVersionsSent),
      field("VersionsRead", &RunState::VersionsRead),
      field("IdQueue", &RunState::IdQueue),
      field("IdQueueWrite", &RunState::IdQueueWrite),
      field("IdQueueRead", &RunState::IdQueueRead),
      field("VersionsComplete", &RunState::VersionsComplete),
      field("VerHubMajor", &RunState::VerHubMajor),
      field("VerHubMinor", &RunState::VerHubMinor),
      field("VerDspMajor", &RunState::VerDspMajor),
      field("VerDspMinor", &RunState::VerDspMinor),
      field("VerRf1Major", &RunState::VerRf1Major),
      field("VerRf1Minor", &RunState::VerRf1Minor),
      field("VerRf2Major", &RunState::VerRf2Major),
      field("VerRf2Minor", &RunState::VerRf2Minor),
      field("VerFrontMajor", &RunState::VerFrontMajor),
      field("VerFrontMinor", &RunState::VerFrontMinor),
      field("VrcHubVer1", &RunState::VrcHubVer1),
      field("VrcHubVer2", &RunState::VrcHubVer2),
      field("VrcHubVer3", &RunState::VrcHubVer3),
      field("VrcDspVer1", &RunState::VrcDspVer1),
      field("VrcDspVer2", &RunState::VrcDspVer2),
      field("VrcDspVer3", &RunState::VrcDspVer3),
      field("VrcFrontAVer1", &RunState::VrcFrontAVer1),
      field("VrcFrontAVer2", &RunState::VrcFrontAVer2),
      field("VrcFrontAVer3", &RunState::VrcFrontAVer3),
      field("VrcFrontBVer1", &RunState::VrcFrontBVer1),
      field("VrcFrontBVer2", &RunState::VrcFrontBVer2),
      field("VrcFrontBVer3", &RunState::VrcFrontBVer3),
      field("SerialOnly", &RunState::SerialOnly),
      field("SerialAnswerTaken", &RunState::SerialAnswerTaken),
      field("FrontCodeBytes", &RunState::FrontCodeBytes),
      field("FrontImage", &RunState::FrontImage),
      field("FrontBlockOk", &RunState::FrontBlockOk),
      field("DelayTicks", &RunState::DelayTicks),
      field("DelayDone", &RunState::DelayDone),
      field("FrontStreaming", &RunState::FrontStreaming),
      field("FrontVectorAsked", &RunState::FrontVectorAsked),
      field("AutoPage", &RunState::AutoPage),
      field("WizardPage", &RunState::WizardPage),
      field("CatalogueReady", &RunState::CatalogueReady),
      field("InAutoWizard", &RunState::InAutoWizard),
      field("InVrcAutoWizard", &RunState::InVrcAutoWizard),
      field("FlashPhase", &RunState::FlashPhase),
      field("HasRf2", &RunState::HasRf2),
      field("UnitModel", &RunState::UnitModel),
      field("WantAcked", &RunState::WantAcked),
      field("OptionsShown", &RunState::OptionsShown),
      field("AutoDriving", &RunState::AutoDriving),
      field("RecoverChosen", &RunState::RecoverChosen),
      field("FinalCheckFailed", &RunState::FinalCheckFailed),
      field("LwxSystems", &RunState::LwxSystems),
      field("LwxSysFile", &RunState::LwxSysFile),
      field("VrcSystems", &RunState::VrcSystems),
      field("VrcSysFile", &RunState::VrcSysFile),
      field("SystemCount", &RunState::SystemCount),
      field("VersionPicked", &RunState::VersionPicked),
      field("SelectedSystem", &RunState::SelectedSystem),
      field("ReadTimedOut", &RunState::ReadTimedOut),
      field("MatchedSystem", &RunState::MatchedSystem),
      field("VersionsCompared", &RunState::VersionsCompared),
      field("TimedOut", &RunState::TimedOut),
      field("LegacyLink", &RunState::LegacyLink),
      field("ImageDone", &RunState::ImageDone),
      field("ProgressSized", &RunState::ProgressSized),
      field("InHouseBuild", &RunState::InHouseBuild),
      field("UnitIsVrc2", &RunState::UnitIsVrc2),
      field("VrcOldDsp", &RunState::VrcOldDsp),
      field("OldVelarc", &RunState::OldVelarc),
      field("ProgressPercent", &RunState::ProgressPercent),
      field("ErrorText", &RunState::ErrorText),
      field("DebugView", &RunState::DebugView),
      field("PortSearching", &RunState::PortSearching),
      field("PortFound", &RunState::PortFound),
  };
}

}  // namespace

std::optional<RunStateValue> runStateField(const RunState& state, std::string_view name) {
  static const std::vector<Field> fields = makeFields();
  const auto found = std::find_if(fields.begin(), fields.end(), [name](const Field& f) { return f.name == name; });
  if (found == fields.end()) {
    return std::nullopt;
  }
  return found->read(state);
}

}  // namespace firmlane
