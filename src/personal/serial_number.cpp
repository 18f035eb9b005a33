#include "personal/serial_number.h"

#include "state/pages.h"
#include "state/text.h"

namespace firmlane {

namespace {

constexpr const char* kChangeIt = "Please click on 'Edit Number' to change it";
}  // namespace

SerialNumber::SerialNumber(FormHost& host, SerialPort& port, CommandSet& commands, ReceivePath& receivePath, UnitAnswer& answer,
                           SerialFile& file, Preset& preset, FactoryLine& line, RunState& state, Form1& form1,
                           NewSerial& newserial)
    : host_(host),
      port_(port),
      commands_(commands),
      receivePath_(receivePath),
      answer_(answer),
      file_(file),
      preset_(preset),
      line_(line),
      state_(state),
      form1_(form1),
      newserial_(newserial) {}

void SerialNumber::btnSN_Click() {
  if (line_.busy()) {
    return;
  }
  state_.WizardPage = classic_page::kFlashed;
  state_.FactoryFirstPass = false;
  form1_.Option2(1).Value = true;
  form1_.Option1(2).Value = true;
  state_.ProductCode = "WS";
  line_.hideButtons();
  state_.ComPort = kFactoryPort;
  state_.PortChosen = true;
  port_.setNumber(state_.ComPort);
  // What an earlier flash run has left would spoil the answer: a Hub run takes its sub-code for a verdict, and a handshake takes
  // some numbers for its own bytes.
  state_.FlashTarget.clear();
  port_.setHandshake(Handshake::None);
  state_.SerialOnly = true;
  form1_.Command3.Enable();
  form1_.Command3.Click();
}

void SerialNumber::DoSerialNumber() {
  try {
    line_.takeScreen();
    file_.ReadSerialFile();
    confirmPower();
    confirmNumber();
    chooseModel();
    ProgramSerialNum();
  } catch (const Failure&) {
    recover();
    throw;
  }
  if (state_.SerialStep == serial_step::kProgramming) {
    state_.SerialStep = serial_step::kFinished;
  }
}

void SerialNumber::confirmPower() {
  form1_.lblResetSerial.Caption = std::string("Programming the Serial Number is the next step.") + kCrLf + kCrLf +
                                  "Please cycle the power on the LWX Receiver and" + kCrLf +
                                  "click 'Next' when the unit has successfully rebooted";
  form1_.lblResetSerial.Show();
  waitWhileStep(serial_step::kPowerCycle);
}

void SerialNumber::confirmNumber() {
  form1_.lblResetSerial.Caption = std::string("Now check the Serial Number displayed below") + kCrLf +
                                  "to make sure that it is the one you want" + kCrLf +
                                  "sent to the unit. If you need to change it," + kCrLf + "Click on 'Edit Number' to adjust it" +
                                  kCrLf + kCrLf + "Click 'Next' when you are finished";
  form1_.lblResetSerial.Show();
  form1_.txtNum.Show();
  form1_.lblSerial.Show();
  form1_.btnSerial.Show();
  awaitNumber();
  form1_.txtNum.Hide();
  form1_.lblSerial.Hide();
  form1_.btnSerial.Hide();
  form1_.lblResetSerial.Hide();
  // An editor left open must not change the number, or move the file back, once it is on its way to the unit.
  newserial_.Unload();
}

void SerialNumber::awaitNumber() {
  if (!SerialFile::fits(state_.SerialNumber)) {
    form1_.lblOutcome.tell(OutcomeKind::Caution, SerialFile::whyUnfit(state_.SerialNumber) + ". " + kChangeIt);
  }
  waitWhileStep(serial_step::kNumberShown);
  while (!SerialFile::fits(state_.SerialNumber)) {
    host_.showMessage(SerialFile::whyUnfit(state_.SerialNumber) + ".\r\n\r\n" + kChangeIt);
    state_.SerialStep = serial_step::kNumberShown;
    waitWhileStep(serial_step::kNumberShown);
  }
}

void SerialNumber::chooseModel() {
  form1_.frmModel.Show();
  waitWhileStep(serial_step::kModelShown);
  form1_.frmModel.Hide();
  form1_.lblResetSerial.Hide();
}

void SerialNumber::waitWhileStep(int step) {
  while (state_.SerialStep == step) {
    host_.queue().WaitEvents();
  }
}

void SerialNumber::ProgramSerialNum() {
  form1_.Command3.Disable();
  if (!storeInUnit()) {
    giveUp(whyNotStored());
    return;
  }
  ++state_.SerialNumber;  // the file is ahead already
  while (form1_.Timer3.enabled()) {
    host_.queue().WaitEvents();
  }
  state_.SerialAnswerTaken = false;
  if (!preset_.SendPreset0()) {
    giveUp("No answer from the receiver: the Serial Number was programmed, but Preset 0 was not loaded");
    return;
  }
  port_.Close();
  state_.SerialOnly = false;
}

bool SerialNumber::storeInUnit() {
  numberOut_ = false;
  for (;;) {
    form1_.Timer3.start(kReportInterval);
    port_.Open();
    port_.setReceiveThreshold(kShortestAnswer);
    if (!numberOut_) {
      takeNumber();
    }
    const bool again = sendAndWait() || answer_.askAgain();
    if (stored()) {
      return true;
    }
    if (!again) {
      return false;
    }
    form1_.lblResetSerial.Hide();
    if (state_.GotId) {
      tellReadBack();
    }
    port_.Close();
    answer_.pause();
  }
}

void SerialNumber::takeNumber() {
  const std::int32_t shown = state_.SerialNumber;
  file_.reserve();
  if (state_.SerialNumber != shown) {
    form1_.lblOutcome.tell(OutcomeKind::Caution, "Another station has taken number " + std::to_string(shown) +
                                                     ": this receiver gets number " + std::to_string(state_.SerialNumber));
  }
}

bool SerialNumber::sendAndWait() {
  // An answer of an earlier reading, or bytes from before, must not pass for this unit's answer.
  receivePath_.RxBuffer.clear();
  state_.GotId = false;
  state_.SerialAnswerTaken = false;
  sendNumber();
  const bool answered = answer_.await([this] { return state_.GotId; });
  form1_.Watchdog.stop();
  return answered;
}

void SerialNumber::sendNumber() {
  try {
    commands_.SetSerial();
  } catch (const Failure&) {
    // A port that refuses the frame has sent nothing of it. Once the frame has left, the number may be in a unit for good.
    if (!numberOut_) {
      file_.giveBack();
    }
    throw;
  }
  numberOut_ = true;
}

bool SerialNumber::stored() const { return state_.GotId && receivePath_.SerialReadBack == state_.SerialNumber; }

void SerialNumber::tellReadBack() {
  host_.showFailure(std::string("Error programming Serial Number") + kCrLf + kCrLf + "Sent #" +
                    std::to_string(state_.SerialNumber) + ", but read back #" + std::to_string(receivePath_.SerialReadBack) +
                    kCrLf + kCrLf + "Trying again");
  state_.GotId = false;
}

std::string SerialNumber::whyNotStored() const {
  const std::string number = std::to_string(state_.SerialNumber);
  return state_.GotId ? "The receiver has reported number " + std::to_string(receivePath_.SerialReadBack) + ", not number " +
                            number + ": the Serial Number was not programmed"
                      : "No answer from the receiver: number " + number + " may be in it or not, and no other receiver gets it";
}

void SerialNumber::giveUp(const std::string& verdict) {
  state_.SerialOnly = false;
  line_.giveUp(verdict);
}

void SerialNumber::recover() {
  form1_.Watchdog.stop();
  port_.Close();
  for (Control* control :
       std::initializer_list<Control*>{&form1_.txtNum, &form1_.lblSerial, &form1_.btnSerial, &form1_.frmModel}) {
    control->Hide();
  }
  newserial_.Unload();
  line_.endProcedure();
  line_.showButtons();
  form1_.lblTop.Caption = "Click 'Next' to Program the Serial Number";
  form1_.Command3.Enable();
}

}  // namespace firmlane
