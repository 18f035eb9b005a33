// Pages from the decision what to program to the verdict, and the pages that lead back to the options.
#include "state/pages.h"
#include "wizard/auto/auto_wizard.h"

namespace firmlane {

void AutoWizard::nextOnDownloaded() {
  if (!form_.chkReceiver.checked()) {
    state_.AutoPage = auto_page::kDownloadOnly;
    next();
    return;
  }
  decideWhatToProgram();
  progress_.CalcProgress();
  if (!product_.totalShownAfterQuestions) {
    progress_.show();
  }
  state_.VersionsCompared = true;
  if (!table_.anySelected() && !confirmReflash()) {
    return;
  }
  if (product_.totalShownAfterQuestions) {
    progress_.show();
  }
  programOne();
}

/// Each unit is compared once. After a run that failed what is left of the selection holds, and what that run has taken back.
void AutoWizard::decideWhatToProgram() {
  if (!state_.RecoverChosen && !state_.VersionsCompared) {
    table_.CompareVersions();
  } else if (!table_.anySelected()) {
    driver_.selectUnfinished();
  }
  if (!state_.RecoverChosen) {
    table_.dropUnreachable();
  }
}

/// The unit is current: whether the user wants it programmed all the same. Cancel ends the program.
bool AutoWizard::confirmReflash() {
  if (setting_.host.showMessageBox({.text = product_.texts.current, .buttons = MessageButtons::OKCancel}) ==
      MessageButton::Cancel) {
    form_.Unload();
  }
  if (setting_.host.showMessageBox({.text = product_.texts.sureToReflash, .buttons = MessageButtons::YesNo}) !=
      MessageButton::Yes) {
    return false;
  }
  table_.selectReachable();
  state_.ProgressSized = false;
  progress_.CalcProgress();
  return true;
}

void AutoWizard::programOne() {
  form_.btnBack.Hide();
  form_.btnNext.Disable();  // before events run: the second half of a double click must not start another run
  texts_.LoadProgramMSG();
  setting_.host.queue().PumpEvents();
  state_.FlashPhase = flash_phase::kIdle;
  form_.Progress1.Show();
  texts_.instruct(product_.texts.turnOffAndOn);
  reports_.tellSelected();
  driver_.UpdateReceiver();
  reports_.tellSelected();
  if (state_.TimedOut) {
    state_.AutoPage = auto_page::kRestart;
    form_.btnNext.Enable();
    form_.Progress1.Hide();
    form_.lblReset.Hide();
    return;
  }
  form_.btnNext.Enable();
  state_.AutoPage = auto_page::kProcessorDone;
  if (table_.anySelected()) {
    texts_.LoadTurnOFFMSG();
  } else {
    texts_.CheckVerMSG();
    form_.Progress1.Hide();
    state_.AutoPage = auto_page::kAllDone;
  }
  setting_.host.queue().PumpEvents();
}

void AutoWizard::nextOnProcessorDone() {
  form_.Progress1.Value = 100;
  state_.AutoPage = auto_page::kReady;
  next();
}

void AutoWizard::nextOnAllDone() {
  form_.lblMain.Caption = product_.texts.waitingForReset;
  form_.btnNext.Disable();
  table_.ClearVersions();
  texts_.instruct(product_.texts.turnOffAndOn);
  if (!reading_.readAgain()) {
    setting_.wizard.tellOutcome(OutcomeKind::Failure, state_.ErrorText);
    texts_.CheckVerMSG();  // the page as it was: Next tries again
    form_.btnNext.Enable();
    return;
  }
  form_.Progress1.Hide();
  form_.lblReset.Hide();
  if (form_.ChkOffline.checked()) {
    table_.ParseVersions();
  }
  table_.HideUpdate();
  table_.LoadVersions();
  table_.CompareVersionsFinal();
  reports_.tellReadAgain();
  showVerdict();
}

void AutoWizard::showVerdict() {
  if (state_.FinalCheckFailed) {
    form_.lblMain.Caption = product_.texts.notReprogrammed;
  } else {
    std::string text = product_.texts.complete;
    if (state_.LegacyLink) {
      text += product_.texts.completeOnOldLink;
    }
    form_.lblMain.Caption = text;
    if (window_.verdictLight != nullptr) {
      window_.verdictLight->Picture = "green";
    }
    form_.btnMore.Show();
  }
  tellVerdict();
  state_.AutoPage = auto_page::kVerdict;
  form_.btnNext.Disable();
  form_.btnNext.Hide();
}

/// The verdict once more, without the lines that only make room below it.
void AutoWizard::tellVerdict() {
  const std::string behind = table_.stillBehind();
  if (!state_.FinalCheckFailed && !behind.empty()) {
    setting_.wizard.tellOutcome(OutcomeKind::Caution, "Not everything is up to date yet: " + behind + ". Click '" +
                                                          form_.btnMore.Caption.get() + "' to program the rest.");
    return;
  }
  const std::string verdict = form_.lblMain.Caption;
  setting_.wizard.tellOutcome(state_.FinalCheckFailed ? OutcomeKind::Failure : OutcomeKind::Good,
                              verdict.substr(0, verdict.find_last_not_of("\r\n") + 1));
}

void AutoWizard::nextOnDownloadOnly() {
  form_.Progress1.Hide();
  texts_.LoadDLRestartMsg();
  form_.ChkOffline.Value = 0;
  form_.chkReceiver.Value = 1;
  form_.btnBack.Hide();
  texts_.LoadDLNoReceiverMSG();
  state_.AutoPage = auto_page::kRestart;
}

void AutoWizard::nextOnRestart() {
  form_.lblBottom.Hide();
  progress_.hide();  // of a run that has failed; the next one takes it up again
  reading_.clearFlags();
  state_.AutoPage = auto_page::kOptions;
  showOptions();
}

}  // namespace firmlane
