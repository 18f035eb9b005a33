// What lblOutcome of a wizard holds behind every way in which something ends, in the whole program with a unit on the line.
#include <gmock/gmock.h>

#include "story.h"

namespace firmlane::test {
namespace {

const Step kOnline{"two options", "click ChkOffline; click btnNext"};
constexpr const char* kRead = "on your hard drive is";
constexpr const char* kRefused =
    "Your unit may require a successful FLASH upgrade to function properly.\rPlease check your connections and try to run the "
    "Wizard again.";
constexpr const char* kStopped =
    "The unit has stopped responding. Please try programming the FLASH again.\r\rClick Next to try again";

struct Ending {
  const char* name;
  Line line;
  std::vector<Step> steps;
  const char* kind;
  std::string words;
  /// The program before the story begins.
  std::function<void(Story&)> arrange = [](Story&) {};
};

void PrintTo(const Ending& ending, std::ostream* stream) { *stream << ending.name; }

std::string toldBy(const AutoForm& form) {
  return form.lblOutcome.Visible ? form.lblOutcome.Kind.get() + ": " + form.lblOutcome.Caption.get() : "";
}

class OutcomeTest : public testing::TestWithParam<Ending> {};

TEST_P(OutcomeTest, IsToldUntilTheNextPress) {
  const Ending& ending = GetParam();
  Story story(ending.line, ending.line == Line::Wireless ? "lwx52" : "velarc2");
  putOnDisk(story.directory, ending.line, releases(ending.line)[0]);
  ending.arrange(story);
  story.play(toOptions(ending.line) + ending.steps);
  EXPECT_EQ(toldBy(story.form()), std::string(ending.kind) + ": " + ending.words) << "on the screen: " << story.screenText();
  for (const CommandButton* press : {&story.form().btnNext, &story.form().btnBack, &story.form().btnMore}) {
    if (!story.program->host().refusal(*press)) {
      story.play({{"", "habits off; click " + press->name()}});
      EXPECT_EQ(toldBy(story.form()), "") << press->name();
      break;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Wizards, OutcomeTest,
    testing::Values(
        Ending{"Programmed",
               Line::Wireless,
               {kFromDisk, {kRead, "click btnNext"}, {"Processor 1 Programmed!", ""}},
               "good",
               "Congratulations!\rYou have successfully upgraded the firmware in your Receiver!\r\rClick Next to continue or "
               "click Exit to quit"},
        Ending{"Refused",
               Line::Wireless,
               {kFromDisk,
                {kRead, "fault refuses; click btnNext"},
                {"Failure programming Receiver FLASH", "answer OK"},
                {"Processor 1 Programmed!", ""}},
               "failure",
               std::string("Failure programming Receiver FLASH\r\r") + kRefused},
        Ending{"NoVerdict",
               Line::Wireless,
               {kFromDisk, {kRead, "fault no-verdict; click btnNext"}, {"page 20", ""}},
               "failure",
               kStopped},
        Ending{
            "NoConnection",
            Line::Wireless,
            {kFromDisk, {kRead, "habits off; click btnNext"}, {"may have corrupt flash memory", "answer OK"}, {"page 20", ""}},
            "failure",
            "Firmlane was unable to connect to your unit\r\n\r\nPlease check your connections and make sure that there is only "
            "one unit connected\r\nClick Next to try again or click Exit to quit"},
        Ending{"PortGoneBeforeARun",
               Line::Wireless,
               {kFromDisk,
                {kRead, "port gone; click btnNext"},
                {"Error: Serial port COM 3 is in use (#13)", "answer OK"},
                {"page 20", ""}},
               "failure",
               "Serial port COM 3 is in use"},
        Ending{"OneImageMissing",
               Line::Wireless,
               {kFromDisk, {kRead, "click btnNext"}, {"[Tolvex Firmlane] Error: ", "answer OK"}, {"page 20", ""}},
               "failure",
               "There is no image to program: nothing was sent, and nothing was erased",
               [](Story& story) {
                 std::filesystem::remove(story.directory.path() / setFiles(Line::Wireless, releases(Line::Wireless)[0])[1].name);
               }},
        Ending{"ListRefused",
               Line::Wireless,
               {kOnline, {"Error trying to connect: Refused (#111)", "answer OK"}, {"page 2", ""}},
               "failure",
               "Error trying to connect: Refused (#111)",
               [](Story& story) {
                 story.http.answer(updateListUrl(Line::Wireless), ScriptedAnswer{.failure = Failure(111, "Refused")});
               }},
        Ending{"DownloadBroken",
               Line::Velarc2,
               {kOnline,
                {"listed below", "choose VersionList 0; click btnNext"},
                {"Error trying download firmware: Broken (#104)", "answer OK"},
                {"page 3", ""}},
               "failure",
               "Error trying download firmware: Broken (#104)",
               [](Story& story) {
                 story.http.answer(setFiles(Line::Velarc2, releases(Line::Velarc2)[0])[1].url,
                                   ScriptedAnswer{.failure = Failure(104, "Broken")});
               }},
        Ending{"NoPortToRead",
               Line::Wireless,
               {kFromDisk, {"frmPort", "close"}, {"No COM port has been chosen", "answer OK"}, {"two options", ""}},
               "failure",
               "Error opening port: No COM port has been chosen (#8002)"},
        Ending{
            "SilentReading",
            Line::Velarc2,
            {kFromDisk, {"Unable to connect to your Velarc2", ""}},
            "failure",
            "Unable to connect to your Velarc2\r\n\r\nPlease check your connections and COM port and make sure your Velarc2 is "
            "turned on.",
            [](Story& story) { story.unit().powerOff(); }},
        Ending{"BadVerdict",
               Line::Velarc2,
               {kFromDisk,
                {kRead, "fault refuses; click btnNext"},
                {"Failure programming Vel-Arc FLASH", "answer OK; fault none"},
                {"page 19", ""}},
               "failure",
               "One or more of the processors in your Velarc2 did not reprogram correctly.\r\n\r\nPlease restart the Firmlane to "
               "try again"}),
    [](const auto& one) { return one.param.name; });

}  // namespace
}  // namespace firmlane::test
