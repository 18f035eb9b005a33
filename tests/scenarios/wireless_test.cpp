// Whole updates of wireless receivers: from the start of the program to the verdict, and the ways in which they go wrong.
#include <gmock/gmock.h>

#include "story.h"

namespace firmlane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

const std::vector<Step> kBegin = toOptions(Line::Wireless);
const Step kBoth{"two options", "click ChkOffline; click chkReceiver; click btnNext"};
const Step kFromDisk{"two options", "click chkReceiver; click btnNext"};
const std::vector<Step> kPickNewest = {{"Your version is NOT a released set", "click btnNext"},
                                       {"versions are listed below", "choose VersionList 0; click btnNext"}};
constexpr const char* kCongratulations = "Congratulations, you have successfully programmed your LWX receiver!";

struct Receiver : Story {
  explicit Receiver(const std::string& model = "lwx52") : Story(Line::Wireless, model) {}
  void onDisk(int release) { putOnDisk(directory, Line::Wireless, releases(Line::Wireless)[static_cast<std::size_t>(release)]); }
  std::vector<std::string> programmed() { return seenOf("Processor "); }
};

TEST(WirelessUpdate, OnlineAllFiveProcessorsAreProgrammedAndTheProgressCountsThem) {
  Receiver story;
  story.play(kBegin + std::vector<Step>{kBoth} + kPickNewest + std::vector<Step>{{kCongratulations, ""}});
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
  story.play(kBegin + std::vector<Step>{kBoth,
                                        {"Your version is NOT a released set", "click btnNext"},
                                        {"versions are listed below", "choose VersionList 1; click btnNext"},
                                        {kCongratulations, ""}});
  EXPECT_EQ(story.versions(), "Hub=2.10 DSP=2.30 RF1=1.20 RF2=1.20 Front=2.30");
  EXPECT_THAT(story.programmed(),
              ElementsAre(StartsWith("Processor 2 "), StartsWith("Processor 3 "), StartsWith("Processor 4 ")));
}

TEST(WirelessUpdate, ADownloadTouchesNoUnitAndServesTheReceiverLater) {
  Receiver story;
  story.unit().powerOff();
  story.play(kBegin + std::vector<Step>{{"two options", "click ChkOffline; click btnNext"},
                                        {"versions are listed below", "choose VersionList 0; click btnNext"},
                                        {"Download Complete!", "click btnNext"},
                                        {"Firmlane has finished downloading firmware.", ""}});
  EXPECT_EQ(story.wire.opens(), 0);
  story.unit().startRunning();
  story.play({{"page 20", "click btnNext"},
              {"two options", "click btnNext"},
              {"Version 3.2, released", "click btnNext"},
              {kCongratulations, ""}});
  EXPECT_EQ(story.versions(), "Hub=2.40 DSP=2.31 RF1=1.50 RF2=1.50 Front=2.60");
}

TEST(WirelessUpdate, AReceiverOnTheOlderLinkGetsItsDsp) {
  Receiver story("lwx9600");
  story.onDisk(0);
  story.play(kBegin + std::vector<Step>{kFromDisk, {"receiver is:\r\nVersion 2.290", "click btnNext"}, {kCongratulations, ""}});
  EXPECT_EQ(story.versions(), "Hub=2.10 DSP=2.31 RF1=1.14 Front=2.21");
  EXPECT_THAT(story.form().lblMain.Caption.get(), HasSubstr("(Your receiver will display 'Tolvex Version 2.3' on power up)"));
}

TEST(WirelessUpdate, ReceiversOfEveryKindFollowOneAnother) {
  Receiver story;
  story.onDisk(0);
  const std::vector<Step> another = {{"on your hard drive is", "click btnNext"}, {kCongratulations, ""}};
  story.play(kBegin + std::vector<Step>{kFromDisk} + another);
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

TEST(WirelessUpdate, ACurrentReceiverIsProgrammedOnlyOnceTheUserIsSure) {
  const std::vector<Step> current = kBegin + std::vector<Step>{kFromDisk, {"Version 3.0, released 12 May 2026", "click btnNext"}};
  Receiver cancelled;
  cancelled.onDisk(2);
  cancelled.play(current + std::vector<Step>{{"Your receiver's firmware is current.", "answer Cancel"}});
  EXPECT_TRUE(cancelled.ended());

  Receiver story;
  story.onDisk(2);
  story.unit().setVersion("RF2", {1, 14, 0});
  story.play(current + std::vector<Step>{{"is current.", "answer OK"},
                                         {"Are you sure", "answer No"},
                                         {"page 4", "click btnNext"},
                                         {"is current.", "answer OK"},
                                         {"Are you sure", "answer No"},
                                         {"page 4", "click btnBack"},
                                         {"two options", "click btnNext"},
                                         {"Version 3.0, released", "click btnNext"},
                                         {"is current.", "answer OK"},
                                         {"Are you sure", "answer Yes"},
                                         {kCongratulations, ""}});
  EXPECT_EQ(story.programmed().size(), 4U);
}

}  // namespace
}  // namespace firmlane::test
