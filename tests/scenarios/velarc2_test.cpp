// Whole updates of the Velarc2.
#include <gmock/gmock.h>

#include "story.h"

namespace firmlane::test {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

const std::vector<Step> kToVelarc2 = toOptions(Line::Velarc2);
constexpr const char* kVelarc2Done = "Congratulations, you have successfully programmed your Velarc2!";

/// A record of VRC2Sys.vrc: a Velarc2's system has no Front of its own, so that field stays as it is in a row without use.
std::string record(const std::string& system, const std::string& versions) {
  return system + std::string(7, ' ') + "12 May 2026" + std::string(9, ' ') + "System " + system + std::string(90, ' ') +
         versions + std::string(10, '\0') + "S" + system + std::string(16, ' ');
}
const std::string kNewest = record("7.2", "5.04      5.03      1.30      ");
const std::string kFileBehindTheFirstRun = kNewest + record("7.1", "5.03      5.01      1.23      ") +
                                           record("7.0", "5.02      5.01      1.23      ") + kNewest +
                                           std::string(197 * 190, '\0');

struct Velarc2 : Story {
  explicit Velarc2(const std::string& model = "velarc2") : Story(Line::Velarc2, model) {}
  void onDisk(int release) { putOnDisk(directory, Line::Velarc2, releases(Line::Velarc2)[static_cast<std::size_t>(release)]); }
  std::vector<std::string> programmed() { return seenOf("Now programming Processor "); }
};

TEST(Velarc2Update, OnlineHubAndDspAreProgrammedAndTheFrontsLeftAlone) {
  for (const char* model : {"velarc2", "velarc2b"}) {
    SCOPED_TRACE(model);
    Velarc2 story(model);
    story.play(kToVelarc2 +
               std::vector<Step>{{"two options", "click ChkOffline; click chkReceiver; click btnNext"},
                                 {"Your version is NOT a released set", "click btnNext"},
                                 {"Velarc2 firmware versions are listed below", "choose VersionList 0; click btnNext"},
                                 {kVelarc2Done, ""}});
    EXPECT_THAT(story.versions(), StartsWith("Hub=5.0.3 DSP=5.0.4 Front A=1.2.3"));
    std::vector<std::string> steps = {"Overall Progress (Step 2 of 101)"};
    for (const int step : {1, 2, 3, 4, 5, 7}) {  // two a processor; the download's own step is never shown
      steps.push_back("Overall Progress (Step " + std::to_string(step) + " of 7)");
    }
    EXPECT_EQ(story.seenOf("Overall Progress ("), steps);
    EXPECT_EQ(story.directory.read("VRC2Sys.vrc"), kFileBehindTheFirstRun);
    EXPECT_FALSE(story.directory.has("LWXSys.lwx"));
  }
}

TEST(Velarc2Update, ADspBelowFiveIsBroughtUpAndAnotherVelarcFollows) {
  Velarc2 story("velarc2-old-dsp");
  story.onDisk(0);
  story.play(kToVelarc2 + std::vector<Step>{kFromDisk,
                                            {"Your version is NOT a released set", "click btnNext"},
                                            {kVelarc2Done, "connect velarc2b; click btnMore"},
                                            {"Version 7.2, released", "click btnNext"},
                                            {"Programmed!", ""}});
  EXPECT_EQ(story.versions(), "Hub=5.0.3 DSP=5.0.2 Front A=1.2.3 Front B=1.2.4");
  story.play({{kVelarc2Done, ""}});
  EXPECT_EQ(story.versions(), "Hub=5.0.3 DSP=5.0.4 Front A=1.2.3 Front B=1.2.4");
}

TEST(Velarc2Update, TheFinalCheckFailsForANewerDspAndPassesForANewerHub) {
  const std::tuple<sim::Version, sim::Version, const char*> cases[] = {{{5, 0, 5}, {5, 0, 1}, "did not reprogram correctly"},
                                                                       {{5, 0, 2}, {5, 0, 9}, kVelarc2Done}};
  for (const auto& [dsp, hub, verdict] : cases) {
    SCOPED_TRACE(verdict);
    Velarc2 story;
    story.onDisk(0);
    story.unit().setVersion("DSP", dsp);
    story.unit().setVersion("Hub", hub);
    story.play(kToVelarc2 + std::vector<Step>{kFromDisk, {"Version 7.2, released", "click btnNext"}, {verdict, ""}});
    EXPECT_EQ(story.programmed().size(), 2U) << "with an empty number first, then the one processor that was behind";
  }
}

}  // namespace
}  // namespace firmlane::test
