// One cell of the fault table: a run of the whole program in virtual time, brought to a moment, met by a fault there, and
// followed until the unit is programmed after all.
#pragma once

#include <string>
#include <vector>

#include "runs.h"

namespace firmlane::test {

/// What a user meets. Two cells with the same outcome are the same to him.
struct Outcome {
  std::vector<std::string> boxes;  // first lines, in order, each once
  std::string page;                // first line of the page on which all comes to rest
  std::string kind;                // of the outcome label: good, caution, failure; empty when it shows nothing
  std::string words;               // its first line
  bool ended = false;              // the program has ended
  bool waits = false;              // it still waits, for something that the user can do
  bool portOpen = false;
  std::string next;  // first line of the page that Next leads to; empty where there is none

  friend auto operator<=>(const Outcome&, const Outcome&) = default;
};

struct CellResult {
  Outcome outcome;
  /// The moment was reached, so the fault really came.
  bool met = false;
  /// What did not hold: a verdict that is not true, a port that stays open, a unit that could not be programmed afterwards.
  /// Empty when all did.
  std::string broken;
};

/// Plays a cell. `streamLength` is what streamLengthOf gives for the run.
CellResult playCell(const Run& run, Moment moment, Fault fault, std::size_t streamLength);

/// How many bytes the unit hears of the run's image; 0 when a run without a fault does not come to its end.
std::size_t streamLengthOf(const Run& run);

}  // namespace firmlane::test
