// Pages from the decision what to program to the verdict, and the pages that lead back to the options.
#include "wizard/auto/auto_wizard.h"

namespace firmlane {

void AutoWizard::nextOnDownloaded() {
  if (!form_.chkReceiver.checked()) {
    state_.AutoPage = 10;
    next();
    return;
  }
  if (!state_.RecoverChosen && !state_.VersionsCompared) {
    table_.CompareVersions();
  }
  if (!state_.RecoverChosen) {
    table_.dropUnreachable();
  }
  progress_.CalcProgress();
  if (!product_.totalShownAfterQuestions) {
    form_.prgTotal.Show();
  }
  state_.VersionsCompared = true;
  if (!table_.anySelected() && !confirmReflash()) {
    return;
  }
  if (product_.totalShownAfterQuestions) {
    form_.prgTotal.Show();
    form_.lblTotal.Show();
  }
  programOne();
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
    state_.AutoPage = 20;
    form_.btnNext.Enable();
    form_.Progress1.Hide();
    form_.lblReset.Hide();
    return;
  }
  form_.btnNext.Enable();
  state_.AutoPage = 5;
  if (table_.anySelected()) {
    texts_.LoadTurnOFFMSG();
  } else {
    texts_.CheckVerMSG();
    form_.Progress1.Hide();
    state_.AutoPage = 6;
  }
  setting_.host.queue().PumpEvents();
}

void AutoWizard::nextOnProcessorDone() {
  form_.Progress1.Value = 100;
  state_.AutoPage = 4;
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
  state_.AutoPage = 19;
  form_.btnNext.Disable();
  form_.btnNext.Hide();
}

/// The verdict once more, without the lines that only make room below it.
void AutoWizard::tellVerdict() {
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
  state_.AutoPage = 20;
}

void AutoWizard::nextOnRestart() {
  form_.lblBottom.Hide();
  reading_.clearFlags();
  state_.AutoPage = 0;
  showOptions();
}

}  // namespace firmlane
