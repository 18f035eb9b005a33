#include "personal/mic_models.h"

#include "state/pages.h"
#include "state/tell_failure.h"
#include "state/text.h"

namespace firmlane {

namespace {
constexpr int kFull = 100;
constexpr int kStartSeconds = 20;
constexpr int kStartInterval = 1000;
constexpr int kTransferInterval = 500;
constexpr int kBarInterval = 100;
constexpr int kAfterwardsLimit = 10;
constexpr int kNoAcknowledge = 8012;
}  // namespace

MicModels::MicModels(FormHost& host, SerialPort& port, ReceivePath& receivePath, UnitAnswer& answer, Supervision& supervision,
                     WizardInCharge& wizard, FactoryLine& line, const Files& files, RunState& state, Form1& form1)
    : host_(host),
      port_(port),
      receivePath_(receivePath),
      answer_(answer),
      supervision_(supervision),
      wizard_(wizard),
      line_(line),
      files_(files),
      state_(state),
      form1_(form1) {}

void MicModels::btnMic_Click() {
  if (line_.busy()) {
    return;
  }
  state_.FactoryFirstPass = false;
  state_.SerialOnly = false;
  state_.ProductCode = "WS";
  form1_.Option2(1).Value = true;
  form1_.Option1(2).Value = true;
  if (!state_.PortChosen) {
    state_.ComPort = kFactoryPort;
    state_.PortChosen = true;
  }
  port_.setNumber(state_.ComPort);
  // A receiver that starts talks at this speed, and a table may hold the bytes that a handshake would take for its own.
  port_.setSettings("9600,N,8,1");
  port_.setHandshake(Handshake::None);
  line_.takeScreen();
  form1_.Command5.Hide();
  form1_.lblResetSerial.Show();
  form1_.ProgressBar1.Show();
  std::string trouble;
  try {
    trouble = ProgramMicModels();
  } catch (const Failure& failure) {
    tellFailure(host_, state_, "Error: ", failure);
    trouble = "The Mic Models were not sent to the receiver";
  }
  leaveLine();
  if (!trouble.empty()) {
    line_.giveUp(trouble);
  }
}

std::string MicModels::ProgramMicModels() {
  while (!connect()) {
    form1_.lblResetSerial.Caption = "Unable to connect to the receiver";
    const MessageButton again =
        host_.showMessageBox({.text = "Unable to connect to receiver, try again?", .buttons = MessageButtons::YesNo});
    if (again == MessageButton::No) {
      return "Unable to connect to the receiver";
    }
    port_.Close();
  }
  return SendMicModels(files_.path(MicFile::kName)) ? "" : "The Mic Models were not sent to the receiver";
}

bool MicModels::connect() {
  form1_.ProgressBar1.Max = kFull;
  wizard_.setBar(0);
  receivePath_.MicMode = true;
  // While whole frames are awaited, pieces of one must be put together; only the acknowledges come as single bytes.
  receivePath_.ExpectFrameEnd = false;
  receivePath_.WantAnswered = false;
  receivePath_.RxBuffer.clear();
  form1_.Command3.Disable();
  port_.Open();
  port_.setReceiveThreshold(1);
  form1_.lblResetSerial.Caption =
      std::string("Ready to send Mic Models to the Receiver") + kCrLf + kCrLf + "Please cycle the power on the receiver now";
  receivePath_.ExpectFrameEnd = answer_.await([this] { return receivePath_.WantAnswered; }, kStartSeconds, kStartInterval);
  return receivePath_.ExpectFrameEnd;
}

bool MicModels::SendMicModels(const std::string& path) {
  try {
    form1_.Watchdog.setInterval(kTransferInterval);
    MicFile file(Files::readText(path));
    port_.Read();
    form1_.lblResetSerial.Caption = "Now sending Mic Models";
    sendTable(file);
    form1_.lblResetSerial.Caption = "Finished sending new Mic Models to the receiver";
    form1_.Timer1.start(kBarInterval);
    supervision_.setLimit(kAfterwardsLimit);
    return true;
  } catch (const Failure& failure) {
    if (failure.number() == failure_number::kPortGone) {
      throw;  // no file to look for
    }
    host_.showFailure("Error encountered while trying to open file, please retry, " + std::to_string(failure.number()) + "," +
                      failure.description());
    return false;
  }
}

void MicModels::sendTable(MicFile& file) {
  for (int model = 0; model < MicFile::kModels; ++model) {
    const MicFile::ModelLine line = file.modelLine();
    sendGroup(line.name);
    sendGroup(line.filter);
    for (int i = 0; i < MicFile::kFilterLines; ++i) {
      sendGroup(file.filterLine());
      wizard_.setBar(file.percent());
    }
  }
}

void MicModels::sendGroup(const MicGroup& group) {
  state_.MicAck = false;
  port_.Write(group);
  if (!answer_.await([this] { return state_.MicAck; }, kAnswerSeconds, kTransferInterval)) {
    throw Failure(kNoAcknowledge, "the receiver has stopped answering");
  }
}

void MicModels::leaveLine() {
  // The acknowledges that were taken lie in the buffer, where the next answer would be put behind them.
  receivePath_.RxBuffer.clear();
  receivePath_.ExpectFrameEnd = false;
  port_.Close();
  form1_.Command3.Enable();
  // Next ends the run on the page where a serial number run ends; there MicMode goes too.
  state_.WizardPage = classic_page::kFlashed;
  state_.SerialStep = serial_step::kFinished;
}

}  // namespace firmlane
