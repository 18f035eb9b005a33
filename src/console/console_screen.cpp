#include "console/console_screen.h"

namespace firmlane {

namespace {

const char* iconName(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::Critical:
      return "critical";
    case MessageIcon::Exclamation:
      return "exclamation";
    case MessageIcon::Question:
      return "question";
    case MessageIcon::Information:
      return "information";
    case MessageIcon::None:
      break;
  }
  return "none";
}

}  // namespace

const char* buttonName(MessageButton button) {
  switch (button) {
    case MessageButton::Cancel:
      return "Cancel";
    case MessageButton::Yes:
      return "Yes";
    case MessageButton::No:
      return "No";
    case MessageButton::OK:
      break;
  }
  return "OK";
}

void ConsoleScreen::formShown(Form& form, bool modal) {
  print_(Json::Object{{"event", "show"}, {"form", form.name()}, {"modal", modal}});
}

void ConsoleScreen::formHidden(Form& form) { print_(Json::Object{{"event", "hide"}, {"form", form.name()}}); }

void ConsoleScreen::formUnloaded(Form& form) { print_(Json::Object{{"event", "unload"}, {"form", form.name()}}); }

void ConsoleScreen::messageBoxShown(const MessageBox& box) {
  Json::Array buttons;
  for (const MessageButton button : buttonsOf(box.buttons)) {
    buttons.emplace_back(buttonName(button));
  }
  print_(Json::Object{{"event", "messagebox"},
                      {"text", shownAsUtf8(box.text)},
                      {"title", shownAsUtf8(box.title)},
                      {"icon", iconName(box.icon)},
                      {"buttons", std::move(buttons)}});
}

void ConsoleScreen::messageBoxClosed() {
  if (onBoxClosed) {
    onBoxClosed();
  }
}

}  // namespace firmlane
