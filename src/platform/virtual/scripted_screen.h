// A screen without pixels: it records what a user would see and lets a script answer message boxes in virtual time.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "platform/screen.h"
#include "platform/virtual/virtual_time.h"

namespace firmlane {

class ScriptedScreen : public Screen {
 public:
  explicit ScriptedScreen(VirtualTime& time) : time_(time) {}

  /// Plans the answer to the next box that has none planned: the button, and how long the user lets the box stand.
  void answerNext(MessageButton button, Micros after = kSecond) { answers_.push_back({button, after}); }
  /// Answers every box that has no planned answer with its first button, after this time. Without it such a box fails the test.
  void answerOthers(Micros after = kSecond) { others_ = after; }

  /// The boxes shown so far.
  [[nodiscard]] const std::vector<MessageBox>& boxes() const { return boxes_; }
  /// Forms shown, hidden and unloaded so far, such as "show frmPort modal", "hide Form1", "unload frmPort".
  [[nodiscard]] const std::vector<std::string>& log() const { return log_; }
  [[nodiscard]] Pointer pointer() const { return pointer_; }

  /// Called, outside of handlers, when a form is shown or a box comes up; scripts react here by planning user actions.
  std::function<void(Form&)> onShow;
  std::function<void(const MessageBox&)> onBox;
  /// Called on every change of a control; for scripts that wait for a text.
  std::function<void(Control&)> onChange;
  /// How the script presses a button: set by the fixture to FormHost::answer.
  std::function<void(MessageButton)> press;

  void formShown(Form& form, bool modal) override;
  void formHidden(Form& form) override { log_.push_back("hide " + form.name()); }
  void formUnloaded(Form& form) override { log_.push_back("unload " + form.name()); }
  void formChanged(Form&) override {}
  void controlChanged(Control& control) override;
  void messageBoxShown(const MessageBox& box) override;
  void messageBoxClosed() override {}
  void setPointer(Pointer pointer) override { pointer_ = pointer; }
  [[nodiscard]] ScreenSize size() const override { return {}; }

 private:
  struct Answer {
    MessageButton button;
    Micros after;
  };

  VirtualTime& time_;
  std::deque<Answer> answers_;
  std::optional<Micros> others_;
  std::vector<MessageBox> boxes_;
  std::vector<std::string> log_;
  Pointer pointer_ = Pointer::Normal;
};

}  // namespace firmlane
