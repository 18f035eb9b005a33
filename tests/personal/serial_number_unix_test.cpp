#include <gmock/gmock.h>

#include "factory_world.h"

namespace firmlane::test {
namespace {

using SharedCounterTest = FactoryTest;

TEST_F(SharedCounterTest, ALinkToASharedCounterStaysALinkAndOneThatLeadsNowhereGivesNoNumber) {
  namespace fs = std::filesystem;
  fs::create_directory("share");
  writeNumber(100);
  fs::rename("sn.wls", "share/counter");
  fs::create_symlink("share/counter", "sn.wls");
  runSerial();
  EXPECT_EQ(hex(Files::read("share/counter")), "65 00 00 00");
  EXPECT_TRUE(fs::exists("share/counter.lock")) << "stations that share the counter have to meet in one lock";
  next();

  fs::rename("share/counter", "elsewhere");  // the share is not mounted
  world_.screen.answerOthers();
  EXPECT_THROW(serialFile_.reserve(), Failure);
  serial_.btnSN_Click();
  EXPECT_THAT(world_.screen.boxes().back().text, testing::StartsWith("sn.wls is a link to a file that cannot be reached: "));
  EXPECT_EQ(unit_.heard.size(), 2U);
  EXPECT_TRUE(fs::is_symlink("sn.wls"));
  EXPECT_FALSE(fs::exists("share/counter"));
  EXPECT_EQ(page(), kReady);
}

}  // namespace
}  // namespace firmlane::test
