// Forms and controls as data. A control holds exactly what was set, whether or not a screen shows it; the screen is told of
// each change and never owns a value.
#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/event_queue.h"
#include "platform/property.h"

namespace firmlane {

class Form;
class FormHost;
class Frame;
class OptionGroup;

enum class ControlKind { Label, CommandButton, OptionButton, CheckBox, TextBox, ListBox, PictureBox, Frame, ProgressBar };

/// A colour as the forms hold it: red in the low byte, then green, then blue.
using Colour = int;

class Control : public PropertyOwner {
 public:
  /// `frame` is the frame that the control stands in, null for the form itself.
  Control(Form& form, ControlKind kind, std::string name, Frame* frame);

  Property<bool> Visible{*this, "visible", true};
  Property<bool> Enabled{*this, "enabled", true};

  /// Raised by a user's click, and by Click() in code.
  std::function<void()> OnClick;

  [[nodiscard]] ControlKind kind() const { return kind_; }
  [[nodiscard]] Form& form() const { return form_; }
  [[nodiscard]] Frame* frame() const { return frame_; }

  void Show() { Visible = true; }
  void Hide() { Visible = false; }
  void Enable() { Enabled = true; }
  void Disable() { Enabled = false; }

  /// The control's event, as if the user had clicked; runs the handler at once.
  void Click() const {
    if (OnClick) {
      OnClick();
    }
  }
  /// What a user's click does before the event is raised: an option is selected, a check box toggled.
  virtual void userClick() { Click(); }

  // Values at start that differ from the kind's own, for use while a form is built.
  Control& hiddenAtStart();
  Control& disabledAtStart();

 protected:
  void propertyChanged() override;

 private:
  Form& form_;
  ControlKind kind_;
  Frame* frame_;
};

class Label : public Control {
 public:
  Label(Form& form, std::string name, const std::string& caption = {}, Frame* frame = nullptr)
      : Control(form, ControlKind::Label, std::move(name), frame), Caption(*this, "caption", caption) {}

  Property<std::string> Caption;
  /// In twips.
  Property<int> Height{*this, "height", 255};
  Property<Colour> ForeColor{*this, "forecolor", 0};
};

/// How something ended, as far as the user is concerned.
enum class OutcomeKind { Good, Caution, Failure };

/// Tells how something ended, in the words that the user reads elsewhere too, with a kind that the screen shows by icon and
/// colour. Hidden as long as there is nothing to tell.
class OutcomeLabel : public Label {
 public:
  OutcomeLabel(Form& form, const std::string& name) : Label(form, name) { hiddenAtStart(); }

  /// "good", "caution", "failure"; empty as long as nothing was told.
  Property<std::string> Kind{*this, "kind", ""};

  /// Sets kind and words, then shows them.
  void tell(OutcomeKind kind, const std::string& words);
  /// Hides and forgets them.
  void clear();
};

class CommandButton : public Control {
 public:
  CommandButton(Form& form, std::string name, const std::string& caption, Frame* frame = nullptr)
      : Control(form, ControlKind::CommandButton, std::move(name), frame), Caption(*this, "caption", caption) {}

  Property<std::string> Caption;
};

class OptionButton : public Control {
 public:
  OptionButton(Form& form, std::string name, const std::string& caption, OptionGroup& group, Frame* frame = nullptr);

  Property<std::string> Caption;

  class Selection : public Property<bool> {
   public:
    Selection(OptionButton& owner, OptionGroup& group) : Property<bool>(owner, "value", false), group_(group) {}
    using Property<bool>::operator=;

   protected:
    void assign(bool value) override;

   private:
    OptionGroup& group_;
  };
  /// Setting it True deselects the others of the group. Setting it in code raises no click.
  Selection Value;

  void userClick() override {
    Value = true;
    Click();
  }
};

/// Option buttons of which one is selected at most.
class OptionGroup {
 public:
  void add(OptionButton& button) { buttons_.push_back(&button); }
  void deselectAll() {
    for (OptionButton* button : buttons_) {
      button->Value = false;
    }
  }

 private:
  std::vector<OptionButton*> buttons_;
};

class CheckBox : public Control {
 public:
  CheckBox(Form& form, std::string name, const std::string& caption, Frame* frame = nullptr)
      : Control(form, ControlKind::CheckBox, std::move(name), frame), Caption(*this, "caption", caption) {}

  Property<std::string> Caption;

  class Mark : public Property<int> {
   public:
    explicit Mark(CheckBox& owner) : Property<int>(owner, "value", 0), box_(owner) {}
    using Property<int>::operator=;

   protected:
    void assign(int value) override;

   private:
    CheckBox& box_;
  };
  /// 0 or 1. A change raises the click, also when code makes it.
  Mark Value{*this};

  void userClick() override { Value = Value == 0 ? 1 : 0; }
  [[nodiscard]] bool checked() const { return Value != 0; }
};

class TextBox : public Control {
 public:
  TextBox(Form& form, std::string name, Frame* frame = nullptr) : Control(form, ControlKind::TextBox, std::move(name), frame) {}

  Property<std::string> Text{*this, "text", ""};
};

class ListBox : public Control {
 public:
  ListBox(Form& form, std::string name, Frame* frame = nullptr) : Control(form, ControlKind::ListBox, std::move(name), frame) {}

  Property<std::vector<std::string>> Lines{*this, "lines", {}};
  /// Selected line from 0, -1 for none. Setting it in code raises no click.
  Property<int> ListIndex{*this, "listindex", -1};

  void AddItem(const std::string& line);
  void RemoveItem(int index);
  void Clear();
  [[nodiscard]] int ListCount() const { return static_cast<int>(Lines.get().size()); }
};

/// A picture, told by its name.
class PictureBox : public Control {
 public:
  PictureBox(Form& form, std::string name, const std::string& picture, Frame* frame = nullptr)
      : Control(form, ControlKind::PictureBox, std::move(name), frame), Picture(*this, "picture", picture) {}

  Property<std::string> Picture;
};

class Frame : public Control {
 public:
  Frame(Form& form, std::string name, const std::string& caption)
      : Control(form, ControlKind::Frame, std::move(name), nullptr), Caption(*this, "caption", caption) {}

  Property<std::string> Caption;
};

class ProgressBar : public Control {
 public:
  ProgressBar(Form& form, std::string name, int max = 100, Frame* frame = nullptr)
      : Control(form, ControlKind::ProgressBar, std::move(name), frame), Max(*this, "max", max) {}

  Property<int> Max;

  class Position : public Property<int> {
   public:
    explicit Position(ProgressBar& owner) : Property<int>(owner, "value", 0), bar_(owner) {}
    using Property<int>::operator=;

   protected:
    void assign(int value) override { store(std::clamp(value, 0, std::max(0, bar_.Max.get()))); }

   private:
    ProgressBar& bar_;
  };
  /// From 0 to Max; a value outside is taken to the nearer end.
  Position Value{*this};
};

/// Controls of one kind under one name, told apart by an index from 0: `Option1(2)`.
template <typename C>
class ControlArray {
 public:
  template <typename... Args>
  C& add(Form& form, const std::string& name, Args&&... args) {
    return *controls_.emplace_back(
        std::make_unique<C>(form, name + "(" + std::to_string(controls_.size()) + ")", std::forward<Args>(args)...));
  }
  C& operator()(int index) { return *controls_.at(static_cast<std::size_t>(index)); }
  const C& operator()(int index) const { return *controls_.at(static_cast<std::size_t>(index)); }
  [[nodiscard]] int count() const { return static_cast<int>(controls_.size()); }

 private:
  std::vector<std::unique_ptr<C>> controls_;
};

/// Option buttons under one name, one group.
class OptionArray : public ControlArray<OptionButton> {
 public:
  /// Index of the selected option, -1 for none.
  [[nodiscard]] int selected() const;
  OptionGroup group;
};

/// A window. Its controls and timers register with it as they are built. Loading gives all controls their values at start and
/// runs OnLoad; unloading runs OnQueryUnload, which may cancel, then OnUnload, stops the form's timers and forgets the values.
class Form : public PropertyOwner {
 public:
  Form(FormHost& host, const std::string& name, const std::string& caption);
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;
  ~Form() override;

  Property<std::string> Caption;
  Property<bool> Loaded{*this, "loaded", false};
  /// Whether the form is on screen. Set by Show, Hide and Unload.
  Property<bool> Visible{*this, "visible", false};
  // Place and size in twips.
  Property<int> Left{*this, "left", 0};
  Property<int> Top{*this, "top", 0};
  Property<int> Width{*this, "width", 9000};
  Property<int> Height{*this, "height", 6000};

  std::function<void()> OnLoad;
  std::function<void()> OnUnload;
  std::function<void(bool& cancel)> OnQueryUnload;

  void Load();
  /// Loads the form if needed and puts it on screen, on top.
  void Show();
  /// As Show, then passes events until the form has left the screen. User actions on other forms are refused meanwhile.
  void ShowModal();
  void Hide();
  void Unload();
  /// Places the form in the middle of the screen.
  void centre();

  [[nodiscard]] FormHost& host() const { return host_; }
  [[nodiscard]] const std::vector<Control*>& controls() const { return controls_; }
  /// The control of that name, index included ("Option1(2)"), or null.
  [[nodiscard]] Control* control(std::string_view name) const;

  /// A timer of this form; it stops when the form unloads.
  Timer& addTimer();

 protected:
  void propertyChanged() override;

 private:
  friend class Control;

  FormHost& host_;
  std::vector<Control*> controls_;
  std::deque<Timer> timers_;
};

}  // namespace firmlane
