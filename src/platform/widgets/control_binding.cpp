#include "platform/widgets/control_binding.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <algorithm>

#include "platform/widgets/accessible_widgets.h"
#include "platform/widgets/control_widgets.h"
#include "platform/widgets/display_text.h"
#include "platform/widgets/outcome_band.h"

namespace firmlane {

void ControlBinding::refresh() {
  stale = false;
  showing_ = true;
  showValues();
  showing_ = false;
  const bool usable = control_.Enabled && control_.Visible;
  if (!usable) {
    keepFocus();
  }
  widget_->setEnabled(control_.Enabled);
  widget_->setVisible(control_.Visible);
  // Focus that was left nowhere comes back with the widget it was on.
  QWidget* window = widget_->window();
  if (usable && window->property("focusLeft").value<QWidget*>() == widget_ && window->focusWidget() == window) {
    window->setProperty("focusLeft", {});
    widget_->setFocus();
  }
}

/// Qt would hand the focus of a widget that goes to its neighbour: from a Next that is disabled for a while to Exit, where the
/// next press of Return would end the program. So it stays nowhere.
void ControlBinding::keepFocus() const {
  QWidget* window = widget_->window();
  if (window->focusWidget() == widget_ && window != widget_) {
    window->setProperty("focusLeft", QVariant::fromValue(widget_));
    window->setFocus();
  }
}

void ControlBinding::click() {
  host().click(control_);
  touch();
}

void ControlBinding::touch() {
  if (touched) {
    touched();
  }
}

namespace {

/// A colour held with red in the low byte.
QColor colourOf(Colour colour) { return {colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF}; }

class LabelBinding : public ControlBinding {
 public:
  LabelBinding(Label& label, QWidget* parent) : ControlBinding(label, new TextLabel(parent)), label_(label) {
    view().clicked = [this] { click(); };
  }

 protected:
  void showValues() override {
    view().setClickable(static_cast<bool>(label_.OnClick));
    if (const QString text = displayText(label_.Caption); text != view().text()) {
      view().setText(text);
    }
    if (label_.ForeColor != shownColour_) {
      shownColour_ = label_.ForeColor;
      // Black is the forms' own default and stands for whatever the desktop writes in.
      QPalette palette;
      if (shownColour_ != 0) {
        palette.setColor(QPalette::WindowText, colourOf(shownColour_));
      }
      view().setPalette(palette);
    }
  }

 private:
  TextLabel& view() { return static_cast<TextLabel&>(*widget()); }
  Label& label_;
  Colour shownColour_ = 0;
};

class OutcomeBinding : public ControlBinding {
 public:
  OutcomeBinding(OutcomeLabel& label, QWidget* parent) : ControlBinding(label, new OutcomeBand(parent)), label_(label) {}

 protected:
  void showValues() override {
    const std::string& kind = label_.Kind;
    const Sign sign = kind == "good"      ? Sign::Good
                      : kind == "caution" ? Sign::Caution
                      : kind == "failure" ? Sign::Failure
                                          : Sign::None;
    static_cast<OutcomeBand&>(*widget()).tell(sign, displayText(label_.Caption));
  }

 private:
  OutcomeLabel& label_;
};

class CommandButtonBinding : public ControlBinding {
 public:
  CommandButtonBinding(CommandButton& button, QWidget* parent)
      : ControlBinding(button, new RoomyButton(parent)), button_(button) {
    QObject::connect(&view(), &QPushButton::clicked, &context_, [this] { click(); });
  }

 protected:
  void showValues() override { view().setCaption(buttonText(button_.Caption)); }

 private:
  RoomyButton& view() { return static_cast<RoomyButton&>(*widget()); }
  CommandButton& button_;
};

/// Option buttons that belong together: one array, or the plain ones of one frame.
std::string groupOf(const Control& option) {
  const std::size_t index = option.name().find('(');
  const std::string frame = option.frame() == nullptr ? std::string() : option.frame()->name();
  return frame + "/" + (index == std::string::npos ? std::string() : option.name().substr(0, index));
}

class OptionButtonBinding : public ControlBinding {
 public:
  OptionButtonBinding(OptionButton& option, QWidget* parent)
      : ControlBinding(option, new OptionWidget(parent)), option_(option), group_(QString::fromStdString(groupOf(option))) {
    view().setProperty("optionGroup", group_);
    view().stepped = [this](int step) { select(step); };
    QObject::connect(&view(), &QRadioButton::clicked, &context_, [this] { click(); });
    // Set from elsewhere: a tool that works the window for the user.
    QObject::connect(&view(), &QRadioButton::toggled, &context_, [this](bool on) {
      if (showing()) {
        return;
      }
      if (on) {
        click();
      } else {
        touch();
      }
    });
  }

 protected:
  void showValues() override {
    view().setCaption(buttonText(option_.Caption));
    const bool selected = option_.Value;
    // Stepping through a group takes the focus along.
    if (const QWidget* focused = view().window()->focusWidget();
        selected && !view().isChecked() && focused != nullptr && focused->property("optionGroup").toString() == group_) {
      view().setFocus();
    }
    view().setChecked(selected);
  }

 private:
  void select(int step) {
    std::vector<Control*> group;
    for (Control* other : option_.form().controls()) {
      if (other->kind() == ControlKind::OptionButton && groupOf(*other) == groupOf(option_) &&
          (other == &option_ || !host().refusal(*other))) {
        group.push_back(other);
      }
    }
    const auto next = std::find(group.begin(), group.end(), &option_) - group.begin() + step;
    if (next >= 0 && next < static_cast<std::ptrdiff_t>(group.size())) {
      host().click(*group[static_cast<std::size_t>(next)]);
    }
  }

  OptionWidget& view() { return static_cast<OptionWidget&>(*widget()); }
  OptionButton& option_;
  QString group_;
};

class CheckBoxBinding : public ControlBinding {
 public:
  CheckBoxBinding(CheckBox& box, QWidget* parent) : ControlBinding(box, new WrappedCheckBox(parent)), box_(box) {
    QObject::connect(&view(), &QCheckBox::clicked, &context_, [this] { click(); });
    QObject::connect(&view(), &QCheckBox::toggled, &context_, [this] {
      if (!showing()) {
        click();
      }
    });
  }

 protected:
  void showValues() override {
    view().setCaption(buttonText(box_.Caption));
    view().setChecked(box_.checked());
  }

 private:
  WrappedCheckBox& view() { return static_cast<WrappedCheckBox&>(*widget()); }
  CheckBox& box_;
};

class TextBoxBinding : public ControlBinding {
 public:
  TextBoxBinding(TextBox& box, QWidget* parent) : ControlBinding(box, new QLineEdit(parent)), box_(box) {
    QObject::connect(&view(), &QLineEdit::textChanged, &context_, [this](const QString& text) {
      if (!showing()) {
        report(text);
      }
    });
  }

 protected:
  void showValues() override {
    // While keys are still on their way to the form, what it holds is older than what the user sees.
    if (*underWay_ == 0 && view().text() != displayText(box_.Text)) {
      view().setText(displayText(box_.Text));
    }
  }

 private:
  void report(const QString& text) {
    ++*underWay_;
    host().type(box_, typedText(text));
    // Behind the key's own event in the queue; the window may be gone when its turn comes.
    host().queue().post([this, alive = std::weak_ptr<int>(underWay_)] {
      if (const std::shared_ptr<int> underWay = alive.lock()) {
        --*underWay;
        touch();
      }
    });
  }

  QLineEdit& view() { return static_cast<QLineEdit&>(*widget()); }
  TextBox& box_;
  std::shared_ptr<int> underWay_ = std::make_shared<int>(0);
};

class ListBoxBinding : public ControlBinding {
 public:
  ListBoxBinding(ListBox& list, QWidget* parent) : ControlBinding(list, new LineList(parent)), list_(list) {
    view().picked = [this](int line) {
      host().choose(list_, line);
      touch();
    };
  }

 protected:
  void showValues() override {
    QStringList lines;
    for (const std::string& line : list_.Lines.get()) {
      lines << displayText(line).replace(QLatin1Char('\n'), QLatin1Char(' '));
    }
    view().setLines(lines, list_.ListIndex);
  }

 private:
  LineList& view() { return static_cast<LineList&>(*widget()); }
  ListBox& list_;
};

class PictureBinding : public ControlBinding {
 public:
  PictureBinding(PictureBox& picture, QWidget* parent) : ControlBinding(picture, new PictureWidget(parent)), picture_(picture) {
    view().clicked = [this] { click(); };
  }

 protected:
  void showValues() override {
    view().setClickable(static_cast<bool>(picture_.OnClick));
    view().setPicture(picture_.Picture);
  }

 private:
  PictureWidget& view() { return static_cast<PictureWidget&>(*widget()); }
  PictureBox& picture_;
};

class FrameBinding : public ControlBinding {
 public:
  /// A frame without a caption only holds its controls together; a box around them would be a riddle.
  FrameBinding(Frame& frame, QWidget* parent)
      : ControlBinding(frame, frame.Caption.get().empty() ? new QWidget(parent) : new QGroupBox(parent)), frame_(frame) {
    widget()->setProperty(kGroupProperty, true);
  }

 protected:
  void showValues() override {
    if (auto* box = qobject_cast<QGroupBox*>(widget())) {
      box->setTitle(buttonText(frame_.Caption));
    }
  }

 private:
  Frame& frame_;
};

class ProgressBinding : public ControlBinding {
 public:
  ProgressBinding(ProgressBar& bar, QWidget* parent) : ControlBinding(bar, new QProgressBar(parent)), bar_(bar) {}

 protected:
  void showValues() override {
    view().setRange(0, std::max(1, bar_.Max.get()));  // an empty range would set Qt's bar in motion
    view().setValue(bar_.Value);
  }

 private:
  QProgressBar& view() { return static_cast<QProgressBar&>(*widget()); }
  ProgressBar& bar_;
};

template <typename Binding, typename C>
std::unique_ptr<ControlBinding> bindAs(Control& control, QWidget* parent) {
  return std::make_unique<Binding>(static_cast<C&>(control), parent);
}

}  // namespace

std::unique_ptr<ControlBinding> bindControl(Control& control, QWidget* parent) {
  switch (control.kind()) {
    case ControlKind::Label:
      return dynamic_cast<OutcomeLabel*>(&control) != nullptr ? bindAs<OutcomeBinding, OutcomeLabel>(control, parent)
                                                              : bindAs<LabelBinding, Label>(control, parent);
    case ControlKind::CommandButton:
      return bindAs<CommandButtonBinding, CommandButton>(control, parent);
    case ControlKind::OptionButton:
      return bindAs<OptionButtonBinding, OptionButton>(control, parent);
    case ControlKind::CheckBox:
      return bindAs<CheckBoxBinding, CheckBox>(control, parent);
    case ControlKind::TextBox:
      return bindAs<TextBoxBinding, TextBox>(control, parent);
    case ControlKind::ListBox:
      return bindAs<ListBoxBinding, ListBox>(control, parent);
    case ControlKind::PictureBox:
      return bindAs<PictureBinding, PictureBox>(control, parent);
    case ControlKind::Frame:
      return bindAs<FrameBinding, Frame>(control, parent);
    case ControlKind::ProgressBar:
      break;
  }
  return bindAs<ProgressBinding, ProgressBar>(control, parent);
}

}  // namespace firmlane
