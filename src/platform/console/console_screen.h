// The screen of the console: no window, one line for each thing that a user would see happen.
#pragma once

#include <functional>

#include "platform/console/json_text.h"
#include "platform/screen.h"

namespace firmlane {

class ConsoleScreen : public Screen {
 public:
  explicit ConsoleScreen(std::function<void(const Json&)> print) : print_(std::move(print)) {}

  /// Called when something has changed that a script may wait for.
  std::function<void()> onChange;
  /// Called when the message box that was up is gone.
  std::function<void()> onBoxClosed;

  void formShown(Form& form, bool modal) override;
  void formHidden(Form& form) override;
  void formUnloaded(Form& form) override;
  void formChanged(Form&) override { changed(); }
  void controlChanged(Control&) override { changed(); }
  void messageBoxShown(const MessageBox& box) override;
  void messageBoxClosed() override;
  void setPointer(Pointer) override {}
  [[nodiscard]] ScreenSize size() const override { return {}; }

 private:
  void changed() const;

  std::function<void(const Json&)> print_;
};

/// A button's name as scripts say it; nothing for a text that is none.
std::optional<MessageButton> buttonNamed(const std::string& name);

}  // namespace firmlane
