// The window that comes up when a unit did not answer: go on without a reading, choose the port again, or stop. Serves both
// wizards.
#pragma once

#include <functional>

#include "state/run_state.h"
#include "state/small_forms.h"

namespace firmlane {

class Recovery {
 public:
  /// Ties the events of the window. `launchFaq` opens the questions and answers.
  Recovery(RunState& state, FrmRecover& form, std::function<void()> launchFaq);
  Recovery(const Recovery&) = delete;
  Recovery& operator=(const Recovery&) = delete;
  ~Recovery() = default;

 private:
  void btnRecover_Click();

  RunState& state_;
  FrmRecover& form_;
};

}  // namespace firmlane
