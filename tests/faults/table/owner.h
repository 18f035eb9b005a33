// A user who does what the screen tells him, from whatever page he is on, until the unit is programmed. He looks a few times a
// second, chooses port 3, switches the unit when he is told to, and answers boxes.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/program.h"
#include "runs.h"
#include "units/unit.h"

namespace firmlane::test {

/// The first line of a text that says something.
std::string firstLine(const std::string& text);

class Owner {
 public:
  Owner(const Run& run, sim::Unit& unit) : run_(run), unit_(unit) {}

  /// Looks at the program and does the next thing. Called from outside of handlers.
  void look(Program& program);

  /// An instruction that stands already is followed once more.
  void lookAgain() { switched_ = false; }

  /// Whether he goes on from page to page. Otherwise he only switches the unit and answers boxes.
  bool pressesOn = true;
  /// How long he lets a box stand.
  Micros boxPatience = kSecond;
  /// How long he waits with the switch.
  Micros switchPause = kSecond;
  /// Boxes that he has answered, as "[title] text".
  std::vector<std::string> boxes;

  /// The text of the page, its first label that says something; outcome and hint labels come apart.
  [[nodiscard]] static std::string pageText(Program& program);
  /// Every text in sight.
  [[nodiscard]] static std::string allText(Program& program);

 private:
  void answerBox(FormHost& host);
  [[nodiscard]] bool toldToSwitch(const std::string& text) const;
  void switchUnit();
  void workForm(FormHost& host, Form& form, const std::string& text);
  bool click(FormHost& host, Form& form, const std::string& control);

  const Run& run_;
  sim::Unit& unit_;
  Micros boxSince_ = 0;
  bool boxSeen_ = false;
  bool switched_ = false;  // for the instruction that stands on the screen
  std::optional<Micros> switchOnAt_;
  std::optional<Micros> switchOffAt_;
  Micros now_ = 0;
};

}  // namespace firmlane::test
