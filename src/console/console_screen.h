// The screen of the console: it shows nothing and tells what a user would see come and go, one event a line.
#pragma once

#include <functional>

#include "console/json.h"
#include "platform/screen.h"

namespace firmlane {

/// Takes one line of the console's output.
using PrintLine = std::function<void(const Json& line)>;

class ConsoleScreen : public Screen {
 public:
  explicit ConsoleScreen(PrintLine print) : print_(std::move(print)) {}

  /// Called when a message box has gone, before the program goes on.
  std::function<void()> onBoxClosed;

  void formShown(Form& form, bool modal) override;
  void formHidden(Form& form) override;
  void formUnloaded(Form& form) override;
  void formChanged(Form& /*form*/) override {}
  void controlChanged(Control& /*control*/) override {}
  void messageBoxShown(const MessageBox& box) override;
  void messageBoxClosed() override;
  void setPointer(Pointer /*pointer*/) override {}
  [[nodiscard]] ScreenSize size() const override { return {}; }

 private:
  PrintLine print_;
};

/// The button's name as scripts write it: "OK", "Cancel", "Yes" or "No".
const char* buttonName(MessageButton button);

}  // namespace firmlane
