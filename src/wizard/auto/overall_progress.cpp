#include "wizard/auto/overall_progress.h"

#include "progress/overall_step.h"

namespace firmlane {

void OverallProgress::CalcProgress() {
  if (state_.ProgressSized) {
    return;
  }
  int steps = form_.ChkOffline.checked() ? 1 : 0;
  for (int i = 0; i < kVersionRows; ++i) {
    if (window_.rows[i].selection.checked()) {
      steps += product_.rows[i].progressSteps;
    }
  }
  form_.prgTotal.Max = steps + 1;
  form_.prgTotal.Value = 0;
  showOverallStep(form_);
  form_.lblTotal.Show();
  state_.ProgressSized = true;
}

void OverallProgress::advance() { advanceOverallStep(form_); }

void OverallProgress::finish() {
  if (form_.prgTotal.Value < form_.prgTotal.Max) {
    form_.prgTotal.Value = form_.prgTotal.Max.get();
    showOverallStep(form_);
  }
}

void OverallProgress::show() {
  form_.prgTotal.Show();
  form_.lblTotal.Show();
}

void OverallProgress::hide() {
  form_.prgTotal.Hide();
  form_.lblTotal.Hide();
}

void OverallProgress::clear() {
  hide();
  form_.prgTotal.Value = 0;
}

}  // namespace firmlane
