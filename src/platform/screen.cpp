#include "platform/screen.h"

namespace firmlane {

std::vector<MessageButton> buttonsOf(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::OKCancel:
      return {MessageButton::OK, MessageButton::Cancel};
    case MessageButtons::YesNo:
      return {MessageButton::Yes, MessageButton::No};
    case MessageButtons::OK:
      break;
  }
  return {MessageButton::OK};
}

Form* FormHost::form(std::string_view name) const {
  const auto found = std::find_if(forms_.begin(), forms_.end(), [name](const Form* f) { return f->name() == name; });
  return found == forms_.end() ? nullptr : *found;
}

Form* FormHost::modal() const { return modal_.empty() ? nullptr : modal_.back(); }

bool FormHost::isModal(const Form& form) const { return std::find(modal_.begin(), modal_.end(), &form) != modal_.end(); }

MessageButton FormHost::showMessageBox(const MessageBox& box) {
  box_ = box;
  answer_.reset();
  recorder_.boxShown(box);
  screen_.messageBoxShown(box);
  queue_.holdUntil([this] { return answer_.has_value(); });
  box_.reset();
  recorder_.boxAnswered(*answer_);
  screen_.messageBoxClosed();
  return *answer_;
}

std::optional<std::string> FormHost::refusal(const Form& form) const {
  if (box_) {
    return "message box is up";
  }
  if (!form.Visible) {
    return "not visible";
  }
  if (const Form* blocker = modal(); blocker != nullptr && blocker != &form) {
    return "blocked by " + blocker->name();
  }
  return std::nullopt;
}

std::optional<std::string> FormHost::refusal(const Control& control) const {
  if (auto reason = refusal(control.form())) {
    return reason;
  }
  for (const Control* c = &control; c != nullptr; c = c->frame()) {
    if (!c->Visible) {
      return "not visible";
    }
  }
  for (const Control* c = &control; c != nullptr; c = c->frame()) {
    if (!c->Enabled) {
      return "not enabled";
    }
  }
  return std::nullopt;
}

std::optional<std::string> FormHost::act(Control& control, std::function<void()> action) {
  if (auto reason = refusal(control)) {
    return reason;
  }
  queue_.post([this, &control, action = std::move(action)] {
    if (!refusal(control)) {
      action();
    }
  });
  return std::nullopt;
}

std::optional<std::string> FormHost::click(Control& control) {
  return act(control, [this, &control] {
    recorder_.clicked(control);
    control.userClick();
  });
}

std::optional<std::string> FormHost::choose(Control& control, int line) {
  auto* list = dynamic_cast<ListBox*>(&control);
  if (list == nullptr) {
    return "no such control";
  }
  if (auto reason = refusal(control)) {
    return reason;
  }
  if (line < 0 || line >= list->ListCount()) {
    return "no such line";
  }
  return act(control, [this, list, line] {
    if (line < list->ListCount()) {
      recorder_.chosen(*list, line);
      list->ListIndex = line;
      list->Click();
    }
  });
}

std::optional<std::string> FormHost::type(Control& control, const std::string& text) {
  auto* box = dynamic_cast<TextBox*>(&control);
  if (box == nullptr) {
    return "no such control";
  }
  return act(control, [this, box, text] {
    recorder_.typed(*box, text);
    box->Text = text;
  });
}

std::optional<std::string> FormHost::close(Form& form) {
  if (auto reason = refusal(form)) {
    return reason;
  }
  queue_.post([this, &form] {
    if (!refusal(form)) {
      recorder_.closed(form);
      form.Unload();
    }
  });
  return std::nullopt;
}

std::optional<std::string> FormHost::answer(MessageButton button) {
  if (!box_ || answer_) {
    return "no message box";
  }
  const std::vector<MessageButton> offered = buttonsOf(box_->buttons);
  if (std::find(offered.begin(), offered.end(), button) == offered.end()) {
    return "no such button";
  }
  answer_ = button;
  return std::nullopt;
}

void FormHost::modalAnnounced(Form& form) {
  std::erase(modal_, &form);
  modal_.push_back(&form);
}

void FormHost::modalWithdrawn(Form& form) { std::erase(modal_, &form); }

void FormHost::formShown(Form& form, bool modal) {
  if (!modal && !onScreen_.empty() && onScreen_.front() == &form) {
    return;  // it is on top already
  }
  std::erase(onScreen_, &form);
  onScreen_.insert(onScreen_.begin(), &form);
  if (modal) {
    modalAnnounced(form);
  }
  recorder_.formShown(form, modal);
  screen_.formShown(form, modal);
}

void FormHost::formHidden(Form& form) {
  std::erase(onScreen_, &form);
  std::erase(modal_, &form);
  recorder_.formHidden(form);
  screen_.formHidden(form);
}

void FormHost::formUnloaded(Form& form) {
  std::erase(onScreen_, &form);
  std::erase(modal_, &form);
  recorder_.formUnloaded(form);
  screen_.formUnloaded(form);
}

void FormHost::controlChanged(Control& control) {
  recorder_.controlChanged(control);
  screen_.controlChanged(control);
}

}  // namespace firmlane
