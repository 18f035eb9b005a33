// What shows the forms to the user, and the form host: which forms are on screen, which one is modal, whether a message box is
// up, and therefore what the user can do. Every kind of user (window, script, test) acts through the host, under one rule.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/controls.h"
#include "platform/event_queue.h"
#include "platform/recorder.h"

namespace firmlane {

enum class MessageIcon { None, Critical, Exclamation, Question, Information };
enum class MessageButton { OK, Cancel, Yes, No };
enum class MessageButtons { OK, OKCancel, YesNo };
enum class Pointer { Normal, Hourglass };

/// The title of a message box that names none of its own.
inline constexpr const char* kApplicationTitle = "Tolvex Firmlane";

struct MessageBox {
  std::string text;
  std::string title = kApplicationTitle;
  MessageIcon icon = MessageIcon::None;
  MessageButtons buttons = MessageButtons::OK;
  /// What a window draws in place of the icon, for boxes that have none and yet tell of a failure; None for what the icon says,
  /// and for what the buttons ask where there is no icon.
  MessageIcon sign = MessageIcon::None;
};

/// The buttons of a box, in the order in which they stand.
std::vector<MessageButton> buttonsOf(MessageButtons buttons);

/// Width and height of the screen in twips.
struct ScreenSize {
  int width = 15360;
  int height = 11520;
};

/// Shows what the host tells it. It runs no handler and throws nothing.
class Screen {
 public:
  virtual ~Screen() = default;
  virtual void formShown(Form& form, bool modal) = 0;
  virtual void formHidden(Form& form) = 0;
  virtual void formUnloaded(Form& form) = 0;
  /// The form wants to stand in the middle of the screen; it may not be on screen yet.
  virtual void formCentred(Form& /*form*/) {}
  /// A property of the form itself, or of one of its controls, has changed.
  virtual void formChanged(Form& form) = 0;
  virtual void controlChanged(Control& control) = 0;
  virtual void messageBoxShown(const MessageBox& box) = 0;
  virtual void messageBoxClosed() = 0;
  virtual void setPointer(Pointer pointer) = 0;
  [[nodiscard]] virtual ScreenSize size() const = 0;
};

class FormHost {
 public:
  FormHost(EventQueue& queue, Screen& screen, Recorder& recorder = noRecorder())
      : queue_(queue), screen_(screen), recorder_(recorder) {}
  FormHost(const FormHost&) = delete;
  FormHost& operator=(const FormHost&) = delete;
  ~FormHost() = default;

  [[nodiscard]] const std::vector<Form*>& forms() const { return forms_; }
  [[nodiscard]] Form* form(std::string_view name) const;
  /// The forms on screen, topmost first.
  [[nodiscard]] const std::vector<Form*>& onScreen() const { return onScreen_; }
  /// The form that refuses user actions on the others, or null.
  [[nodiscard]] Form* modal() const;
  /// Whether a form is shown so that it refuses user actions on those below it.
  [[nodiscard]] bool isModal(const Form& form) const;
  [[nodiscard]] const std::optional<MessageBox>& messageBox() const { return box_; }

  /// Shows the box and holds every handler until the user has answered.
  MessageButton showMessageBox(const MessageBox& box);
  /// As above for a plain box: one button, the application's title.
  void showMessage(const std::string& text) { showMessageBox({.text = text}); }
  /// As above for what went wrong: a plain box to a script, one with the sign of a failure in a window.
  void showFailure(const std::string& text) { showMessageBox({.text = text, .sign = MessageIcon::Critical}); }
  void setPointer(Pointer pointer) { screen_.setPointer(pointer); }
  [[nodiscard]] ScreenSize screenSize() const { return screen_.size(); }
  [[nodiscard]] EventQueue& queue() const { return queue_; }

  // What a user can do. Each returns why it is refused ("not visible", "not enabled", "blocked by FORM", "message box is up",
  // "no message box", "no such button", "no such line", "no such control"), or nothing when the action has been handed on.
  // The action runs from the queue, and is dropped if by then it has become impossible.
  std::optional<std::string> click(Control& control);
  std::optional<std::string> choose(Control& list, int line);
  std::optional<std::string> type(Control& textBox, const std::string& text);
  std::optional<std::string> close(Form& form);
  std::optional<std::string> answer(MessageButton button);

  /// Why the user cannot act on this control now, or nothing.
  [[nodiscard]] std::optional<std::string> refusal(const Control& control) const;
  [[nodiscard]] std::optional<std::string> refusal(const Form& form) const;

 private:
  friend class Form;
  friend class Control;

  /// The form will be on screen in a moment, and refuses user actions on the others already.
  void modalAnnounced(Form& form);
  /// It will not be, after all.
  void modalWithdrawn(Form& form);
  void formShown(Form& form, bool modal);
  void formHidden(Form& form);
  void formUnloaded(Form& form);
  void controlChanged(Control& control);
  std::optional<std::string> act(Control& control, std::function<void()> action);

  EventQueue& queue_;
  Screen& screen_;
  Recorder& recorder_;
  std::vector<Form*> forms_;
  std::vector<Form*> onScreen_;
  std::vector<Form*> modal_;
  std::optional<MessageBox> box_;
  std::optional<MessageButton> answer_;
};

}  // namespace firmlane
