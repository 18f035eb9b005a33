// Whole updates of wireless receivers: from the start of the program to the verdict.
#include <gmock/gmock.h>

#include "story.h"

namespace firmlane::test {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

const std::vector<Step> kToWireless = toOptions(Line::Wireless);
const Step kBoth{"two options", "click ChkOffline; click chkReceiver; click btnNext"};
const std::vector<Step> kPickNewest = {{"Your version is NOT a released set", "click btnNext"},
                                       {"versions are listed below", "choose VersionList 0; click btnNext"}};
constexpr const char* kReceiverDone = "Congratulations, you have successfully programmed your LWX receiver!";

struct Receiver : Story {
  Receiver() : Story(Line::Wireless, "lwx52") {}
  std::vector<std::string> programmed() { return seenOf("Processor "); }
};

TEST(WirelessUpdate, OnlineAllFiveProcessorsAreProgrammedAndTheProgressCountsThem) {
  Receiver story;
  story.play(kToWireless + std::vector<Step>{kBoth} + kPickNewest + std::vector<Step>{{kReceiverDone, ""}});
  EXPECT_EQ(story.versions(), "Hub=2.40 DSP=2.31 RF1=1.50 RF2=1.50 Front=2.60");
  EXPECT_THAT(story.programmed(), ElementsAre(StartsWith("Processor 1 "), StartsWith("Processor 2 "), StartsWith("Processor 3 "),
                                              StartsWith("Processor 4 ")));
  std::vector<std::string> steps = {"Overall Progress (Step 2 of 101)"};  // out of sight, before the update is sized
  for (int step = 1; step <= 12; ++step) {
    steps.push_back("Overall Progress (Step " + std::to_string(step) + " of 12)");
  }
  EXPECT_EQ(story.seenOf("Overall Progress ("), steps);
  EXPECT_EQ(story.directory.read("LWXSys.lwx").size(), 38'190U);
  EXPECT_EQ(story.directory.read("LWXSys.lwx").substr(0, 10), "3.2       ");
  EXPECT_TRUE(story.screen.boxes().empty());
}

TEST(WirelessUpdate, ProcessorsThatAreCurrentAreLeftAlone) {
  Receiver story;
  story.play(kToWireless + std::vector<Step>{kBoth,
                                             {"Your version is NOT a released set", "click btnNext"},
                                             {"versions are listed below", "choose VersionList 1; click btnNext"},
                                             {kReceiverDone, ""}});
  EXPECT_EQ(story.versions(), "Hub=2.10 DSP=2.30 RF1=1.20 RF2=1.20 Front=2.30");
  EXPECT_THAT(story.programmed(),
              ElementsAre(StartsWith("Processor 2 "), StartsWith("Processor 3 "), StartsWith("Processor 4 ")));
}

TEST(WirelessUpdate, ReceiversOfEveryKindFollowOneAnother) {
  Receiver story;
  putOnDisk(story.directory, Line::Wireless, releases(Line::Wireless)[0]);
  const std::vector<Step> another = {{"on your hard drive is", "click btnNext"}, {kReceiverDone, ""}};
  story.play(kToWireless + std::vector<Step>{kFromDisk} + another);
  EXPECT_EQ(story.versions(), "Hub=2.40 DSP=2.31 RF1=1.50 RF2=1.50 Front=2.60");
  const std::pair<const char*, const char*> units[] = {{"lwx51", "Hub=2.40 DSP=2.31 RF1=1.50 Front=2.60"},
                                                       {"lwx9600", "Hub=2.10 DSP=2.31 RF1=1.14 Front=2.21"},
                                                       {"lwx52qdr", "Hub=2.40 DSP=2.31 RF1=1.50 RF2=1.50 Front=2.60"}};
  for (const auto& [model, versions] : units) {
    SCOPED_TRACE(model);
    story.play(std::vector<Step>{{"page 19", std::string("connect ") + model + "; click btnMore"}} + another);
    EXPECT_EQ(story.versions(), versions);
  }
  EXPECT_TRUE(story.screen.boxes().empty());
}

}  // namespace
}  // namespace firmlane::test
