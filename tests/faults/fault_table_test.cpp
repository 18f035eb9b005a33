// Every state of a run against every fault. What must hold in each cell is checked here; what a user meets stands in
// docs/faults.md, where a change shows.
#include "fault_table.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace firmlane::test {
namespace {

std::string page() {
  std::ostringstream text;
  text << std::ifstream(FAULTS_PAGE).rdbuf();
  return text.str();
}

class FaultTable : public testing::TestWithParam<const Run*> {};

TEST_P(FaultTable, EveryFaultEndsWellAndAsThePageTells) {
  const std::vector<Cell> cells = playRun(*GetParam());
  for (const Cell& cell : cells) {
    EXPECT_TRUE(cell.result.met) << momentName(cell.moment) << " never came";
    EXPECT_EQ(cell.result.broken, "") << momentName(cell.moment) << ": " << faultName(cell.fault);
  }
  const std::string told = sheet(*GetParam(), cells);
  EXPECT_NE(page().find(told), std::string::npos)
      << "docs/faults.md tells otherwise (print it anew: build/dev/bin/fault-table > docs/faults.md); now it is:\n"
      << told;
}

std::vector<const Run*> allRuns() {
  std::vector<const Run*> all;
  for (const Run& run : runs()) {
    all.push_back(&run);
  }
  return all;
}

INSTANTIATE_TEST_SUITE_P(Runs, FaultTable, testing::ValuesIn(allRuns()), [](const auto& run) {
  std::string name = run.param->title;
  std::erase_if(name, [](char c) { return c == ' ' || c == ','; });
  return name;
});

}  // namespace
}  // namespace firmlane::test
