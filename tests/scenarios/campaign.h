// Random runs: a user who clicks whatever can be clicked, a unit and a web server that misbehave, all from one seed. In each run,
// whenever the program is at rest and when all is over, certain things must hold.
#pragma once

#include <map>
#include <random>
#include <set>
#include <string>

#include "stage.h"

namespace firmlane::test {

class RandomRun {
 public:
  RandomRun(Line line, std::uint32_t seed);

  /// Plays the run; the first call of anything.
  void play();
  /// What did not hold; empty when all did.
  [[nodiscard]] const std::string& fault() const { return fault_; }
  /// Whether a unit was programmed and found good.
  [[nodiscard]] bool reachedEnd() const { return reachedEnd_; }

  Stage stage;

 private:
  void next();
  void act();
  void answerBox();
  void workPort();
  void workWizard();
  void workPower();
  void troubleUnit();
  void troubleServer();
  void swapUnit();
  void click(const std::string& control);

  void rest();
  void checkAtRest();
  void checkFiles();
  void checkSomethingPossible();
  void checkVerdict();
  void fail(const std::string& what);

  [[nodiscard]] bool chance(int percent) { return static_cast<int>(random_() % 100) < percent; }
  template <typename List>
  const auto& oneOf(const List& list) {
    return list[random_() % std::size(list)];
  }

  std::mt19937 random_;
  std::map<std::string, std::set<std::string>> whole_;  // what each file of a set may hold
  Micros end_ = 0;
  int page_ = 0;
  bool reachedEnd_ = false;
  std::string fault_;
};

}  // namespace firmlane::test
