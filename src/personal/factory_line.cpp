#include "personal/factory_line.h"

#include "state/pages.h"

namespace firmlane {

FactoryLine::FactoryLine(SerialPort& port, ReceivePath& receivePath, Preset& preset, Supervision& supervision,
                         WizardInCharge& wizard, RunState& state, Form1& form1)
    : port_(port),
      receivePath_(receivePath),
      preset_(preset),
      supervision_(supervision),
      wizard_(wizard),
      state_(state),
      form1_(form1) {}

void FactoryLine::endProcedure() {
  form1_.Timer3.stop();
  preset_.PresetPending = false;
  state_.SerialStep = serial_step::kIdle;
  state_.GotId = false;
  receivePath_.PresetLoaded = false;
  form1_.lblResetSerial.Hide();
  form1_.ProgressBar1.Hide();
  form1_.lblOutcome.clear();
  form1_.lblTop.Show();
}

void FactoryLine::readyForNext(const std::string& verdict) {
  form1_.Timer1.stop();
  form1_.Watchdog.stop();
  form1_.lblTop.Caption = verdict;
  form1_.Command3.Enable();
  port_.Close();
  receivePath_.MicMode = false;
  supervision_.BarValue = 0;
  state_.ProgressPercent = 0;
  wizard_.setBar(0);
  showButtons();
  state_.WizardPage = classic_page::kTask;
}

void FactoryLine::giveUp(const std::string& why) {
  endProcedure();
  readyForNext(why);
  form1_.lblOutcome.tell(OutcomeKind::Failure, why);
}

std::string FactoryLine::verdict() const {
  return receivePath_.MicMode ? "Microphone Model Load Complete" : "Serial Number and Preset Load Complete";
}

void FactoryLine::showButtons() {
  form1_.btnSN.Show();
  form1_.btnMic.Show();
}

void FactoryLine::hideButtons() {
  form1_.btnSN.Hide();
  form1_.btnMic.Hide();
}

void FactoryLine::takeScreen() {
  hideButtons();
  form1_.lblTop.Hide();
  form1_.frmUC.Hide();
  form1_.lblProgressInfo.Hide();
  form1_.lblOutcome.clear();
}

}  // namespace firmlane
