// The overall progress of one unit's update: prgTotal and its label, which counts one step more than the bar has.
#pragma once

#include "wizard/auto/product_parameters.h"

namespace firmlane {

class OverallProgress {
 public:
  OverallProgress(RunState& state, const WizardWindow& window, const ProductParameters& product)
      : state_(state), form_(window.form), window_(window), product_(product) {}

  /// Sizes the bar for what is selected now, once until ProgressSized is cleared.
  void CalcProgress();
  /// One step further.
  void advance();
  /// Brings the bar to its end if it is not there.
  void finish();
  void show();
  void hide();
  /// Hides and empties it for another unit.
  void clear();

 private:
  RunState& state_;
  AutoForm& form_;
  const WizardWindow& window_;
  const ProductParameters& product_;
};

}  // namespace firmlane
