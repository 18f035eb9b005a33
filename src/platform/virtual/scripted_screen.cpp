#include "platform/virtual/scripted_screen.h"

namespace firmlane {

void ScriptedScreen::formShown(Form& form, bool modal) {
  log_.push_back("show " + form.name() + (modal ? " modal" : ""));
  if (onShow) {
    onShow(form);
  }
}

void ScriptedScreen::controlChanged(Control& control) {
  if (onChange) {
    onChange(control);
  }
}

void ScriptedScreen::messageBoxShown(const MessageBox& box) {
  boxes_.push_back(box);
  if (onBox) {
    onBox(box);
  }
  Answer answer{buttonsOf(box.buttons).front(), others_.value_or(0)};
  if (!answers_.empty()) {
    answer = answers_.front();
    answers_.pop_front();
  } else if (!others_) {
    return;  // nobody answers: the held program fails as one that waits for what can never come
  }
  time_.after(answer.after, [this, button = answer.button] { press(button); });
}

}  // namespace firmlane
