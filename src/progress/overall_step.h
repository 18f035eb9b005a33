// The overall progress of one unit's update, prgTotal with its label. The label counts one step more than the bar has.
#pragma once

#include <string>

#include "state/auto_form.h"

namespace firmlane {

/// Tells on lblTotal where prgTotal stands.
inline void showOverallStep(AutoForm& form) {
  form.lblTotal.Caption =
      "Overall Progress (Step " + std::to_string(form.prgTotal.Value + 1) + " of " + std::to_string(form.prgTotal.Max + 1) + ")";
}

/// Moves prgTotal one step on and tells so.
inline void advanceOverallStep(AutoForm& form) {
  form.prgTotal.Value = form.prgTotal.Value + 1;
  showOverallStep(form);
}

}  // namespace firmlane
