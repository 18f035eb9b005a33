#include "wizard/auto/auto_wizard_setting.h"

namespace firmlane {

void tellFailure(const AutoWizardSetting& setting, const std::string& context, const Failure& failure) {
  setting.state.ErrorText = failureText(context, failure);
  setting.host.showMessageBox({.text = setting.state.ErrorText, .icon = MessageIcon::Critical});
}

}  // namespace firmlane
