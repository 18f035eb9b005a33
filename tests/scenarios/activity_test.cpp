// What goes on as the record tells it over whole updates.
#include <gmock/gmock.h>

#include "story.h"

namespace firmlane::test {
namespace {

/// Everything that the record has told in order, and the processors as they stood at last.
struct Told {
  explicit Told(Story& story) : activity(story.program->activity()) {}

  void look() {
    const Activity::Phase phase = activity.now();
    std::string text = nameOf(phase.doing);
    if (phase.parts > 0) {
      text += " " + std::to_string(phase.part) + "/" + std::to_string(phase.parts);
    }
    if (phase.limit > 0) {
      text += " " + std::to_string(phase.limit / kSecond) + " s";
    }
    if (phase.doing != Doing::Nothing && (steps.empty() || steps.back() != text)) {
      steps.push_back(text);
    }
  }
  [[nodiscard]] std::string processors() const {
    std::string text;
    for (const ProcessorReport& one : activity.processors()) {
      text += "\n" + std::to_string(one.number) + " " + one.name + " " + nameOf(one.state) + " " + one.before + ">" + one.wanted +
              ">" + one.after;
    }
    return text;
  }

  Activity& activity;
  std::vector<std::string> steps;
  std::shared_ptr<void> listening = activity.listen([this] { look(); });
};

TEST(ActivityOverAnUpdate, EveryStepIsToldWithItsLimitAndEachProcessorWithItsVersions) {
  Story story(Line::Velarc2, "velarc2");
  Told told(story);
  story.play(toOptions(Line::Velarc2) +
             std::vector<Step>{{"two options", "click ChkOffline; click chkReceiver; click btnNext"},
                               {"Your version is NOT a released set", "click btnNext"},
                               {"versions are listed below", "choose VersionList 0; click btnNext"},
                               {"Congratulations, you have successfully programmed your Velarc2!", ""}});
  const std::vector<std::string> run = {"waiting for the power switch 20 s", "erasing 80 s", "sending"};
  std::vector<std::string> wanted = {"reading the unit", "reading the unit 30 s", "reading the unit", "fetching a list",
                                     "downloading 1/3",  "downloading 2/3",       "downloading 3/3"};
  wanted.insert(wanted.end(), run.begin(), run.end());
  wanted.emplace_back("waiting for the verdict 60 s");
  wanted.insert(wanted.end(), run.begin(), run.end());
  wanted.insert(wanted.end(), {"waiting for the verdict 5 s", "reading the unit"});
  EXPECT_EQ(told.steps, wanted);
  EXPECT_EQ(told.activity.now().doing, Doing::Nothing);
  EXPECT_EQ(told.processors(), "\n1 Hub done 5.01>5.03>5.03\n2 DSP done 5.02>5.04>5.04");
}

TEST(ActivityOverAnUpdate, ARunThatFailsLeavesItsMarkAndTheOthersTheirs) {
  Story story(Line::Wireless, "lwx51");
  putOnDisk(story.directory, Line::Wireless, releases(Line::Wireless)[0]);
  Told told(story);
  const std::vector<Step> toFirstRun =
      toOptions(Line::Wireless) +
      std::vector<Step>{{"two options", "click chkReceiver; click btnNext"}, {"Version 3.2, released", "click btnNext"}};
  story.play(toFirstRun + std::vector<Step>{{"Processor 2 Programmed!", "fault late-erase; click btnNext"}, {"page 20", ""}});
  EXPECT_EQ(told.processors(),
            "\n1 Hub done 2.10>2.40>\n2 DSP done 2.29>2.31>\n3 RF1 failed 1.14>1.50>\n5 Front pending 2.21>2.60>");
}

}  // namespace
}  // namespace firmlane::test
