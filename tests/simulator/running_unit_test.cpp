// Units in normal operation are strict, too.
#include "bench.h"

namespace firmlane::sim {
namespace {

TEST(RunningUnitTest, StoresANumberThatComesWholeAndReportsAnotherTwiceWhenToldTo) {
  Bench bench("lwx51", 57600);
  bench.unit.startRunning();
  EXPECT_EQ(bench.ask("02 00 00 00 27 07 44 40 00 00 00 33 80"), "") << "wrong checksum";
  EXPECT_EQ(bench.unit.state().serial, 1201);
  EXPECT_NE(bench.ask("55 02 00 00 00 01 01 80"), "") << "noise in front";
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(setFault(bench.unit.faults, "wrong-read-back"));
    for (const char* answer : {"02 07 44 41 60 27 13 3E", "02 07 44 41 60 27 13 3E", "02 07 44 40 60 27 12 3E"}) {
      EXPECT_EQ(bench.ask("02 00 00 00 27 07 44 40 00 00 00 32 80"), answer);
      EXPECT_EQ(bench.unit.state().serial, 123456);
    }
  }
}

}  // namespace
}  // namespace firmlane::sim
