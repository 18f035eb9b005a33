// Prints docs/faults.md.
#include <iostream>

#include "fault_table.h"

int main() {
  using namespace firmlane::test;
  std::cout << tableHead();
  int broken = 0;
  for (const Run& run : runs()) {
    const std::vector<Cell> cells = playRun(run);
    std::cout << sheet(run, cells);
    for (const Cell& cell : cells) {
      if (!cell.result.broken.empty() || !cell.result.met) {
        ++broken;
        std::cerr << run.title << ", " << momentName(cell.moment) << ", " << faultName(cell.fault) << ": "
                  << (cell.result.met ? cell.result.broken : "the moment never came") << "\n";
      }
    }
  }
  return broken == 0 ? 0 : 1;
}
