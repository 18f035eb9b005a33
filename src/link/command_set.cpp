#include "link/command_set.h"

#include "link/command_codes.h"
#include "link/frame.h"

namespace firmlane {

namespace {

constexpr std::uint8_t kWantToProgram = 30;
constexpr std::uint8_t kWantToProgramMic = 80;
constexpr std::size_t kSerialDigits = 6;

// Sub-codes of want-to-program, one a processor.
constexpr std::uint8_t kProgramDsp = 1;
constexpr std::uint8_t kProgramHub = 33;
constexpr std::uint8_t kProgramRf1 = 48;
constexpr std::uint8_t kProgramFrontA = 53;
constexpr std::uint8_t kProgramFrontB = 58;
constexpr std::uint8_t kProgramRf2 = 64;
constexpr std::uint8_t kProgramFront = 80;

/// A serial number as it travels: without the model digit in front.
std::int32_t withoutModelDigit(std::int32_t serialNumber) {
  std::string digits = std::to_string(serialNumber);
  if (digits.size() > kSerialDigits) {
    digits.erase(0, 1);
  }
  return static_cast<std::int32_t>(std::stol(digits));
}

}  // namespace

void CommandSet::sendRun(std::int32_t address, std::uint8_t code, ByteSpan data) {
  port_.Write(buildFrame(FrameKind::RunFrame, address, code, data));
}

void CommandSet::sendBoot(std::uint8_t code, std::uint8_t subCode) {
  port_.Write(buildFrame(FrameKind::BootFrame, 0, code, ByteSpan(&subCode, 1)));
}

void CommandSet::sendOpening(std::uint8_t subCode) {
  openIfClosed();
  sendBoot(kWantToProgram, subCode);
}

void CommandSet::openIfClosed() {
  if (!port_.IsOpen()) {
    port_.Open();
  }
}

void CommandSet::noteTimeSent() {
  AutoForm& form = state_.InVrcAutoWizard ? static_cast<AutoForm&>(frmVRCAuto_) : frmAuto_;
  form.txtSent.Text = form.host().queue().clock().timeOfDay();
}

void CommandSet::Send_Who_is_there(std::int32_t address) {
  openIfClosed();
  sendRun(address == kAnyAddress ? 0 : address, command_code::kWhoIsThere, {});
}

void CommandSet::SendResetLink() { sendRun(0, command_code::kResetLink, {}); }

void CommandSet::Send_ForceReset() {
  sendRun(0, command_code::kForceReset, {});
  noteTimeSent();
}

void CommandSet::SendLoadPreset() {
  constexpr std::array<std::uint8_t, 2> kPreset0{};
  sendRun(0, command_code::kLoadPreset, kPreset0);
}

void CommandSet::SetSerial() {
  const auto groups = sevenBitGroups(withoutModelDigit(state_.SerialNumber));
  const std::array<std::uint8_t, 6> data{groups[0], groups[1], groups[2]};
  sendRun(0, command_code::kSetSerial, data);
}

void CommandSet::Send_WantToProgram() { sendBoot(kWantToProgram, kProgramDsp); }

void CommandSet::Send_WantToProgramNH() {
  sendBoot(kWantToProgram, kProgramHub);
  noteTimeSent();
}

void CommandSet::Send_WantToProgramRF1() { sendOpening(kProgramRf1); }
void CommandSet::Send_WantToProgramRF2() { sendOpening(kProgramRf2); }
void CommandSet::Send_WantToProgramFront() { sendOpening(kProgramFront); }
void CommandSet::Send_WantToProgramFront1() { sendOpening(kProgramFrontA); }
void CommandSet::Send_WantToProgramFront2() { sendOpening(kProgramFrontB); }

void CommandSet::SendWantToProgramMic() { sendBoot(kWantToProgramMic, 1); }

}  // namespace firmlane
