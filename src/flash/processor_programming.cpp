#include "flash/processor_programming.h"

namespace firmlane {

namespace {

const char* dspImage(const RunState& state) {
  if (state.ProductCode != "VC") {
    return "wls.bin";
  }
  return state.UnitIsVrc2 ? "vrc2.bin" : "vrc.bin";
}

const char* hubImage(const RunState& state) { return state.UnitIsVrc2 ? "vrc2hub.s19" : "hubSL.s19"; }

constexpr const char* kRfImage = "RFSL.s19";

}  // namespace

void showSending(Supervision& supervision, const WizardInCharge& wizard, Form1& form1) {
  supervision.BarValue = 0;
  wizard.setBar(0);
  form1.lblTop.Caption = "FLASH memory has been erased, now sending new firmware to the unit...";
}

void ProcessorProgramming::ProgramFlash() {
  begin();
  sender_.DumpFile2(files_.path(dspImage(state_)));
}

void ProcessorProgramming::ProgramNewHub() { sendText(hubImage(state_)); }

void ProcessorProgramming::ProgramRF() { sendText(kRfImage); }

void ProcessorProgramming::sendText(const char* file) {
  begin();
  port_.setHandshake(Handshake::XonXoff);
  sender_.DumpFile3(files_.path(file));
}

void ProcessorProgramming::begin() {
  showSending(supervision_, wizard_, form1_);
  form1_.Watchdog.setEnabled(true);
}

}  // namespace firmlane
