#include "platform/console/console_screen.h"

#include <array>

namespace firmlane {

namespace {

struct ButtonName {
  MessageButton button;
  const char* name;
};
constexpr std::array<ButtonName, 4> kButtons{
    {{MessageButton::OK, "OK"}, {MessageButton::Cancel, "Cancel"}, {MessageButton::Yes, "Yes"}, {MessageButton::No, "No"}}};

struct IconName {
  MessageIcon icon;
  const char* name;
};
constexpr std::array<IconName, 5> kIcons{{{MessageIcon::None, "none"},
                                          {MessageIcon::Critical, "critical"},
                                          {MessageIcon::Exclamation, "exclamation"},
                                          {MessageIcon::Question, "question"},
                                          {MessageIcon::Information, "information"}}};

std::string nameOf(MessageButton button) {
  for (const ButtonName& known : kButtons) {
    if (known.button == button) {
      return known.name;
    }
  }
  return {};
}

std::string nameOf(MessageIcon icon) {
  for (const IconName& known : kIcons) {
    if (known.icon == icon) {
      return known.name;
    }
  }
  return {};
}

Json event(const std::string& name, std::vector<std::pair<std::string, Json>> members) {
  members.insert(members.begin(), {"event", jsonText(name)});
  return jsonObject(members);
}

}  // namespace

std::optional<MessageButton> buttonNamed(const std::string& name) {
  for (const ButtonName& known : kButtons) {
    if (name == known.name) {
      return known.button;
    }
  }
  return std::nullopt;
}

void ConsoleScreen::changed() const {
  if (onChange) {
    onChange();
  }
}

void ConsoleScreen::formShown(Form& form, bool modal) {
  print_(event("show", {{"form", jsonText(form.name())}, {"modal", modal ? "true" : "false"}}));
  changed();
}

void ConsoleScreen::formHidden(Form& form) {
  print_(event("hide", {{"form", jsonText(form.name())}}));
  changed();
}

void ConsoleScreen::formUnloaded(Form& form) {
  print_(event("unload", {{"form", jsonText(form.name())}}));
  changed();
}

void ConsoleScreen::messageBoxShown(const MessageBox& box) {
  std::vector<Json> buttons;
  for (const MessageButton button : buttonsOf(box.buttons)) {
    buttons.push_back(jsonText(nameOf(button)));
  }
  print_(event("messagebox", {{"text", jsonText(box.text)},
                              {"title", jsonText(box.title)},
                              {"icon", jsonText(nameOf(box.icon))},
                              {"buttons", jsonList(buttons)}}));
  changed();
}

void ConsoleScreen::messageBoxClosed() {
  if (onBoxClosed) {
    onBoxClosed();
  }
  changed();
}

}  // namespace firmlane
