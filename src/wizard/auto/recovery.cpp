#include "wizard/auto/recovery.h"

namespace firmlane {

Recovery::Recovery(RunState& state, FrmRecover& form, std::function<void()> launchFaq) : state_(state), form_(form) {
  form.OnLoad = [this] { form_.centre(); };
  form.btnRecover.OnClick = [this] { btnRecover_Click(); };
  form.btnComPort.OnClick = [this] { form_.Unload(); };
  form.btnExit.OnClick = [] { throw ProgramEnded(); };
  form.Label1.OnClick = std::move(launchFaq);
}

void Recovery::btnRecover_Click() {
  state_.RecoverChosen = true;
  form_.Unload();
}

}  // namespace firmlane
