// A user who needs no hands: looks at what stands on the screen and does what it asks for, one action at a time. The demo plays
// with it in real time, scenario tests in virtual time. It sees and does only what a user can.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/screen.h"

namespace firmlane {

/// What the player wants of the program.
struct Wishes {
  /// The product button of the main form.
  std::string productButton = "LWXButton";
  /// Fetch the list and the files from the web server; otherwise work from the files on disk.
  bool online = true;
  /// Line of the list of systems to pick.
  int system = 0;
};

class Player {
 public:
  enum class Outcome { Playing, Succeeded, Failed };

  /// `switchPower` works the unit's power switch.
  Player(FormHost& host, std::function<void(bool on)> switchPower, Wishes wishes);

  /// Called with each page text and each message as it comes.
  std::function<void(const std::string& text)> onText;

  /// Looks once and does at most one thing. Call it, outside of handlers, several times a second of the program's clock.
  Outcome step();
  /// Why it failed; empty otherwise.
  [[nodiscard]] const std::string& failure() const { return failure_; }

 private:
  void tell(const std::string& text);
  Outcome answerBox(const MessageBox& box);
  void work(Form& form);
  void workPort(Form& form);
  void workMain(Form& form);
  void workAuto(Form& form);
  bool choosePower(const std::string& instruction);
  bool chooseTask(Form& form);
  bool chooseLine(Form& form, const char* list, int line);
  bool click(Form& form, const std::string& control);
  [[nodiscard]] std::string pageText(const Form& form) const;

  FormHost& host_;
  std::function<void(bool on)> switchPower_;
  Wishes wishes_;
  std::string told_;
  std::string instruction_;  // the last instruction about the power switch that was followed
  bool switchOn_ = false;    // what was switched off is to be switched on again
  bool searching_ = false;
  bool reachedEnd_ = false;
  std::string failure_;
};

}  // namespace firmlane
