#include "units/running_unit.h"

#include <algorithm>
#include <array>

namespace firmlane::sim {

namespace {

constexpr std::uint8_t kWhoIsThere = 1;
constexpr std::uint8_t kIdAnswer = 2;
constexpr std::uint8_t kLoadPreset = 10;
constexpr std::uint8_t kSetSerial = 39;
constexpr std::uint8_t kVersions = 94;
constexpr std::uint8_t kVersionsOfWireless = 95;
constexpr std::uint8_t kVersionsOfVelarc = 105;
constexpr std::uint8_t kForceReset = 119;
constexpr std::uint8_t kConfirmation = 96;

// Positions count from 1, and the data of a frame begins at 6.
constexpr int kFirstDataPosition = 6;
constexpr int kIdDataBytes = 10;
constexpr int kIdDspPosition = 8;
constexpr int kIdModelPosition = 13;
constexpr int kWirelessVersionBytes = 8;
constexpr int kVelarcVersionBytes = 12;

void putVersion(Bytes& data, int position, const ProcessorState& processor, int numbers) {
  if (processor.blank) {
    return;
  }
  const std::array<std::uint8_t, 3> version = {processor.version.first, processor.version.second, processor.version.third};
  std::copy_n(version.begin(), numbers, data.begin() + (position - kFirstDataPosition));
}

UnitAnswer idAnswer(const UnitState& unit) {
  Bytes data(kIdDataBytes);
  if (const ProcessorState* dsp = unit.find("DSP")) {
    putVersion(data, kIdDspPosition, *dsp, unit.model->versionNumbers());
  }
  data[kIdModelPosition - kFirstDataPosition] = unit.model->modelByte;
  return {FrameEnd::Run, unit.serial, kIdAnswer, data};
}

std::optional<UnitAnswer> versionAnswer(const UnitState& unit) {
  const bool wireless = unit.model->family == Family::Wireless;
  Bytes data(wireless ? kWirelessVersionBytes : kVelarcVersionBytes);
  bool tells = false;
  for (const ProcessorState& processor : unit.processors) {
    if (processor.model->versionPosition != 0) {
      putVersion(data, processor.model->versionPosition, processor, unit.model->versionNumbers());
      tells = true;
    }
  }
  if (!tells) {
    return std::nullopt;
  }
  return UnitAnswer{FrameEnd::Run, 0, wireless ? kVersionsOfWireless : kVersionsOfVelarc, data};
}

}  // namespace

std::optional<UnitAnswer> answerTo(const HeardFrame& command, UnitState& unit) {
  if (command.end != FrameEnd::Run || (command.address != 0 && command.address != unit.serial)) {
    return std::nullopt;
  }
  switch (command.code) {
    case kWhoIsThere:
      return command.data.empty() ? std::optional(idAnswer(unit)) : std::nullopt;
    case kVersions:
      return command.data.empty() ? versionAnswer(unit) : std::nullopt;
    case kLoadPreset:
      if (command.data.size() != 2) {
        return std::nullopt;
      }
      ++unit.presetLoads;
      return UnitAnswer{FrameEnd::Confirm, 0, kConfirmation, {kLoadPreset}};
    case kSetSerial:
      if (command.data.size() != 6) {
        return std::nullopt;
      }
      unit.serial = groupsValue(command.data);
      return UnitAnswer{FrameEnd::Confirm, unit.serial, kConfirmation, {kSetSerial}};
    default:
      return std::nullopt;
  }
}

bool isSetSerial(const HeardFrame& command) { return command.end == FrameEnd::Run && command.code == kSetSerial; }

bool isForceReset(const HeardFrame& command) { return command.end == FrameEnd::Run && command.code == kForceReset; }

}  // namespace firmlane::sim
