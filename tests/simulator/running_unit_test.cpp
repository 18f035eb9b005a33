// Units in normal operation, in the words of the wire.
#include "bench.h"

namespace firmlane::sim {
namespace {

struct RunningCase {
  const char* model;
  int baud;
  const char* id;
  const char* versions;
};

class RunningUnit : public testing::TestWithParam<RunningCase> {};

TEST_P(RunningUnit, SaysWhoItIsAndWhatItRunsAtItsOwnSpeedOnly) {
  const RunningCase& expected = GetParam();
  for (const int baud : {9600, 19200, 57600}) {
    Bench bench(expected.model, baud);
    bench.unit.startRunning();
    const bool right = baud == expected.baud;
    EXPECT_EQ(bench.ask("02 00 00 00 72 72 80"), "") << baud;
    EXPECT_EQ(bench.ask("02 00 00 00 01 01 80"), right ? expected.id : "") << baud;
    EXPECT_EQ(bench.ask("02 00 00 00 5E 5E 80"), right ? expected.versions : "") << baud;
  }
}

INSTANTIATE_TEST_SUITE_P(Models, RunningUnit,
                         testing::Values(RunningCase{"lwx51", 57600, "02 00 09 31 02 00 00 02 1D 00 00 00 02 00 00 5D 80",
                                                     "02 00 00 00 5F 02 0A 01 0E 00 00 02 15 11 80"},
                                         RunningCase{"lwx52", 57600, "02 00 0A 16 02 00 00 02 1D 00 00 00 05 00 00 46 80",
                                                     "02 00 00 00 5F 02 0A 01 0E 01 0F 02 15 21 80"},
                                         RunningCase{"lwx9600", 9600, "02 00 0C 45 02 00 00 02 1D 00 00 00 02 00 00 74 80",
                                                     "02 00 00 00 5F 02 0A 01 0E 00 00 02 15 11 80"},
                                         RunningCase{"velarc2b", 19200, "02 00 11 1A 02 00 00 05 00 02 00 00 03 00 00 37 80",
                                                     "02 00 00 00 69 05 00 01 05 00 02 01 02 03 01 02 04 03 80"},
                                         RunningCase{"velarc", 19200, "02 00 12 64 02 00 00 05 02 00 00 00 00 00 00 7F 80",
                                                     "02 00 00 00 69 00 00 00 05 02 00 00 00 00 00 00 00 70 80"},
                                         RunningCase{"velarc-old-dsp", 19200,
                                                     "02 00 13 49 02 00 00 03 67 00 00 00 00 00 00 48 80", ""}),
                         [](const auto& running) {
                           std::string name = running.param.model;
                           std::erase(name, '-');
                           return name;
                         });

TEST(RunningUnitTest, StoresSerialNumberAndConfirmsInEightBytes) {
  Bench bench("lwx51", 57600);
  bench.unit.startRunning();
  EXPECT_EQ(bench.ask("02 00 00 00 27 07 44 40 00 00 00 32 80"), "02 07 44 40 60 27 12 3E");
  EXPECT_EQ(bench.unit.state().serial, 123456);
  EXPECT_EQ(bench.ask("02 00 00 00 0A 00 00 0A 80"), "02 00 00 00 60 0A 6A 3E");
  EXPECT_EQ(bench.unit.state().presetLoads, 1);
}

TEST(RunningUnitTest, ReportsAnotherSerialNumberTwiceWhenToldTo) {
  Bench bench("lwx51", 57600);
  bench.unit.startRunning();
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(setFault(bench.unit.faults, "wrong-read-back"));
    for (const char* answer : {"02 07 44 41 60 27 13 3E", "02 07 44 41 60 27 13 3E", "02 07 44 40 60 27 12 3E"}) {
      EXPECT_EQ(bench.ask("02 00 00 00 27 07 44 40 00 00 00 32 80"), answer);
      EXPECT_EQ(bench.unit.state().serial, 123456);
    }
  }
}

TEST(RunningUnitTest, IgnoresCommandsWithWrongChecksumAndAnswersTheNextOne) {
  Bench bench("lwx51", 57600);
  bench.unit.startRunning();
  EXPECT_EQ(bench.ask("02 00 00 00 27 07 44 40 00 00 00 33 80"), "");
  EXPECT_EQ(bench.unit.state().serial, 1201);
  EXPECT_NE(bench.ask("55 02 00 00 00 01 01 80"), "");
}

TEST(RunningUnitTest, FaultsSpoilAnswers) {
  Bench bench("lwx51", 57600);
  bench.unit.startRunning();
  bench.unit.faults.silent = true;
  EXPECT_EQ(bench.ask("02 00 00 00 01 01 80"), "");
  bench.unit.faults = {.wrongChecksum = true};
  EXPECT_EQ(bench.ask("02 00 00 00 01 01 80"), "02 00 09 31 02 00 00 02 1D 00 00 00 02 00 00 5E 80");
  bench.unit.faults = {.lateAnswer = true};
  EXPECT_EQ(bench.ask("02 00 00 00 01 01 80"), "");
  bench.run(kSecond);
  EXPECT_EQ(bench.heard(), "02 00 09 31 02 00 00 02 1D 00 00 00 02 00 00 5D 80");
  bench.unit.faults = {.noise = true};
  EXPECT_THAT(bench.ask("02 00 00 00 01 01 80"), testing::EndsWith(" 02 00 09 31 02 00 00 02 1D 00 00 00 02 00 00 5D 80"));
}

TEST(RunningUnitTest, ForceResetStartsItsBootLoadersAgain) {
  Bench bench("velarc", 19200);
  bench.unit.startRunning();
  EXPECT_EQ(bench.ask("02 00 00 00 77 77 80", kSecond), "02 00 00 00 06 01 07 3E 3E 02 00 00 00 06 01 07 3E 3E");
}

}  // namespace
}  // namespace firmlane::sim
