#include "state/tell_failure.h"

namespace firmlane {

void tellFailure(FormHost& host, RunState& state, const std::string& context, const Failure& failure) {
  state.ErrorText = failureText(context, failure);
  host.showMessageBox({.text = state.ErrorText, .icon = MessageIcon::Critical});
}

}  // namespace firmlane
