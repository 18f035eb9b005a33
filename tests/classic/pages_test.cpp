#include "classic_fixture.h"

namespace firmlane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kBackToStart =
    "Welcome to the Tolvex Firmlane!\r\rThis Wizard will download the latest firmware and software from Tolvex and install your "
    "choices on your computer and Wireless Receiver";

constexpr const char* kConverted = "convert, Converting Flash file, please wait...";

class PagesTest : public ClassicTest {
 protected:
  void product(CommandButton& button) {
    next();
    click(button);
  }
  [[nodiscard]] std::string top() const { return form1_.lblTop.Caption; }
};

TEST_F(PagesTest, NextWaitsForAListOnItsWay) {
  product(form1_.VRColdButton);
  next();
  EXPECT_TRUE(form1_.Timer1.enabled());
  EXPECT_EQ(form1_.Timer1.interval(), 100);
  fetching_ = true;
  next();
  EXPECT_EQ(state_.WizardPage, 1);
  EXPECT_THAT(log_, ElementsAre("clear urls", "firmware list"));
  EXPECT_TRUE(world_.screen.boxes().empty());
  fetching_ = false;
  state_.CatalogueReady = true;
  form1_.List1.AddItem("V1");
  form1_.lblStatus.Show();
  next();
  EXPECT_EQ(state_.WizardPage, 2);
  EXPECT_FALSE(form1_.lblConnect.Visible || form1_.lblStatus.Visible || form1_.ProgressBar1.Visible);
}

TEST_F(PagesTest, WhileSomethingComesDownTheBarMovesAndNextIsDead) {
  world_.screen.answerOthers();
  form1_.List1.AddItem("V1");
  form1_.List1.ListIndex = 0;
  const auto shown = [this] { return form1_.List1.Visible || form1_.ProgressBar1.Visible || form1_.lblProgressInfo.Visible; };
  const auto showAll = [this] {
    for (Control* control : std::initializer_list<Control*>{&form1_.List1, &form1_.ProgressBar1, &form1_.lblProgressInfo}) {
      control->Show();
    }
  };
  world_.screen.onBox = [&](const MessageBox&) { EXPECT_FALSE(shown()) << "under the question for release notes"; };
  for (const std::int16_t page : {std::int16_t{3}, std::int16_t{22}}) {
    state_.WizardPage = page;
    form1_.Timer1.stop();
    showAll();
    if (page == 3) {
      form1_.ProgressBar1.Hide();
    }
    next();
  }
  EXPECT_THAT(log_, ElementsAre("firmware", "release notes", "software"));
  state_.ProductCode = "WS";  // at the production line
  state_.WizardPage = 4;
  showAll();
  next();
  EXPECT_FALSE(shown());
  EXPECT_EQ(top(),
            "If you are ready to update the firmware in your receiver now, click on Next\r\rOtherwise, click on Exit or More "
            "Options");
}

TEST_F(PagesTest, TheFirstTaskPageComesBackAsItWasFromEveryStateOfAFetch) {
  form1_.Option2(0).Show();
  form1_.Option2(1).Show();
  product(form1_.LWXButton);
  EXPECT_FALSE(form1_.Option2(0).Visible || form1_.Option2(1).Visible);
  const auto visible = [this] {
    std::vector<std::string> names;
    for (const Control* control : form1_.controls()) {
      if (control->Visible && control->frame() == nullptr) {
        names.push_back(control->name());
      }
    }
    return names;
  };
  const std::vector<std::string> first = visible();
  const std::string text = top();
  state_.CatalogueReady = true;
  state_.AutoDriving = true;
  for (int presses = 1; presses <= 5; ++presses) {
    SCOPED_TRACE(presses);
    form1_.List1.ListIndex = -1;
    world_.screen.answerOthers();
    for (int press = 0; press < presses; ++press) {
      form1_.Command3.Click();  // as a wizard presses it
      form1_.lblStatus.Show();
      form1_.lblProgressInfo.Show();
      form1_.Command3.Disable();
      form1_.List1.AddItem("V1");
      form1_.lblOutcome.tell(OutcomeKind::Failure, "no list");
      form1_.List1.ListIndex = form1_.List1.Visible ? 0 : -1;
    }
    form1_.Option1(2).Value = true;
    engine_.returnToFirstTaskPage();
    form1_.Option1(3).Hide();
    EXPECT_EQ(form1_.Option1.selected(), 0);
    EXPECT_EQ(visible(), first);
    EXPECT_EQ(top(), text);
    EXPECT_EQ(state_.WizardPage, 0);
    EXPECT_TRUE(form1_.Command3.Enabled);
    EXPECT_FALSE(form1_.Timer1.enabled());
  }
}

TEST_F(PagesTest, APageWithoutAHandlerChangesOnlyItsNumberOnScreen) {
  const std::string before = top();
  state_.WizardPage = 8;
  form1_.lblOutcome.tell(OutcomeKind::Good, "done");
  next();
  EXPECT_FALSE(form1_.lblOutcome.Visible) << "the user has read it";
  EXPECT_EQ(form1_.lblPage.Caption.get(), "8");
  EXPECT_EQ(top(), before);
  EXPECT_EQ(state_.WizardPage, 8);
}

TEST_F(PagesTest, NextLeavesANumberThatIsOnItsWayAlone) {
  state_.SerialOnly = true;
  for (const std::int16_t step : {std::int16_t{0}, std::int16_t{2}, std::int16_t{4}}) {
    state_.WizardPage = 7;
    state_.SerialStep = step;
    next();
    EXPECT_EQ(state_.SerialStep, step == 4 ? 4 : step + 1);
  }
  EXPECT_THAT(log_, ElementsAre("serial number"));
  state_.FactoryBuild = state_.FactoryFirstPass = true;
  next();
  EXPECT_FALSE(state_.SerialOnly) << "the first unit gets its firmware first";
}

TEST_F(PagesTest, AUserWhoClosesThePortWindowStaysOnThePage) {
  state_.ProductCode = "VC";
  state_.WizardPage = 5;
  world_.after(kSecond, [this] { world_.host.close(world_.frmPort); });
  next();
  EXPECT_EQ(state_.WizardPage, 5);
  EXPECT_FALSE(world_.frmPort.Visible);
  EXPECT_FALSE(form1_.btnSN.Visible || form1_.btnMic.Visible) << "not the factory's build";

  state_.WizardPage = 0;
  state_.OldVelarc = true;
  form1_.Option1(3).Value = true;
  world_.after(kSecond, [this] { world_.host.close(world_.frmPort); });
  next();
  EXPECT_EQ(state_.WizardPage, 0);
  EXPECT_FALSE(world_.frmVersion.Loaded);
}

TEST_F(PagesTest, NextWhileThePortWindowIsUpOnlyBringsItForward) {
  state_.ProductCode = "VC";
  state_.WizardPage = 5;
  world_.after(kSecond, [this] {
    world_.frmAbout.Show();
    world_.host.click(form1_.Command3);
  });
  world_.after(1500 * kMillisecond, [this] { EXPECT_EQ(world_.host.onScreen().front(), &world_.frmPort); });
  world_.after(2 * kSecond, [this] {
    state_.PortChosen = true;
    world_.host.close(world_.frmPort);
  });
  next();
  EXPECT_EQ(state_.WizardPage, 6);
}

TEST_F(PagesTest, MoreOptionsLeavesThePageThatWaitsForAPort) {
  state_.ProductCode = "WS";
  state_.WizardPage = 5;
  form1_.Command1.Show();
  world_.after(kSecond, [this] { form1_.lblOutcome.tell(OutcomeKind::Failure, "no image"); });
  world_.after(kSecond, [this] { world_.host.click(form1_.Command1); });
  next();
  EXPECT_EQ(state_.WizardPage, 0);
  EXPECT_EQ(top(), kBackToStart);
  EXPECT_FALSE(form1_.frmUC.Visible || world_.frmPort.Loaded || form1_.lblOutcome.Visible);
}

TEST_F(PagesTest, TheVersionWindowStartsWithItsFlagsCleared) {
  state_.PortChosen = true;
  state_.OldVelarc = true;
  state_.ProductCode = "VC";
  state_.WizardPage = 0;
  form1_.Option1(3).Value = true;
  state_.VersionsComplete = state_.SerialRead = state_.GotId = state_.GetVersionsSent = state_.VersionsRead = true;
  bool cleared = false;
  world_.frmVersion.OnLoad = [&] {
    cleared = !(state_.VersionsComplete || state_.SerialRead || state_.GotId || state_.GetVersionsSent || state_.VersionsRead);
  };
  world_.after(kSecond, [this] {
    EXPECT_EQ(world_.host.click(form1_.Command3), "blocked by frmVersion");
    world_.host.close(world_.frmVersion);
  });
  next();
  EXPECT_TRUE(cleared);
  EXPECT_EQ(state_.WizardPage, 0);
}

TEST_F(PagesTest, TheTargetFollowsProductAndProcessor) {
  struct Case {
    const char* product;
    bool older;
    std::array<const char*, 5> targets;
  };
  for (const Case& c : {Case{"VC", false, {"NewHubFlash", "DSPFlash", "Front1Flash", "Front2Flash", "OldVRCFlash"}},
                        Case{"VC", true, {"OldVRCFlash", "OldVRCFlash", "OldVRCFlash", "OldVRCFlash", "OldVRCFlash"}},
                        Case{"WS", false, {"NewHubFlash", "DSPFlash", "RF1Flash", "RF2Flash", "FrontFlash"}}}) {
    for (int i = 0; i < 5; ++i) {
      log_.clear();
      state_.FlashTarget.clear();
      state_.FrontImage = "48654865";
      state_.ProductCode = c.product;
      state_.OldVelarc = c.older;
      state_.WizardPage = 6;
      form1_.Option4(i).Value = true;
      form1_.lblTop.Caption = "before";
      form1_.Timer1.start(100);  // of a fetch that the user has left
      onFlash_ = [this] { EXPECT_FALSE(form1_.Timer1.enabled()); };
      next();
      EXPECT_EQ(log_.back(), std::string("flash ") + c.targets.at(static_cast<std::size_t>(i)));
      EXPECT_EQ(top(), std::string(c.product) == "VC" && !c.older
                           ? "before"
                           : "Please turn on the power switch on your Receiver now\r\rWaiting for a Receiver reset...");
    }
  }
}

TEST_F(PagesTest, ARunThatCannotBeginIsToldAndLeavesTheButtonsLive) {
  world_.screen.answerOthers();
  state_.ProductCode = "WS";
  state_.WizardPage = 6;
  form1_.Option4(0).Value = true;
  onFlash_ = [this] {
    form1_.lblProgressInfo.Show();
    throw Failure(2, "No such port");
  };
  next();
  EXPECT_FALSE(form1_.lblProgressInfo.Visible || form1_.ProgressBar1.Visible);
  EXPECT_EQ(form1_.lblOutcome.Caption, "No such port");
  EXPECT_EQ(state_.WizardPage, 6) << "Next tries again";
  EXPECT_EQ(world_.screen.boxes().back().text, "Error: No such port (#2)");
  EXPECT_EQ(world_.screen.boxes().back().icon, MessageIcon::Critical);
  EXPECT_EQ(state_.ErrorText, "Error: No such port (#2)");
  EXPECT_TRUE(form1_.Command3.Enabled);
  EXPECT_FALSE(form1_.ProgressBar1.Visible);
  EXPECT_TRUE(state_.TimedOut) << "an auto wizard must not tick the processor off";
}

TEST_F(PagesTest, TheSecondHalfOfADoubleClickStartsNoSecondRun) {
  state_.ProductCode = "WS";
  state_.FrontImage = "48654865";
  state_.WizardPage = 6;
  form1_.Option4(4).Value = true;
  EXPECT_EQ(world_.host.click(form1_.Command3), std::nullopt);
  next();
  EXPECT_EQ(world_.frmAuto.lblReset.Caption, "Turn off your receiver and turn it back on to continue");
  EXPECT_THAT(log_, ElementsAre(kConverted, "flash FrontFlash"));
}

TEST_F(PagesTest, AFrontPanelWithoutAnImageIsNotErased) {
  struct Case {
    const char* product;
    int option;
  };
  velarcFrontReady_ = false;
  state_.DebugView = true;
  for (const Case& c : {Case{"WS", 4}, Case{"VC", 2}, Case{"VC", 3}}) {
    log_.clear();
    state_.ProductCode = c.product;
    state_.TimedOut = false;
    state_.WizardPage = 6;
    form1_.Option4(c.option).Value = true;
    next();
    EXPECT_THAT(log_, ElementsAre(std::string(c.product) == "WS" ? kConverted : "load Velarc front"));
    EXPECT_TRUE(state_.TimedOut);
    EXPECT_EQ(state_.WizardPage, 5);
    EXPECT_THAT(top(), testing::StartsWith("If you are ready to Update")) << "nothing waits for the unit";
    EXPECT_THAT(form1_.lblOutcome.Caption.get(), testing::StartsWith("There is no image to program"));
  }
  const FrmDBUG& view = world_.frmDBUG;
  EXPECT_EQ(view.lblStage.Caption.get() + ", " + view.lblBytes.Caption.get() + ", " + view.lblErrors.Caption.get(),
            "Waiting for Receiver response, 0, Ready to start programming front");
}

}  // namespace
}  // namespace firmlane::test
