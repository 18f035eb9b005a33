#include "wizard/auto/update_driver.h"

#include <algorithm>

#include "state/pages.h"
#include "state/tell_failure.h"
#include "state/text.h"
#include "wizard/auto/system_file.h"

namespace firmlane {

bool UpdateDriver::GetFirmware() {
  const std::array<SystemRecord, kSystems>& systems = setting_.state.*product_.systems;
  const Bytes row = rowOf(systems.at(static_cast<std::size_t>(setting_.state.SelectedSystem)));
  try {
    FirmwareSet::Fetch fetch(setting_.set);
    for (int line = 0; line < product_.firmwareLines; ++line) {
      const Activity::Span file(setting_.activity, Doing::Downloading, 0, line + 1, product_.firmwareLines);
      setting_.form1.List1.ListIndex = line;
      if (!ties_.GetFirmware2()) {
        return false;
      }
    }
    fetch.complete(product_.sysFileName, row);
    return true;
  } catch (const Failure& failure) {
    tellFailure(setting_.host, setting_.state, "Error trying download firmware: ", failure);
    setting_.wizard.tellOutcome(OutcomeKind::Failure, setting_.state.ErrorText);
    return false;
  }
}

void UpdateDriver::UpdateReceiver() {
  Label& page = window_.form.lblPage;
  page.Caption = plainNumber(leadingNumber(page.Caption.get()) + 1);
  const auto selected = [this](const UpdateStep& step) {
    return window_.rows[static_cast<std::size_t>(step.row)].selection.checked();
  };
  const auto step = std::find_if(product_.steps.begin(), product_.steps.end(), selected);
  if (step == product_.steps.end()) {
    return;
  }
  choose(step->ProcessorNo, step->option);
  if (step->toldToDebugView) {
    setting_.frmDBUG.lblStage.Caption = "Initializing";
    setting_.frmDBUG.lblBytes.Caption = "0";
    setting_.frmDBUG.lblErrors.Caption = "About to Start Communications with Receiver";
  }
  // A unit that gets its second chance loses all selections. When that comes to nothing too, they are to be done still.
  unfinished_ = selectedBoxes();
  setting_.form1.Command3.Click();
  if (!setting_.state.TimedOut) {
    unfinished_.clear();
    window_.rows[static_cast<std::size_t>(step->row)].selection.Value = 0;
  }
}

std::vector<CheckBox*> UpdateDriver::selectedBoxes() const {
  std::vector<CheckBox*> boxes;
  for (const VersionRow& row : window_.rows) {
    if (row.selection.checked()) {
      boxes.push_back(&row.selection);
    }
  }
  return boxes;
}

void UpdateDriver::selectUnfinished() {
  for (CheckBox* selection : unfinished_) {
    selection->Value = 1;
  }
}

void UpdateDriver::choose(const char* processorNo, int option) {
  setting_.form1.Option4(option).Value = true;
  setting_.state.WizardPage = classic_page::kPowerOff;  // Next starts a flash run there
  texts_.ProcessorNo = processorNo;
  texts_.LoadProgramMSG();
}

}  // namespace firmlane
