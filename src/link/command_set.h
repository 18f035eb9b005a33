// Every command that goes out on the main port. A sender builds the bytes and writes them in a single write; it does not wait,
// retry or look at the answer.
#pragma once

#include <cstdint>

#include "platform/serial_port.h"
#include "state/auto_form.h"
#include "state/run_state.h"

namespace firmlane {

/// What Send_Who_is_there takes for any unit.
inline constexpr std::int32_t kAnyAddress = 999;

class CommandSet {
 public:
  CommandSet(SerialPort& port, const RunState& state, FrmAuto& frmAuto, FrmVRCAuto& frmVRCAuto)
      : port_(port), state_(state), frmAuto_(frmAuto), frmVRCAuto_(frmVRCAuto) {}

  // All throw Failure when the port is closed, but those that open it first.

  /// Opens the port if it is closed. Address kAnyAddress stands for 0.
  void Send_Who_is_there(std::int32_t address);
  void SendResetLink();
  void Send_ForceReset();
  void SendLoadPreset();
  /// Sends SerialNumber without its model digit.
  void SetSerial();

  // Answers to the announcement of a boot loader. RF1, RF2 and the fronts open the port if it is closed.
  void Send_WantToProgram();
  void Send_WantToProgramNH();
  void Send_WantToProgramRF1();
  void Send_WantToProgramRF2();
  void Send_WantToProgramFront();
  void Send_WantToProgramFront1();
  void Send_WantToProgramFront2();
  void SendWantToProgramMic();

 private:
  void openIfClosed();
  void sendRun(std::int32_t address, std::uint8_t code, ByteSpan data);
  void sendBoot(std::uint8_t code, std::uint8_t subCode);
  void sendOpening(std::uint8_t subCode);
  void noteTimeSent();

  SerialPort& port_;
  const RunState& state_;
  FrmAuto& frmAuto_;
  FrmVRCAuto& frmVRCAuto_;
};

}  // namespace firmlane
