// The whole program in virtual time, with a simulated unit on its port, a web server that has the releases, and a user who plays
// a story: sees this, does that. What the story does not mention the user does out of habit, as the screen tells him.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/program.h"
#include "releases.h"
#include "units/virtual_unit.h"
#include "world.h"

namespace firmlane::test {

/// When `sees` stands on the screen the user does what `does` says: actions joined by ";", one after another.
///   click CONTROL | choose LIST LINE | answer BUTTON | close | off | on | cycle | fault NAME | connect MODEL | wait SECONDS
///   port gone | habits off
struct Step {
  std::string sees;
  std::string does;
};

class Story : public Ground {
 public:
  /// The unit hangs on port 3 and runs.
  Story(Line line, const std::string& model);
  ~Story();

  Line line;
  VirtualWire& wire = wires.add(3);
  std::unique_ptr<sim::VirtualUnit> bench;
  std::unique_ptr<Program> program;

  [[nodiscard]] sim::Unit& unit() { return bench->unit; }
  [[nodiscard]] std::string versions() const;
  [[nodiscard]] const RunState& state() const { return program->state(); }
  [[nodiscard]] AutoForm& form() const;
  /// Hangs another unit on the port.
  void connect(const std::string& model);

  /// Plays the story from the start of the program, or from where the last one ended. Fails the test when what a step sees does
  /// not come within half an hour. A program that is in the middle of a wait when the story ends is broken off there; only one
  /// that is at rest can go on with another story.
  void play(std::vector<Step> steps);
  /// Whether the program has ended.
  [[nodiscard]] bool ended() const { return ended_; }
  /// What stands on the screen: a box, or the top form's name, the wizard's page ("page 4") and the labels that show.
  [[nodiscard]] std::string screenText() const;
  /// Every text that lblMain, lblReset or lblTotal of the wizard has taken, in order.
  std::vector<std::string> seen;
  /// Those of them that begin so.
  [[nodiscard]] std::vector<std::string> seenOf(const std::string& start) const;

 private:
  void look();
  void note(const Control& control);
  bool act(const std::string& action);
  bool followHabits();
  void perform(const std::string& actions);
  void checkRest();

  std::deque<Step> steps_;
  std::deque<std::string> actions_;
  std::string instruction_;
  std::map<const Control*, std::string> captions_;
  bool habits_ = true;  // chooses port 3, switches the unit off and on when told to, presses Next when told to
  bool started_ = false;
  bool restless_ = false;  // a port was found open; once is enough
  bool ended_ = false;
};

/// Steps from the start of the program to the options page of the wizard.
std::vector<Step> toOptions(Line line);
/// From there the unit is read, and programmed from the set on disk.
inline const Step kFromDisk{"two options", "click chkReceiver; click btnNext"};
/// Several lists of steps as one.
std::vector<Step> operator+(std::vector<Step> first, const std::vector<Step>& second);

}  // namespace firmlane::test
