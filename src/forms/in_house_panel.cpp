#include "forms/in_house_panel.h"

#include <algorithm>

#include "state/tell_failure.h"
#include "state/text.h"

namespace firmlane {

namespace {
constexpr std::int16_t kInHousePort = 2;
constexpr const char* kQuestion = "What would you like to do?";
}  // namespace

InHousePanel::InHousePanel(std::function<void()> updateReceiver, RunState& state, Form1& form1, FrmAuto& frmAuto,
                           FrmInHouse& frmInHouse)
    : updateReceiver_(std::move(updateReceiver)), state_(state), form1_(form1), frmAuto_(frmAuto), frmInHouse_(frmInHouse) {
  frmInHouse.Command1.OnClick = [this] { go(); };
  frmInHouse.OnQueryUnload = [this](bool& cancel) { askForTheEnd(cancel); };
}

void InHousePanel::go() {
  frmInHouse_.Command1.Disable();
  form1_.lblOutcome.clear();
  frmInHouse_.Label1.Caption = "Turn off your receiver and turn it back on to continue";
  try {
    program();
  } catch (const Failure& failure) {
    tellFailure(frmInHouse_.host(), state_, "Error: ", failure);
  }
  frmInHouse_.Label1.Caption = verdict() + kCr + kCr + kQuestion;
  frmInHouse_.Command1.Enable();
}

void InHousePanel::program() {
  // The boxes would lose a value that is set before their form loads.
  frmAuto_.Load();
  // A processor that failed before is still checked; the panel is asked for this one alone.
  for (CheckBox* check : frmAuto_.checks()) {
    check->Value = 0;
  }
  if (CheckBox* check = checkOf(frmInHouse_.optUP.selected())) {
    check->Value = 1;
  }
  state_.ProductCode = "WS";
  state_.ComPort = kInHousePort;
  updateReceiver_();
}

CheckBox* InHousePanel::checkOf(int option) const {
  // In the order of optUP; "Serial Number" behind them has none.
  const std::array<CheckBox*, 5> checks = {&frmAuto_.Check2, &frmAuto_.Check1, &frmAuto_.Check3, &frmAuto_.Check4,
                                           &frmAuto_.Check5};
  return option >= 0 && option < static_cast<int>(checks.size()) ? checks.at(static_cast<std::size_t>(option)) : nullptr;
}

std::string InHousePanel::verdict() const {
  // The main form is out of sight: how the run has ended stands here, but for the buttons that the panel has not. Without a
  // processor, or a port, there was no run.
  if (!form1_.lblOutcome.Visible) {
    return "No processor was programmed.";
  }
  std::string text = form1_.lblOutcome.Caption;
  text.erase(std::min(text.find("Click Next"), text.size()));
  text.erase(text.find_last_not_of("\r\n") + 1);
  return text;
}

void InHousePanel::askForTheEnd(bool& cancel) {
  // With the panel the program would lose its last window and run on unseen. The main form asks and, on OK, ends it.
  form1_.Unload();
  cancel = true;
}

}  // namespace firmlane
