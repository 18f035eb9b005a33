#include "units/faults.h"

#include <array>

namespace firmlane::sim {

namespace {

struct FaultName {
  std::string_view name;
  bool Faults::*field;
};

constexpr std::array<FaultName, 15> kFaults = {{
    {"silent", &Faults::silent},
    {"wrong-checksum", &Faults::wrongChecksum},
    {"late-answer", &Faults::lateAnswer},
    {"late-erase", &Faults::lateErase},
    {"late-verdict", &Faults::lateVerdict},
    {"refuses", &Faults::refuses},
    {"refuses-erase", &Faults::refusesErase},
    {"drops-acknowledgements", &Faults::dropsAcknowledgements},
    {"dies", &Faults::diesInStream},
    {"early-verdict", &Faults::earlyVerdict},
    {"no-verdict", &Faults::noVerdict},
    {"holds-line", &Faults::holdsLine},
    {"wrong-read-back", &Faults::wrongReadBack},
    {"cut-answer", &Faults::cutAnswer},
    {"noise", &Faults::noise},
}};

}  // namespace

bool setFault(Faults& faults, std::string_view name) {
  if (name == "none") {
    faults = Faults{};
    return true;
  }
  if (name == "late") {
    faults.lateAnswer = faults.lateErase = faults.lateVerdict = true;
    return true;
  }
  for (const FaultName& fault : kFaults) {
    if (fault.name == name) {
      faults.*fault.field = true;
      return true;
    }
  }
  return false;
}

std::vector<std::string_view> faultNames() {
  std::vector<std::string_view> names = {"none", "late"};
  for (const FaultName& fault : kFaults) {
    names.push_back(fault.name);
  }
  return names;
}

std::string faultsText(const Faults& faults) {
  std::string text;
  for (const FaultName& fault : kFaults) {
    if (faults.*fault.field) {
      if (!text.empty()) {
        text += ' ';
      }
      text += fault.name;
    }
  }
  return text;
}

void spoilFrame(Bytes& frame, std::size_t checksumAt, const Faults& faults, std::minstd_rand& random) {
  constexpr unsigned kMostNoise = 8;
  if (faults.wrongChecksum) {
    frame[checksumAt] = static_cast<std::uint8_t>((frame[checksumAt] + 1) & 0x7F);
  }
  if (faults.cutAnswer) {
    frame.resize(frame.size() / 2);
  }
  if (faults.noise) {
    Bytes noise(1 + random() % kMostNoise);
    for (std::uint8_t& byte : noise) {
      byte = static_cast<std::uint8_t>(random());
    }
    frame.insert(frame.begin(), noise.begin(), noise.end());
  }
}

void spoilReadBack(std::int32_t& number, Faults& faults) {
  constexpr int kTimes = 2;
  if (faults.wrongReadBack) {
    number ^= 1;
    faults.wrongReadBack = ++faults.wrongReadBacks % kTimes != 0;
  }
}

}  // namespace firmlane::sim
