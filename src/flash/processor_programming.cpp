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

void showSending(Form1& form1) {
  form1.lblTop.Caption = "FLASH memory has been erased, now sending new firmware to the unit...";
}

void ProcessorProgramming::ProgramFlash() {
  showSending(form1_);
  sender_.DumpFile2(imagePath());
}

void ProcessorProgramming::ProgramNewHub() { sendText(); }

void ProcessorProgramming::ProgramRF() { sendText(); }

void ProcessorProgramming::sendText() {
  showSending(form1_);
  port_.setHandshake(Handshake::XonXoff);
  sender_.DumpFile3(imagePath());
}

std::string ProcessorProgramming::imagePath() const { return files_.path(imageFor(state_).file); }

}  // namespace firmlane
