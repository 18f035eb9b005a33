// The whole table, played and told as a page for people.
#pragma once

#include <string>
#include <vector>

#include "cell.h"

namespace firmlane::test {

struct Cell {
  Moment moment;
  Fault fault;
  CellResult result;
};

/// Every cell of a run that can happen.
std::vector<Cell> playRun(const Run& run);

/// A run's sheet: the faults against the moments, a letter for each outcome, and what the letters mean.
std::string sheet(const Run& run, const std::vector<Cell>& cells);

/// What stands above all sheets.
std::string tableHead();

}  // namespace firmlane::test
