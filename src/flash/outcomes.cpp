#include "flash/outcomes.h"

#include "flash/targets.h"
#include "state/pages.h"
#include "state/text.h"

namespace firmlane {

namespace {

constexpr int kBarInterval = 100;

constexpr const char* kStoppedResponding =
    "The unit has stopped responding. Please try programming the FLASH again.\r\rClick Next to try again";
constexpr const char* kNoConnection =
    "Firmlane was unable to connect to your unit\r\n\r\n"
    "Please check your connections and make sure that there is only one unit connected\r\n"
    "Click Next to try again or click Exit to quit";
constexpr const char* kRefused =
    "Your unit may require a successful FLASH upgrade to function properly.\r"
    "Please check your connections and try to run the Wizard again.";

}  // namespace

void Outcomes::Succeeded() {
  port_.Close();
  receivePath_.ExpectFrameEnd = false;
  if (AutoForm* wizard = wizard_.form()) {
    wizard->lblReset.Hide();
  }
  form1_.lblProgressInfo.Hide();
  form1_.lblTop.Caption = "Congratulations!\rYou have successfully upgraded the firmware in your " + unitName(state_) +
                          "!\r\rClick Next to continue or click Exit to quit";
  wizard_.advanceOverall();
  if (state_.FactoryBuild) {
    form1_.lblTop.Caption = "The Flash Memory has been Programmed, Click 'Next' to Program the Serial Number";
  }
  state_.WizardPage = classic_page::kFlashed;
  form1_.Command3.Enable();
  stopTimers();
  wizard_.tellOutcome(OutcomeKind::Good, form1_.lblTop.Caption);
}

void Outcomes::Refused() {
  port_.Close();
  receivePath_.ExpectFrameEnd = false;
  const std::string refusal = "Failure programming " + unitName(state_) + " FLASH";
  wizard_.tellOutcome(OutcomeKind::Failure, refusal + "\r\r" + kRefused);
  host_.showFailure(refusal);
  stopTimers();
  form1_.lblTop.Caption = kRefused;
  state_.WizardPage = classic_page::kTask;
  form1_.Command3.Enable();
}

void Outcomes::NoConnection() {
  failWith(kNoConnection);
  stopTimers();
  frmAuto_.lblTotal.Hide();
  frmAuto_.prgTotal.Hide();
  clearBar();
  if (AutoForm* wizard = wizard_.form()) {
    wizard->lblMain.Caption = form1_.lblTop.Caption.get();
  }
  offerAnotherTry();
}

void Outcomes::StoppedResponding() {
  failWith(kStoppedResponding);
  notes_.stage("Timed Out");
  stopTimers();
  form1_.Timer1.setInterval(kBarInterval);
  clearBar();
  offerAnotherTry();
}

void Outcomes::NoVerdict() {
  failWith(kStoppedResponding);
  stopTimers();
  clearBar();
  form1_.lblProgressInfo.Hide();
  offerAnotherTry();
}

void Outcomes::Undecided() {
  wizard_.tellOutcome(OutcomeKind::Failure, kStoppedResponding);
  stopTimers();
  port_.Close();
}

void Outcomes::failWith(const char* text) {
  form1_.lblTop.Caption = text;
  wizard_.tellOutcome(OutcomeKind::Failure, text);
}

void Outcomes::stopTimers() {
  form1_.Timer1.stop();
  form1_.Watchdog.stop();
}

void Outcomes::clearBar() { wizard_.setBar(0); }

void Outcomes::offerAnotherTry() {
  form1_.ProgressBar1.Hide();
  state_.WizardPage = classic_page::kReadyToFlash;
  port_.Close();
  form1_.Command3.Enable();
}

}  // namespace firmlane
