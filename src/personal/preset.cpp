#include "personal/preset.h"

#include "state/text.h"

namespace firmlane {

namespace {
}  // namespace

Preset::Preset(SerialPort& port, CommandSet& commands, ReceivePath& receivePath, UnitAnswer& answer, RunState& state,
               Form1& form1)
    : port_(port), commands_(commands), receivePath_(receivePath), answer_(answer), state_(state), form1_(form1) {
  form1.Timer3.OnTimer = [this] { onTimer3(); };
}

bool Preset::SendPreset0() {
  receivePath_.PresetLoaded = false;
  form1_.Timer3.start(kReportInterval);
  PresetPending = true;
  port_.setReceiveThreshold(kShortestAnswer);
  while (!sendAndWait()) {
    const bool again = answer_.askAgain();
    if (receivePath_.PresetLoaded) {
      break;
    }
    if (!again) {
      return false;
    }
  }
  form1_.Command3.Enable();
  return true;
}

bool Preset::sendAndWait() {
  // What is left of the answer before this one would spoil the next.
  port_.Read();
  receivePath_.RxBuffer.clear();
  state_.SerialAnswerTaken = false;
  commands_.SendLoadPreset();
  const bool loaded = answer_.await([this] { return receivePath_.PresetLoaded; });
  form1_.Watchdog.stop();
  return loaded;
}

void Preset::onTimer3() {
  if (state_.GotId && !PresetPending) {
    report("Serial Number Programmed!");
  } else if (receivePath_.PresetLoaded) {
    report(form1_.lblResetSerial.Caption.get() + kCrLf + "Preset 0 Loaded!");
  }
}

void Preset::report(const std::string& text) {
  form1_.Timer3.stop();
  form1_.lblResetSerial.Caption = text;
  form1_.lblResetSerial.Show();
}

}  // namespace firmlane
