// "Firmware Versions": the conversation with a connected unit that tells who it is and what its processors run. It has a port of
// its own and keeps asking as long as its form is loaded; time limits are the caller's. Taking answers apart is VersionAnswers'.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "link/version_answers.h"
#include "platform/serial_port.h"
#include "progress/activity.h"

namespace firmlane {

class VersionReadout {
 public:
  /// Takes the events of frmVersion and the receive event of the port, which must be no other's. Loading frmVersion starts the
  /// conversation and unloading ends it, at any moment. A port that cannot be opened is told to the user and unloads the form
  /// again; one that is lost later is told once.
  VersionReadout(SerialPort& port, Activity& activity, RunState& state, FrmVersion& frmVersion);

 private:
  void Form_Load();
  void Form_Unload();
  void Timer1_Timer();
  void Command1_Click();
  void MSComm1_OnComm();

  void ResetLink();
  void WhoIsThere();
  void GetVersions();
  /// Counts event passes. False when the conversation was given up meanwhile.
  bool Delay(int count);

  void begin();
  void setUp(const std::string& settings);
  void openLine();
  /// Does something on the line and tells the user when that fails.
  void converse(const std::function<void()>& step);
  void askWhoAfterDelay();
  void askNext();
  bool changeSpeed();
  void send(std::uint8_t code);
  void fail(const Failure& failure);
  bool startBuffer();
  [[nodiscard]] bool answerIsIn() const;

  SerialPort& port_;
  Activity& activity_;
  RunState& state_;
  FrmVersion& form_;
  VersionAnswers answers_;
  bool BaudToggled_ = false;     // the port is at 9600 right now
  std::int32_t RetryTicks_ = 0;  // ticks at this speed
  bool lineUp_ = false;          // not while the speed changes, and not any more once the port was lost or the form unloaded
  std::optional<Activity::Span> reading_;
  int conversation_ = 0;  // changes with each start and end, so what is left of an earlier one on the stack knows
};

}  // namespace firmlane
