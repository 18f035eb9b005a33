#include "wizard/auto/overall_progress.h"

namespace firmlane {

namespace {
std::string stepText(int step, int of) {
  return "Overall Progress (Step " + std::to_string(step) + " of " + std::to_string(of) + ")";
}
}  // namespace

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
  form_.lblTotal.Caption = stepText(1, steps + 2);
  form_.lblTotal.Show();
  state_.ProgressSized = true;
}

void OverallProgress::advance() {
  form_.prgTotal.Value = form_.prgTotal.Value + 1;
  showStep();
}

void OverallProgress::finish() {
  if (form_.prgTotal.Value < form_.prgTotal.Max) {
    form_.prgTotal.Value = form_.prgTotal.Max.get();
    showStep();
  }
}

void OverallProgress::clear() {
  form_.prgTotal.Hide();
  form_.prgTotal.Value = 0;
  form_.lblTotal.Hide();
}

void OverallProgress::showStep() { form_.lblTotal.Caption = stepText(form_.prgTotal.Value + 1, form_.prgTotal.Max + 1); }

}  // namespace firmlane
