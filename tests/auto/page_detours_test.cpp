// Away from the straight path: silence, missing ports, failed fetches and downloads, Back and Exit in the middle of waits.
#include "flow.h"

namespace firmlane::test {
namespace {

using testing::ElementsAre;

using DetoursTest = FlowTest;

TEST_F(DetoursTest, TheLimitOfAnEarlierReadingDoesNotEndALaterOne) {
  state.PortChosen = true;
  world.open(form, false, true);
  world.click(form.btnNext);  // read in time; its limit still runs
  world.run(20 * kSecond);
  world.click(form.btnBack);
  state.PortChosen = false;
  world.frmPort.OnLoad = [&] {
    world.after(15 * kSecond, [&] {
      state.PortChosen = true;
      world.host.close(world.frmPort);
    });
  };
  world.click(form.btnNext);
  EXPECT_EQ(state.AutoPage, 2);
  EXPECT_FALSE(world.frmRecover.Loaded);
}

TEST_F(DetoursTest, EachPageComesAsItIsWhateverStoodThere) {
  Form1& form1 = world.form1;
  form.Show();
  const int centre = form.Left;
  form.ChkOffline.Show();
  form.chkReceiver.Show();
  form.OnLoad();
  EXPECT_EQ(shown(form), "Back Next");
  form.Left = 1;
  world.click(form.btnNext);
  world.click(form.btnBack);
  EXPECT_EQ(form.Left, centre);
  state.WizardPage = 9;
  form1.List1.Show();
  for (Control* control : std::initializer_list<Control*>{&form1.frmFS, &form1.imgGUI, &form1.imgLWX}) {
    control->Hide();
  }
  world.click(form.btnBack);
  EXPECT_EQ(state.WizardPage, 0);
  EXPECT_TRUE(form1.frmFS.Visible && form1.imgGUI.Visible && form1.imgLWX.Visible && !form1.List1.Visible);

  state.PortChosen = true;
  state.LwxSysFile[0] = system("3.1", "2.31", "2.20", "1.2", "1.9");
  world.open(form, false, true);
  world.click(form.btnNext);
  state.AutoPage = 4;  // a unit that is current alone
  state.VersionsCompared = true;
  form.ChkOffline.Disable();
  form.chkReceiver.Disable();
  form.Progress1.Show();
  world.click(form.btnBack);
  EXPECT_EQ(shown(form), "Back Next Off Rec imgDL imgFlash");
  EXPECT_FALSE(state.VersionsCompared);
  for (int press = 0; press < 2; ++press) {
    world.click(form.btnNext);
  }
  world.unit = [&] {
    report(2, 31, 2, 20);
    form.btnNext.Enable();
    form.Progress1.Show();
    form.Label6.Show();
  };
  world.click(form.btnNext);
  EXPECT_EQ(shown(form), "More total lblTotal");
  EXPECT_FALSE(form.btnNext.Enabled || form.Label6.Visible);
}

TEST_F(DetoursTest, APortThatIsGoneAtTheFinalCheckCanBeTriedAgain) {
  world.screen.answerOthers();
  state.PortChosen = true;
  state.LwxSysFile[0] = system("3.1", "2.31", "2.20", "1.2", "1.9");
  world.open(form, false, true);
  world.click(form.btnNext);
  world.click(form.btnNext);
  world.versionPortOpens = false;
  world.click(form.btnNext);
  expectPage(6, "All Selected Processors Programmed!\r\r\r\r", "reset Next total lblTotal");
  EXPECT_EQ(form.lblReset.Caption, "Click Next to continue");
  world.versionPortOpens = true;
  world.unit = nullptr;
  world.after(3 * kSecond, [&] { world.frmVersion.Timer1.stop(); });  // the adapter is pulled
  world.click(form.btnNext);
  expectPage(6, "All Selected Processors Programmed!\r\r\r\r", "reset Next total lblTotal");
  world.unit = [&] { report(2, 31, 2, 20); };
  world.click(form.btnNext);
  EXPECT_EQ(state.AutoPage, 19);
  state.PortChosen = false;
  world.portChosen = 0;
  world.click(form.btnMore);
  EXPECT_FALSE(state.VersionsComplete) << "what was read says nothing of another receiver";
}

TEST_F(DetoursTest, BackEndsTheWaitsOfTheOnlinePath) {
  struct Wait {
    const char* name;
    std::function<void(Flow&)> arrange;
  };
  const Wait waits[] = {
      {"the pick", [](Flow&) {}},
      {"a list that never comes", [](Flow& flow) { flow.world.fetched = nullptr; }},
      {"a list that never comes behind one of something else",
       [](Flow& flow) {
         flow.world.fetched = nullptr;
         flow.state.CatalogueReady = true;
         flow.state.VersionPicked = true;
       }},
      {"a list without the line picked last",
       [](Flow& flow) {
         flow.state.VersionPicked = true;
         flow.state.SelectedSystem = 2;
       }},
      {"a fetch that failed",
       [](Flow& flow) {
         flow.world.fetched = [&flow] {
           flow.form.lblMain.Caption = "no connection";
           flow.state.AutoPage = 19;
           flow.form.btnNext.Enable();
         };
       }},
      {"a fetch that goes on and fails",
       [](Flow& flow) {
         flow.world.fetchTakes = 5 * kSecond;
         flow.world.fetched = [&flow] {
           flow.form.lblMain.Caption = "no connection";
           flow.state.AutoPage = 19;
         };
       }},
  };
  for (const Wait& wait : waits) {
    SCOPED_TRACE(wait.name);
    Flow flow;
    wait.arrange(flow);
    flow.world.open(flow.form, true, false);
    flow.world.clickLater(3 * kSecond, flow.form.btnBack);
    flow.world.click(flow.form.btnNext);
    flow.expectPage(0, kOptionsPage, "Back Next Off Rec imgDL imgFlash");
  }
}

TEST_F(DetoursTest, NextAfterBackFetchesAnewAndNothingOfTheFirstFetchComes) {
  world.fetchTakes = 10 * kSecond;
  world.open(form, true, false);
  world.clickLater(2 * kSecond, form.btnBack);
  world.clickLater(4 * kSecond, form.btnNext);
  world.after(13 * kSecond, [&] { EXPECT_FALSE(state.CatalogueReady); });
  world.after(15 * kSecond, [&] { world.host.choose(form.VersionList, 1); });
  world.click(form.btnNext);
  world.run(16 * kSecond);
  EXPECT_EQ(state.AutoPage, 3);
  EXPECT_EQ(state.SelectedSystem, 1);
  EXPECT_THAT(asked(), ElementsAre("fetch WS", "fetch WS", "page 1 product 1", "page 2 product 1"));
}

TEST_F(DetoursTest, NextTriesAgainWhereAListDidNotCome) {
  struct Failing {
    const char* name;
    std::function<void(Flow&)> fails;
  };
  const Failing failures[] = {{"no connection",
                               [](Flow& flow) {
                                 flow.form.lblMain.Caption = "no connection";
                                 flow.state.AutoPage = 19;
                                 flow.state.WizardPage = 50;
                                 flow.form.btnNext.Enable();
                               }},
                              {"a box", [](Flow&) {}},
                              {"no list, behind a run that has hidden Back", [](Flow& flow) {
                                 flow.state.WizardPage = 50;
                                 flow.form.btnBack.Hide();
                               }}};
  for (const Failing& failing : failures) {
    SCOPED_TRACE(failing.name);
    Flow flow;
    flow.state.VersionPicked = true;
    const auto comes = std::exchange(flow.world.fetched, [&] { failing.fails(flow); });
    flow.world.open(flow.form, true, false);
    flow.world.after(2 * kSecond, [&] { flow.world.fetched = comes; });
    flow.world.clickLater(3 * kSecond, flow.form.btnNext);
    flow.world.after(3200 * kMillisecond, [&] {
      EXPECT_EQ(flow.form.lblMain.Caption, "");
      EXPECT_EQ(flow.state.AutoPage, 2);
      EXPECT_FALSE(flow.form.btnNext.Enabled);
    });
    flow.world.click(flow.form.btnNext);
    EXPECT_EQ(flow.state.AutoPage, 3);
    EXPECT_THAT(flow.asked(), ElementsAre("fetch WS", "fetch WS", "page 1 product 1", "page 2 product 1"));
  }
}

TEST_F(DetoursTest, AnEarlierListStandsInForOneThatDoesNotCome) {
  world.open(form, true, false);
  world.after(2 * kSecond, [&] { world.host.choose(form.VersionList, 1); });
  world.click(form.btnNext);
  EXPECT_EQ(world.directory.read("LWXSys.lwx").size(), 38'190U) << "what was seen is kept, whatever becomes of the pick";
  world.click(form.btnBack);
  asked();
  world.fetched = [&] {
    state.WizardPage = 50;
    state.AutoPage = 19;
    form.btnNext.Enable();
  };
  world.click(form.btnNext);
  EXPECT_EQ(state.AutoPage, 3);
  EXPECT_EQ(form.VersionList.ListIndex, 1);
  EXPECT_THAT(asked(), ElementsAre("fetch WS")) << "the main form has no list to be led to";
}

TEST_F(DetoursTest, TheSecondHalfOfADoubleClickStartsNoSecondRun) {
  state.PortChosen = true;
  state.LwxSysFile[0] = system("3.1", "2.31", "2.30", "1.2", "1.9");
  world.open(form, false, true);
  world.click(form.btnNext);
  world.host.click(form.btnNext);
  world.host.click(form.btnNext);
  world.run(kSecond);
  EXPECT_THAT(asked(), ElementsAre("read", "flash 0"));
  EXPECT_EQ(state.AutoPage, 5);
  form.Progress1.Value = 30;
  world.flash = [&] { EXPECT_EQ(form.Progress1.Value, 100); };
  world.click(form.btnNext);
}

TEST_F(DetoursTest, AGoodVerdictNamesWhatIsStillBehind) {
  state.PortChosen = true;
  state.LwxSysFile[0] = system("3.1", "2.31", "2.20", "1.2", "1.9");
  world.open(form, false, true);
  for (int press = 0; press < 3; ++press) {
    world.click(form.btnNext);
  }
  EXPECT_EQ(form.lblOutcome.Kind, "caution");
  EXPECT_EQ(form.lblOutcome.Caption, "Not everything is up to date yet: DSP 2.30 (the set has 2.31). Click '" +
                                         form.btnMore.Caption.get() + "' to program the rest.");
}

TEST_F(DetoursTest, ADownloadThatAnotherProgramKeepsOutIsTold) {
  state.VersionPicked = true;
  world.open(form, true, false);
  world.click(form.btnNext);
  FirmwareSet another{world.files};
  const FirmwareSet::Fetch fetch(another);
  world.screen.answerNext(MessageButton::OK);
  world.click(form.btnNext);
  EXPECT_EQ(state.AutoPage, 3);
  EXPECT_TRUE(form.lblOutcome.Caption.get().starts_with("Error trying download firmware: Another program is downloading"));
  EXPECT_EQ(world.screen.boxes()[0].text, form.lblOutcome.Caption.get());
}

TEST_F(DetoursTest, ExitEndsTheProgramInEveryWait) {
  struct Wait {
    const char* name;
    std::function<void(Flow&)> arrange;
    int presses;
  };
  const Wait waits[] = {
      {"reading", [](Flow& flow) { flow.world.unit = nullptr; }, 1},
      {"fetching", [](Flow& flow) { flow.world.fetchTakes = 50 * kSecond; }, 2},
      {"no list", [](Flow& flow) { flow.world.fetched = nullptr; }, 2},
      {"picking", [](Flow&) {}, 2},
      {"programming",
       [](Flow& flow) {
         flow.state.VersionPicked = true;
         flow.world.flash = [&flow] { flow.world.run(50 * kSecond); };
       },
       4},
      {"final check",
       [](Flow& flow) {
         flow.state.VersionPicked = true;
         flow.world.flash = [&flow] { flow.world.unit = nullptr; };
       },
       6},
  };
  for (const Wait& wait : waits) {
    SCOPED_TRACE(wait.name);
    Flow flow;
    flow.state.PortChosen = true;
    wait.arrange(flow);
    flow.world.open(flow.form, true, true);
    for (int press = 1; press < wait.presses; ++press) {
      flow.world.click(flow.form.btnNext);
    }
    flow.world.clickLater(10 * kSecond, flow.form.cmdQuit);
    EXPECT_THROW(flow.world.click(flow.form.btnNext), ProgramEnded);
  }
}

TEST_F(DetoursTest, TheDriverTakesOneProcessorACallAndNoneWhenNoneIsSelected) {
  form.Load();
  form.Check5.Value = 1;
  form.Check2.Value = 1;
  for (const char* page : {"1", "2", "3"}) {
    world.wireless.UpdateReceiver();
    EXPECT_EQ(form.lblPage.Caption, page);
  }
  EXPECT_THAT(asked(), ElementsAre("flash 0", "flash 4"));
}

TEST_F(DetoursTest, APortThatIsLostLeadsToRecoveryAtOnceAndRecoveryCanEndTheProgram) {
  state.PortChosen = true;
  world.unit = nullptr;
  world.open(form, false, true);
  world.after(3 * kSecond, [&] { world.frmVersion.Timer1.stop(); });  // the adapter is pulled
  state.ErrorText = "Error: the port has gone";                       // told by the readout
  world.after(3500 * kMillisecond, [&] { EXPECT_EQ(form.lblOutcome.Caption, "Error: the port has gone"); });
  world.clickLater(4 * kSecond, world.frmRecover.btnExit);
  EXPECT_THROW(world.click(form.btnNext), ProgramEnded);
}

}  // namespace
}  // namespace firmlane::test
