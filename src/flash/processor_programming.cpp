#include "flash/processor_programming.h"

#include "flash/targets.h"

namespace firmlane {

void showSending(Supervision& supervision, const WizardInCharge& wizard, Form1& form1) {
  supervision.BarValue = 0;
  wizard.setBar(0);
  form1.lblTop.Caption = "FLASH memory has been erased, now sending new firmware to the unit...";
}

void ProcessorProgramming::ProgramFlash() {
  begin();
  sender_.DumpFile2(imagePath());
}

void ProcessorProgramming::ProgramNewHub() { sendText(); }

void ProcessorProgramming::ProgramRF() { sendText(); }

void ProcessorProgramming::sendText() {
  begin();
  port_.setHandshake(Handshake::XonXoff);
  sender_.DumpFile3(imagePath());
}

std::string ProcessorProgramming::imagePath() const { return files_.path(imageFor(state_).file); }

void ProcessorProgramming::begin() {
  showSending(supervision_, wizard_, form1_);
  form1_.Watchdog.setEnabled(true);
}

}  // namespace firmlane
