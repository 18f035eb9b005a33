#include "owner.h"

#include <algorithm>
#include <array>

namespace firmlane::test {

namespace {

bool has(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

/// What he presses where nothing more than Next is asked for. The first row that fits counts.
struct Habit {
  const char* form;
  const char* sees;
  std::array<const char*, 3> clicks;
};
constexpr Habit kHabits[] = {
    {"frmPort", "", {"Command3", "Option1(2)", "Command1"}},
    {"frmRecover", "", {"btnRecover"}},
    {"frmVersion", "", {}},
    {"Form1", "Download Complete", {"Command3"}},
};

const char* productButton(Pages pages) {
  switch (pages) {
    case Pages::Velarc2:
      return "VRCButton";
    case Pages::OldVelarc:
      return "VRColdButton";
    default:
      return "LWXButton";
  }
}

std::vector<const Label*> labelsOf(const Form& form) {
  std::vector<const Label*> labels;
  for (const Control* control : form.controls()) {
    const auto* label = dynamic_cast<const Label*>(control);
    if (label != nullptr && label->Visible && label->name() != "lblPage" && label->name() != "lblFAQ") {
      labels.push_back(label);
    }
  }
  return labels;
}

}  // namespace

std::string firstLine(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(" \r\n");
  return begin == std::string::npos ? "" : text.substr(begin, text.find_first_of("\r\n", begin) - begin);
}

std::string Owner::pageText(Program& program) {
  if (program.host().onScreen().empty()) {
    return "";
  }
  for (const Label* label : labelsOf(*program.host().onScreen().front())) {
    const std::string line = firstLine(label->Caption);
    if (!line.empty() && label->name() != "lblOutcome") {
      return line;
    }
  }
  return "";
}

std::string Owner::allText(Program& program) {
  std::string text;
  if (!program.host().onScreen().empty()) {
    for (const Label* label : labelsOf(*program.host().onScreen().front())) {
      text += label->Caption.get() + "\n";
    }
  }
  return text;
}

void Owner::look(Program& program) {
  FormHost& host = program.host();
  now_ = host.queue().now();
  if (switchOffAt_ && now_ >= *switchOffAt_) {
    switchOffAt_.reset();
    unit_.powerOff();
  }
  if (switchOnAt_ && now_ >= *switchOnAt_) {
    switchOnAt_.reset();
    unit_.powerOn();
  }
  if (host.messageBox()) {
    answerBox(host);
    return;
  }
  boxSeen_ = false;
  if (host.onScreen().empty()) {
    return;
  }
  Form& form = *host.onScreen().front();
  const std::string text = allText(program);
  if (!toldToSwitch(text)) {
    switched_ = false;
  } else if (!switched_) {
    switched_ = true;
    switchUnit();
  }
  if (pressesOn && !switchOnAt_) {
    workForm(host, form, text);
  }
}

void Owner::answerBox(FormHost& host) {
  if (!boxSeen_) {
    boxSeen_ = true;
    boxSince_ = now_;
  }
  if (now_ - boxSince_ < boxPatience) {
    return;
  }
  const MessageBox box = *host.messageBox();
  const std::vector<MessageButton> buttons = buttonsOf(box.buttons);
  const auto same = std::count(boxes.begin(), boxes.end(), box.text);
  boxes.push_back(box.text);
  // Whoever is asked the same thing a third time says no.
  host.answer(same >= 2 ? buttons.back() : buttons.front());
  boxSeen_ = false;
  if (has(box.text, "turn it back on")) {
    switchUnit();
  }
}

bool Owner::toldToSwitch(const std::string& text) const {
  return has(text, "turn it back on") || has(text, "Please turn on the power switch") || has(text, "Please cycle the power");
}

void Owner::switchUnit() {
  switchOffAt_ = now_;
  switchOnAt_ = now_ + switchPause;
}

bool Owner::click(FormHost& host, Form& form, const std::string& name) {
  Control* control = form.control(name);
  return control != nullptr && !host.click(*control);
}

void Owner::workForm(FormHost& host, Form& form, const std::string& text) {
  for (const Habit& habit : kHabits) {
    if (form.name() == habit.form && has(text, habit.sees)) {
      for (const char* name : habit.clicks) {
        if (name != nullptr) {
          click(host, form, name);
        }
      }
      return;
    }
  }
  if (has(text, "Please select the product")) {
    click(host, form, productButton(run_.pages));
  } else if (has(text, "Please select from the two options")) {
    const auto& offline = static_cast<const CheckBox&>(*form.control("ChkOffline"));
    const auto& unit = static_cast<const CheckBox&>(*form.control("chkReceiver"));
    click(host, form, offline.checked() ? "ChkOffline" : unit.checked() ? "btnNext" : "chkReceiver");
  } else if (form.name() == "Form1") {
    if (run_.pages == Pages::OldVelarc && form.control("Option1(2)")->Visible) {
      click(host, form, "Option1(2)");
    }
    if (form.control("frmUC")->Visible) {
      click(host, form, "Option4(1)");
    }
    // A unit of the production line is to run when its number is sent.
    const bool starting = has(text, "Please cycle the power") && unit_.state().phase != sim::Phase::Running;
    if (!starting) {
      click(host, form, "Command3");
    }
  } else {
    click(host, form, form.control("btnMore")->Visible ? "btnMore" : "btnNext");
  }
}

}  // namespace firmlane::test
