#include "catalogue_fixture.h"

namespace firmlane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct WebJobsTest : CatalogueTest {
  WebJobsTest() {
    product("WS");
    form1.txtEmail.Text = "ann@mail.example";
    form1.txtFirst.Text = "Ann, the 2nd";
    form1.txtLast.Text = "Lee";
  }
  static std::string request(const std::string& value) { return std::string(kRegistrar) + "/Firmlane/FLusers.asp?e=" + value; }
  /// Sends the form to a server that answers so.
  void send(const ScriptedAnswer& answer) {
    http.answer(request(state.ContactBlank ? "BLANK,BLANK,BLANK,Wireless" : "ann@mail.example,Ann, the 2nd,Lee,Wireless"),
                answer);
    registration.RegisterUserData();
    EXPECT_FALSE(form1.Watchdog.enabled());
    EXPECT_FALSE(download.Registering);
  }
};

constexpr const char* kTimeout = "Timeout sending registration information to Tolvex!\rTry again?";
constexpr const char* kError = "Error sending registration information to Tolvex!\rTry again?";

TEST_F(WebJobsTest, ReleaseNotesGoByProductAndPage) {
  for (const char* code : {"VC", "WS"}) {
    product(code);
    for (const int page : {4, 22}) {
      state.WizardPage = static_cast<std::int16_t>(page);
      jobs.LaunchRelNote();
    }
  }
  jobs.openPage("/Mic_FAQ_LWX_index.htm");
  EXPECT_THAT(desktop.documents,
              ElementsAre("http://maker.example/Velarc/Firmware/version.html", "http://maker.example/newsite/vrc_remote.html",
                          "http://maker.example/LWX/firmware/version-firmware.html",
                          "http://maker.example/LWX/remote/version-remote.html", "http://maker.example/Mic_FAQ_LWX_index.htm"));
  desktop.failure = Failure(53, "No application");
  jobs.LaunchRelNote();
  EXPECT_THAT(boxes(), ElementsAre("!Error trying to launch browser: No application (#53)"));
}

TEST_F(WebJobsTest, TheInstallerIsStartedAndTheProgramEnds) {
  download.DownloadPath = "/somewhere/setup.exe";
  desktop.failure = Failure(8, "Exec format error");
  jobs.InstallSoftware();
  EXPECT_THAT(boxes(), ElementsAre("!Error trying to install Remote software: Exec format error (#8)"));
  EXPECT_EQ(state.ErrorText, "Error trying to install Remote software: Exec format error (#8)");
  desktop.failure.reset();
  EXPECT_THROW(jobs.InstallSoftware(), ProgramEnded);
  EXPECT_THAT(desktop.programs, ElementsAre("/somewhere/setup.exe"));
}

TEST_F(WebJobsTest, TheContactFormGoesOutAsItStands) {
  send({.body = " 1\r\n"});
  EXPECT_THAT(boxes(), ElementsAre("Thank you for registering with Tolvex!"));
  product("VC");
  http.answer(request("ann@mail.example,Ann, the 2nd,Lee,Velarc"), "1");
  registration.RegisterUserData();
  EXPECT_THAT(boxes(), ElementsAre("Thank you for registering with Tolvex!"));
}

TEST_F(WebJobsTest, WhoGaveNothingHearsNothing) {
  state.ContactBlank = true;
  for (const ScriptedAnswer& answer :
       {ScriptedAnswer{.body = "1"}, ScriptedAnswer{.body = "0"}, ScriptedAnswer{.delay = kForever}}) {
    const Micros before = queue.now();
    send(answer);
    EXPECT_EQ(queue.now(), before) << "and waits for nothing";
    EXPECT_EQ(http.requests().back(), request("BLANK,BLANK,BLANK,Wireless"));
    run(70 * kSecond);
    EXPECT_THAT(boxes(), IsEmpty());
  }
}

TEST_F(WebJobsTest, ARefusedOrLateEntryIsTriedAgainOnYesAlone) {
  screen.answerNext(MessageButton::Yes, 2 * kSecond);
  screen.answerNext(MessageButton::No);
  send({.body = "0"});
  EXPECT_THAT(boxes(), ElementsAre(kError, kError));
  EXPECT_EQ(http.requests().size(), 2U);

  for (const ScriptedAnswer& late : {ScriptedAnswer{.body = "1", .delay = 15 * kSecond}, ScriptedAnswer{.delay = kForever}}) {
    const Micros before = queue.now();
    screen.answerNext(MessageButton::No, 0);
    send(late);
    EXPECT_THAT(boxes(), ElementsAre(kTimeout));
    EXPECT_NEAR(static_cast<double>(queue.now() - before) / kSecond, 10, 0.1);
  }
}

TEST_F(WebJobsTest, WhatIsNoNumberGoesUpToTheCaller) {
  for (const auto& [answer, words] : {std::pair{"", "The registration server has not answered"},
                                      {"<html>", "The registration server's answer is not a number"},
                                      {"1x", "The registration server's answer is not a number"},
                                      {"40000", "The registration server's answer is too large a number"}}) {
    const ScriptedAnswer scripted{.body = answer};
    EXPECT_THAT([&] { send(scripted); }, testing::ThrowsMessage<Failure>(words));
    EXPECT_FALSE(download.Registering);
    EXPECT_FALSE(form1.Watchdog.enabled());
  }
  EXPECT_THROW(send({.failure = Failure(1, "refused")}), Failure);
  EXPECT_THAT(boxes(), IsEmpty());
}

}  // namespace
}  // namespace firmlane::test
