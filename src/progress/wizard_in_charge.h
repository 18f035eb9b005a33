// Which auto wizard owns the screen, if any: progress, outcomes and some texts of the layers below go to its window too.
#pragma once

#include <string>

#include "progress/overall_step.h"
#include "state/auto_form.h"
#include "state/form1.h"
#include "state/run_state.h"

namespace firmlane {

/// Value of a bar for something that is done.
inline constexpr int kFullBar = 100;

class WizardInCharge {
 public:
  WizardInCharge(const RunState& state, Form1& form1, FrmAuto& frmAuto, FrmVRCAuto& frmVRCAuto)
      : state_(state), form1_(form1), frmAuto_(frmAuto), frmVRCAuto_(frmVRCAuto) {}

  /// frmVRCAuto when InVrcAutoWizard, else frmAuto when InAutoWizard, else null.
  [[nodiscard]] AutoForm* form() const {
    if (state_.InVrcAutoWizard) {
      return &frmVRCAuto_;
    }
    return state_.InAutoWizard ? &frmAuto_ : nullptr;
  }

  /// Gives Progress1 of the wizard in charge the value of ProgressBar1.
  void mirrorBar() const {
    if (AutoForm* wizard = form()) {
      wizard->Progress1.Value = form1_.ProgressBar1.Value.get();
    }
  }

  /// Sets ProgressBar1 and mirrors it.
  void setBar(int value) const {
    form1_.ProgressBar1.Value = value;
    mirrorBar();
  }

  /// Tells how something ended, on the main form and in the wizard in charge: whichever window the user has before him.
  void tellOutcome(OutcomeKind kind, const std::string& words) const {
    form1_.lblOutcome.tell(kind, words);
    if (AutoForm* wizard = form()) {
      wizard->lblOutcome.tell(kind, words);
    }
  }
  /// There is nothing to tell any more, in either window.
  void clearOutcome() const {
    form1_.lblOutcome.clear();
    if (AutoForm* wizard = form()) {
      wizard->lblOutcome.clear();
    }
  }

  /// Moves its overall progress one step on.
  void advanceOverall() const {
    if (AutoForm* wizard = form()) {
      advanceOverallStep(*wizard);
    }
  }

 private:
  const RunState& state_;
  Form1& form1_;
  FrmAuto& frmAuto_;
  FrmVRCAuto& frmVRCAuto_;
};

}  // namespace firmlane
