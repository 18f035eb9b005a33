#include "player/player.h"

#include <array>

namespace firmlane {

namespace {

bool contains(const std::string& text, const char* what) { return text.find(what) != std::string::npos; }

/// The control as a user sees it: null when it is not there to be seen.
Control* seen(const Form& form, const std::string& name) {
  Control* control = form.control(name);
  for (const Control* c = control; c != nullptr; c = c->frame()) {
    if (!c->Visible) {
      return nullptr;
    }
  }
  return control;
}

std::string seenCaption(const Form& form, const std::string& name) {
  const auto* label = dynamic_cast<const Label*>(seen(form, name));
  return label == nullptr ? std::string() : label->Caption.get();
}

}  // namespace

Player::Player(FormHost& host, std::function<void(bool on)> switchPower, Wishes wishes)
    : host_(host), switchPower_(std::move(switchPower)), wishes_(std::move(wishes)) {}

void Player::tell(const std::string& text) {
  if (!text.empty() && text != told_) {
    told_ = text;
    if (onText) {
      onText(text);
    }
  }
}

Player::Outcome Player::step() {
  if (const auto& box = host_.messageBox()) {
    return answerBox(*box);
  }
  if (switchOn_) {
    switchOn_ = false;
    switchPower_(true);
    return Outcome::Playing;
  }
  if (host_.onScreen().empty() || reachedEnd_) {
    return reachedEnd_ ? Outcome::Succeeded : Outcome::Playing;
  }
  Form& form = *host_.onScreen().front();
  const std::string text = pageText(form);
  tell(text);
  if (contains(text, "Congratulations")) {
    reachedEnd_ = true;
    return Outcome::Succeeded;
  }
  if (contains(text, "stopped responding") || contains(text, "unable to connect") || contains(text, "did not reprogram") ||
      contains(text, "may require a successful FLASH")) {
    failure_ = text;
    return Outcome::Failed;
  }
  work(form);
  return Outcome::Playing;
}

Player::Outcome Player::answerBox(const MessageBox& box) {
  tell("[" + box.title + "] " + box.text);
  if (box.icon == MessageIcon::Critical || box.icon == MessageIcon::Exclamation) {
    failure_ = box.text;
    return Outcome::Failed;
  }
  if (contains(box.text, "turn it off, click OK")) {
    switchPower_(false);
    switchOn_ = true;
  }
  const bool releaseNotes = contains(box.text, "Release Notes");
  host_.answer(releaseNotes ? MessageButton::No : buttonsOf(box.buttons).front());
  return Outcome::Playing;
}

std::string Player::pageText(const Form& form) const {
  std::string text;
  for (const char* name : {"lblTop", "lblMain", "lblStatus", "lblBottom", "lblReset"}) {
    const std::string part = seenCaption(form, name);
    if (!part.empty()) {
      text += (text.empty() ? "" : "\n") + part;
    }
  }
  return text;
}

void Player::work(Form& form) {
  if (form.name() == "frmPort") {
    workPort(form);
  } else if (form.name() == "Form1") {
    workMain(form);
  } else if (form.name() == "frmAuto" || form.name() == "frmVRCAuto") {
    workAuto(form);
  } else if (form.name() == "frmRecover") {
    click(form, "btnComPort");
  }
}

void Player::workPort(Form& form) {
  if (!searching_) {
    searching_ = click(form, "Command2");
  }
}

bool Player::choosePower(const std::string& instruction) {
  const bool off = contains(instruction, "urn off ");
  const bool on = contains(instruction, "urn it back on") || contains(instruction, "turn on the power switch");
  if (!off && !on) {
    instruction_.clear();
    return false;
  }
  if (instruction == instruction_) {
    return false;
  }
  instruction_ = instruction;
  if (off) {
    switchPower_(false);
  }
  switchOn_ = on;
  return true;
}

bool Player::chooseLine(Form& form, const char* list, int line) {
  auto* lines = dynamic_cast<ListBox*>(seen(form, list));
  if (lines == nullptr || lines->ListIndex >= 0 || lines->ListCount() == 0) {
    return false;
  }
  return !host_.choose(*lines, line);
}

bool Player::chooseTask(Form& form) {
  // The older Velarc has its three tasks on the page itself; the others go on with firmware, which is selected already.
  const std::string wanted = wishes_.online ? "Option1(0)" : "Option1(2)";
  const auto* option = dynamic_cast<OptionButton*>(seen(form, wanted));
  return option != nullptr && !option->Value && click(form, wanted);
}

void Player::workMain(Form& form) {
  if (choosePower(seenCaption(form, "lblTop"))) {
    return;
  }
  if (click(form, wishes_.productButton) || chooseTask(form) || chooseLine(form, "List1", wishes_.system)) {
    return;
  }
  click(form, "Command3");
}

void Player::workAuto(Form& form) {
  if (choosePower(seenCaption(form, "lblReset")) || chooseLine(form, "VersionList", wishes_.system)) {
    return;
  }
  struct Choice {
    const char* box;
    bool wanted;
  };
  for (const Choice& choice : {Choice{"ChkOffline", wishes_.online}, Choice{"chkReceiver", true}}) {
    const auto* box = dynamic_cast<CheckBox*>(seen(form, choice.box));
    if (box != nullptr && box->checked() != choice.wanted) {
      click(form, choice.box);
      return;
    }
  }
  click(form, "btnNext");
}

bool Player::click(Form& form, const std::string& control) {
  Control* found = form.control(control);
  return found != nullptr && !host_.click(*found);
}

}  // namespace firmlane
