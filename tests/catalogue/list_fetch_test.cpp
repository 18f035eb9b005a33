#include "catalogue_fixture.h"

namespace firmlane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kList =
    "# of May|\r\nWLS|DSP V2.31-x|http://h/a/b/one.bin\r\nREMOTE|Remote V3|http://h/a/b/setup.exe\r\n"
    "SYSTEM|3.1|1 May|a note|2.31|2.12|1.16|2.23|directory longer than 20\r\n"
    "SYSTEM|3.0|1 April|older|2.30|2.11|1.15|2.22|s30\r\n";
constexpr const char* kVelarcList =
    "# of May|\r\nVRC|DSP V5.03-x|http://h/a/b/one.bin\r\nREMOTE|Remote V3|http://h/a/b/setup.exe\r\n"
    "SYSTEM|7.1|1 May|a note|5.03|5.02|3.4|s71\r\n";
constexpr const char* kReceived = "The Firmlane has received a list of currently available software\r\rClick on Next to continue";
constexpr const char* kNoConnection =
    "Firmlane was unable to make a connection.\r\rMake sure that you are connected to the internet and try again.";

struct Lists : CatalogueTest {
  Lists() { product("WS"); }

  /// As page 0 prepares it.
  void fetch(bool software = false) {
    form1.List1.Clear();
    lists.clearUrls();
    form1.lblConnect.Show();
    form1.lblTop.Hide();
    form1.lblStatus.Hide();
    form1.ProgressBar1.Show();
    form1.Timer1.start(100);
    state.WizardPage = software ? 20 : 1;
    software ? lists.GetUpdateSOFT() : lists.GetUpdateText();
  }
  /// What stands on the page: texts that show, the bar, the page number.
  [[nodiscard]] std::string page() const {
    std::string text = std::to_string(state.WizardPage);
    text += form1.Timer1.enabled() ? " ticking" : "";
    text += form1.lblConnect.Visible ? " connecting" : "";
    text += form1.ProgressBar1.Visible ? " bar " + std::to_string(form1.ProgressBar1.Value) : "";
    text += form1.lblTop.Visible ? " top: " + top() : "";
    return form1.lblStatus.Visible ? text + " status: " + status() : text;
  }
};

TEST_F(Lists, EachProductReadsItsListAndKeepsACopy) {
  struct Case {
    const char* product;
    bool older;
    bool software;
    const char* path;
    const char* copy;
    const char* list;
    const char* line;
  };
  for (const Case& c : {Case{"VC", false, false, "/Velarc2/updatevrc.txt", "updateVC.txt", kVelarcList, "DSP V5.03-x"},
                        Case{"VC", true, false, "/Velarc/update.txt", "updateVC.txt", kVelarcList, "DSP V5.03-x"},
                        Case{"WS", false, false, "/LWX/updateV4.txt", "updateWS.txt", kList, "DSP V2.31-x"},
                        Case{"VC", false, true, "/Velarc/update.txt", "updateVC.txt", kVelarcList, "Remote V3"},
                        Case{"VC", true, true, "/Velarc/update.txt", "updateVC.txt", kVelarcList, "Remote V3"},
                        Case{"WS", false, true, "/lwx/updatev4.txt", "updateWS.txt", kList, "Remote V3"}}) {
    SCOPED_TRACE(c.path);
    product(c.product, c.older);
    http.answer(maker(c.path), c.list);
    state.CatalogueReady = false;
    fetch(c.software);
    EXPECT_EQ(http.requests().back(), maker(c.path));
    EXPECT_EQ(lists.UpdateText, c.list);
    EXPECT_EQ(directory.read(c.copy), "\"" + std::string(c.list) + "\"\r\n");
    EXPECT_THAT(form1.List1.Lines.get(), ElementsAre(c.line));
    EXPECT_EQ((c.software ? lists.SoftwareUrls : lists.FirmwareUrls)[0],
              c.software ? "http://h/a/b/setup.exe\r" : "http://h/a/b/one.bin\r");
    EXPECT_EQ(page(), std::string(c.software ? "20" : "1") + " bar 100 status: " + kReceived);
    EXPECT_TRUE(state.CatalogueReady);
    EXPECT_THAT(boxes(), IsEmpty());
  }
}

TEST_F(Lists, OfAFetchThatIsGivenUpNothingComes) {
  for (const Micros late : {5 * kSecond, 0 * kSecond}) {  // the answer comes later, or in the same moment
    http.answer(maker("/LWX/updateV4.txt"), ScriptedAnswer{.body = kList, .delay = kSecond + late});
    state.InAutoWizard = true;
    state.CatalogueReady = false;
    std::string before;
    after(kSecond, [&] {
      EXPECT_TRUE(lists.underWay());
      lists.abandon();
      before = page();
    });
    fetch();
    run(10 * kSecond);
    EXPECT_EQ(page(), before);
    EXPECT_THAT(before, testing::Not(testing::HasSubstr("ticking")));
    EXPECT_FALSE(state.CatalogueReady || lists.underWay());
    EXPECT_THAT(form1.List1.Lines.get(), IsEmpty());
    EXPECT_THAT(boxes(), IsEmpty());
    EXPECT_EQ(outcome(frmAuto), "");
  }
}

TEST_F(Lists, SystemLinesFillTheRecordsOfTheProduct) {
  http.answer(maker("/LWX/updateV4.txt"), kList);
  fetch();
  EXPECT_EQ(state.SystemCount, 1);
  std::string first;
  SystemRecord::forEachField(state.LwxSystems[0], [&first](const char*, const auto& field) { first += field.trimmed() + ";"; });
  EXPECT_EQ(first, "3.1;1 May;a note;2.31;2.12;1.16;2.23;directory longer tha;");
  EXPECT_EQ(state.LwxSystems[1].SystemVersion.text(), "3.0       ");

  product("VC");
  http.answer(maker("/Velarc2/updatevrc.txt"), kVelarcList);
  state.VrcSystems[0].FrontVersion = "as it was";
  fetch();
  EXPECT_EQ(state.SystemCount, 0);
  EXPECT_EQ(state.VrcSystems[0].RfVersion.trimmed(), "3.4");
  EXPECT_EQ(state.VrcSystems[0].FrontVersion.trimmed(), "as it was");
  EXPECT_EQ(state.VrcSystems[0].SystemDir.trimmed(), "s71");

  product("VC", true);
  http.answer(maker("/Velarc/update.txt"), kVelarcList);
  state.SystemCount = 7;
  state.VrcSystems = {};
  fetch();
  EXPECT_EQ(state.SystemCount, 7) << "the older Velarc's list has no systems";
  EXPECT_EQ(state.VrcSystems[0], SystemRecord());
}

TEST_F(Lists, AnAnswerThatIsNoListEndsOnPage50) {
  constexpr const char* kNoList =
      "The Firmlane was unable to find a list of currently available software on Tolvex's website. Please try again "
      "later.\r\rClick on Next to continue";
  state.InAutoWizard = true;
  for (const bool software : {false, true}) {
    const std::string url = maker(software ? "/lwx/updatev4.txt" : "/LWX/updateV4.txt");
    frmAuto.lblMain.Caption = "";
    http.answer(url, "");
    fetch(software);
    EXPECT_EQ(page(), std::string("50 connecting top: Error connecting to the Internet status: ") + kNoConnection);
    http.answer(url, "<html>");
    fetch(software);
    EXPECT_EQ(page(), std::string("50 status: ") + kNoList);
    EXPECT_EQ(outcome(form1),
              "failure: The Firmlane was unable to find a list of currently available software on Tolvex's website.");
    EXPECT_EQ(form1.ProgressBar1.Value, 100);
    EXPECT_EQ(frmAuto.lblMain.Caption.get().empty(), software) << "the wizard waits for no list of software";
  }
  EXPECT_THAT(form1.List1.Lines.get(), IsEmpty());
  EXPECT_FALSE(directory.has("updateWS.txt"));
  EXPECT_FALSE(state.CatalogueReady);
  std::filesystem::create_directory(directory.path() / "updateWS.txt");
  http.answer(maker("/LWX/updateV4.txt"), kList);
  fetch();
  EXPECT_NE(status(), kReceived) << "a copy that cannot be kept";
}

TEST_F(Lists, TheAutoWizardInChargeHearsOfItToo) {
  frmAuto.Load();
  frmVRCAuto.Load();
  state.InAutoWizard = true;
  for (AutoForm* form : {static_cast<AutoForm*>(&frmAuto), static_cast<AutoForm*>(&frmVRCAuto)}) {
    http.answer(maker("/LWX/updateV4.txt"), kList);
    fetch();
    EXPECT_EQ(form->Progress1.Value, 100);
    form->btnNext.Disable();
    state.AutoPage = 2;
    const std::string noList = "The Firmlane was unable to find a list of currently available software on Tolvex's website.";
    const std::string notFound = "caution: The server answered 404 Not Found for updateV4.txt";
    for (const auto& [answer, told] :
         {std::pair{ScriptedAnswer{.body = "#\nWLS|D V1-x|/d\nSYSTEM|3.2|May|Note|2.31|2.4|1.5|2.6|S32\r\n"},
                    "failure: " + noList},
          {ScriptedAnswer{.body = "<html>"}, "failure: " + noList},
          {ScriptedAnswer{.body = "<html>", .status = 404, .reason = "Not Found"}, notFound}}) {
      http.answer(maker("/LWX/updateV4.txt"), answer);
      form->lblMain.Caption = "";
      fetch();
      EXPECT_EQ(form->lblMain.Caption, noList);
      EXPECT_EQ(outcome(*form), told);
      EXPECT_EQ(outcome(form1), told);
    }
    EXPECT_EQ(state.AutoPage, 2);
    EXPECT_FALSE(form->btnNext.Enabled);
    http.answer(maker("/LWX/updateV4.txt"), "");
    fetch();
    EXPECT_EQ(form->lblMain.Caption, kNoConnection);
    EXPECT_EQ(outcome(*form), std::string("failure: ") + kNoConnection);
    EXPECT_EQ(state.AutoPage, 19);
    EXPECT_TRUE(form->btnNext.Enabled);
    state.InVrcAutoWizard = true;
  }
}

TEST_F(Lists, AFailureIsToldInABoxAndKeepsWhatWasRead) {
  const Micros before = queue.now();
  for (const auto& [answer, told] :
       {std::pair{ScriptedAnswer{.failure = Failure(12029, "Cannot connect to the server")},
                  "Cannot connect to the server (#12029)"},
        {ScriptedAnswer{.body = kList, .headers = {{"content-length", "1000"}}}, "The server sent only 210 of 1000 bytes (#62)"},
        {ScriptedAnswer{.delay = kForever}, "The request has timed out (#12002)"}}) {
    http.answer(maker("/LWX/updateV4.txt"), answer);
    fetch();
    EXPECT_THAT(boxes(), ElementsAre(std::string("!Error trying to connect: ") + told));
    EXPECT_EQ(state.ErrorText, std::string("Error trying to connect: ") + told);
    EXPECT_EQ(page(), "1 connecting bar 0") << "Timer1 has stopped, the page is where it was";
    EXPECT_EQ(outcome(form1), "failure: " + state.ErrorText);
    EXPECT_FALSE(directory.has("updateWS.txt"));
  }
  EXPECT_LE(queue.now() - before, 65 * kSecond);

  std::string tooMany = "#REMOTE|V0|u0\n";
  for (int i = 1; i < 22; ++i) {
    tooMany += "REMOTE|V" + std::to_string(i) + "|u" + std::to_string(i) + "\n";
  }
  http.answer(maker("/lwx/updatev4.txt"), tooMany);
  fetch(true);
  EXPECT_THAT(boxes(), ElementsAre("!Error trying to connect: The list names more than 21 versions (#9)"));
  EXPECT_EQ(form1.List1.ListCount(), 22);
  EXPECT_EQ(lists.SoftwareUrls[20], "u20");
  lists.FirmwareUrls[0] = "u0";
  lists.clearUrls();
  EXPECT_EQ(lists.SoftwareUrls[20] + lists.FirmwareUrls[0], "");
  EXPECT_FALSE(state.CatalogueReady);

  http.answer(maker("/LWX/updateV4.txt"), kList + std::string(40000, 'x'));
  state.CatalogueReady = true;
  fetch();
  EXPECT_THAT(boxes(), ElementsAre("!Error trying to connect: The list is longer than 32767 characters (#6)"));
  EXPECT_THAT(form1.List1.Lines.get(), ElementsAre("DSP V2.31-x"));
  EXPECT_TRUE(state.CatalogueReady) << "keeps its former value";

  std::filesystem::remove(directory.path() / "updateWS.txt");
  std::filesystem::create_directory(directory.path() / "updateWS.txt");
  fetch();
  EXPECT_THAT(boxes(),
              ElementsAre(testing::AllOf(testing::StartsWith("!Error trying to connect: "), testing::HasSubstr("updateWS.txt"))));
}

}  // namespace
}  // namespace firmlane::test
