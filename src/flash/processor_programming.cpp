#include "flash/processor_programming.h"

#include "flash/targets.h"

namespace firmlane {

void ProcessorProgramming::requireImage() const {
  // Which generation of Velarc it is the unit itself says, and only when it has been switched on; until then the product counts.
  RunState expected = state_;
  expected.UnitIsVrc2 = !state_.OldVelarc;
  const char* file = imageFor(expected).file;
  if (file != nullptr && Files::length(files_.path(file)) == 0) {
    throw Failure(failure_number::kTypeMismatch, std::string(file) + " is empty");
  }
}

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
