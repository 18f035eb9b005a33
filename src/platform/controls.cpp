#include "platform/controls.h"

#include "platform/screen.h"

namespace firmlane {

Control::Control(Form& form, ControlKind kind, std::string name, Frame* frame)
    : PropertyOwner(std::move(name)), form_(form), kind_(kind), frame_(frame) {
  form.controls_.push_back(this);
}

Control& Control::hiddenAtStart() {
  Visible.setAtStart(false);
  return *this;
}

Control& Control::disabledAtStart() {
  Enabled.setAtStart(false);
  return *this;
}

void Control::propertyChanged() { form_.host().controlChanged(*this); }

void OutcomeLabel::tell(OutcomeKind kind, const std::string& words) {
  constexpr const char* kNames[] = {"good", "caution", "failure"};
  Kind = kNames[static_cast<int>(kind)];
  Caption = words;
  Show();
}

void OutcomeLabel::clear() {
  Hide();
  Kind = "";
  Caption = "";
}

OptionButton::OptionButton(Form& form, std::string name, const std::string& caption, OptionGroup& group, Frame* frame)
    : Control(form, ControlKind::OptionButton, std::move(name), frame), Caption(*this, "caption", caption), Value(*this, group) {
  group.add(*this);
}

void OptionButton::Selection::assign(bool value) {
  if (value && !get()) {
    group_.deselectAll();
  }
  store(value);
}

void CheckBox::Mark::assign(int value) {
  if (value == get()) {
    return;
  }
  store(value);
  box_.Click();
}

void ListBox::AddItem(const std::string& line) {
  std::vector<std::string> lines = Lines;
  lines.push_back(line);
  Lines = std::move(lines);
}

void ListBox::RemoveItem(int index) {
  std::vector<std::string> lines = Lines;
  if (index < 0 || index >= ListCount()) {
    return;
  }
  lines.erase(lines.begin() + index);
  Lines = std::move(lines);
  ListIndex = -1;
}

void ListBox::Clear() {
  Lines = {};
  ListIndex = -1;
}

int OptionArray::selected() const {
  for (int i = 0; i < count(); ++i) {
    if ((*this)(i).Value) {
      return i;
    }
  }
  return -1;
}

Form::Form(FormHost& host, const std::string& name, const std::string& caption)
    : PropertyOwner(name), Caption(*this, "caption", caption), host_(host) {
  host.forms_.push_back(this);
}

Form::~Form() {
  std::erase(host_.forms_, this);
  std::erase(host_.onScreen_, this);
  std::erase(host_.modal_, this);
}

void Form::propertyChanged() { host_.screen_.formChanged(*this); }

void Form::Load() {
  if (Loaded) {
    return;
  }
  for (Control* control : controls_) {
    control->resetProperties();
  }
  resetProperties();
  Loaded = true;
  if (OnLoad) {
    OnLoad();
  }
}

void Form::Show() {
  Load();
  if (Loaded) {
    Visible = true;
    host_.formShown(*this, false);
  }
}

void Form::ShowModal() {
  // A form that passes events as it loads is modal from then on: the second half of a double click must not start over below it.
  host_.modalAnnounced(*this);
  try {
    Load();
  } catch (...) {
    host_.modalWithdrawn(*this);
    throw;
  }
  if (!Loaded) {
    host_.modalWithdrawn(*this);
    return;
  }
  Visible = true;
  host_.formShown(*this, true);
  while (Visible) {
    host_.queue().WaitEvents();
  }
}

void Form::Hide() {
  if (Visible) {
    Visible = false;
    host_.formHidden(*this);
  }
}

void Form::Unload() {
  if (!Loaded) {
    return;
  }
  if (OnQueryUnload) {
    bool cancel = false;
    OnQueryUnload(cancel);
    if (cancel) {
      return;
    }
  }
  if (OnUnload) {
    OnUnload();
  }
  for (Timer& timer : timers_) {
    timer.stop();
    timer.setInterval(0);
  }
  Visible = false;
  Loaded = false;
  for (Control* control : controls_) {
    control->resetProperties();
  }
  resetProperties();
  host_.formUnloaded(*this);
}

void Form::centre() {
  const ScreenSize screen = host_.screenSize();
  Left = (screen.width - Width) / 2;
  Top = (screen.height - Height) / 2;
  host_.screen_.formCentred(*this);
}

Control* Form::control(std::string_view name) const {
  const auto found = std::find_if(controls_.begin(), controls_.end(), [name](const Control* c) { return c->name() == name; });
  return found == controls_.end() ? nullptr : *found;
}

Timer& Form::addTimer() { return timers_.emplace_back(host_.queue()); }

}  // namespace firmlane
