#include "fault_table.h"

#include <algorithm>
#include <map>

namespace firmlane::test {

namespace {

/// "A" to "Z", then "AA" and so on.
std::string letters(std::size_t number) {
  constexpr std::size_t kLetters = 26;
  const std::string last(1, static_cast<char>('A' + number % kLetters));
  return number < kLetters ? last : letters(number / kLetters - 1) + last;
}

std::string quoted(const std::string& text) { return text.empty() ? "" : "\"" + text + "\""; }

std::string boxesText(const Outcome& outcome) {
  std::string text;
  for (const std::string& box : outcome.boxes) {
    text += (text.empty() ? "" : "; ") + quoted(box);
  }
  return text;
}

std::string restText(const Outcome& outcome) {
  if (outcome.ended) {
    return "the program has ended";
  }
  return (outcome.waits ? "still waits at " : "") + quoted(outcome.page);
}

std::string meaning(const std::string& name, const Outcome& outcome) {
  const std::string told = outcome.kind.empty() ? "" : outcome.kind + ": " + quoted(outcome.words);
  return "| " + name + " | " + boxesText(outcome) + " | " + restText(outcome) + " | " + told + " | " +
         (outcome.portOpen ? "open" : "closed") + " | " + quoted(outcome.next) + " |\n";
}

const Cell* find(const std::vector<Cell>& cells, Moment moment, Fault fault) {
  const auto found =
      std::find_if(cells.begin(), cells.end(), [&](const Cell& cell) { return cell.moment == moment && cell.fault == fault; });
  return found == cells.end() ? nullptr : &*found;
}

}  // namespace

std::vector<Cell> playRun(const Run& run) {
  const std::size_t length = streamLengthOf(run);
  std::vector<Cell> cells;
  for (const Fault fault : kFaults) {
    for (const Moment moment : run.moments) {
      if (applies(run, moment, fault)) {
        cells.push_back({moment, fault, playCell(run, moment, fault, length)});
      }
    }
  }
  return cells;
}

std::string sheet(const Run& run, const std::vector<Cell>& cells) {
  std::map<Outcome, std::string> names;
  std::string meanings;
  std::string head = "|";
  std::string line = "|---|";
  for (const Moment moment : run.moments) {
    head += std::string(" | ") + momentName(moment);
    line += "---|";
  }
  std::string grid = head + " |\n" + line + "\n";
  for (const Fault fault : kFaults) {
    grid += std::string("| ") + faultName(fault);
    for (const Moment moment : run.moments) {
      const Cell* cell = find(cells, moment, fault);
      if (cell == nullptr) {
        grid += " | -";
        continue;
      }
      const auto [name, isNew] = names.try_emplace(cell->result.outcome, letters(names.size()));
      if (isNew) {
        meanings += meaning(name->second, cell->result.outcome);
      }
      grid += " | " + name->second;
    }
    grid += " |\n";
  }
  return std::string("\n## ") + run.title + "\n\n" + grid +
         "\n| | Boxes | Comes to rest | Outcome told | Port | Next leads to |\n|---|---|---|---|---|---|\n" + meanings;
}

std::string tableHead() {
  return "# What happens when something goes wrong\n"
         "\n"
         "Each cell is a run of the whole program in virtual time: a unit is programmed from the set on disk, the fault of the "
         "row\n"
         "comes at the moment of the column, and the owner does what the screen tells him. The letters are explained below each\n"
         "grid. In every cell the fault then ends, the owner goes on (or starts the program anew where it has ended), and the "
         "unit\n"
         "comes out programmed; no cell calls a unit good that is not.\n"
         "\n"
         "This page is printed by `build/dev/bin/fault-table > docs/faults.md`; a test compares it.\n";
}

}  // namespace firmlane::test
