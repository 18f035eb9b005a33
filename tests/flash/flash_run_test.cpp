#include "flash/silence_limit.h"
#include "flash/targets.h"
#include "flash_world.h"

namespace firmlane::test {
namespace {

using FlashRunTest = FlashTest;

constexpr const char* kErasing = "Connected to R";
constexpr const char* kErasingVelarc = "Connected to V";
constexpr const char* kSending = "FLASH memory has been erased";
constexpr const char* kSent = "Finished sending";
constexpr const char* kStopped = "The unit has stopped responding.";

TEST_F(FlashRunTest, EachProcessorGetsItsLinkItsCommandAndItsImage) {
  struct Case {
    const char* product;
    const char* target;
    int announces;
    const char* want;
    const char* file;
    std::size_t wire;  // bytes that 300 of the file become
    int baud = 9600;
    bool legacy = false;
    bool vrc2 = false;  // left by a Velarc, or by a stray report on the line
  };
  for (const Case& c : {Case{"WS", "DSPFlash", 1, "02 00 00 00 1E 01 1F 3E 3E", "wls.bin", 302},
                        {"WS", "NewHubFlash", 32, "02 00 00 00 1E 21 3F 3E 3E", "HUBSL.s19", 300},
                        {"WS", "NewHubFlash", 32, "02 00 00 00 1E 21 3F 3E 3E", "HUBSL.s19", 300, 9600, false, true},
                        {"WS", "RF1Flash", 48, "02 00 00 00 1E 30 4E 3E 3E", "RFSL.s19", 300},
                        {"WS", "RF2Flash", 64, "02 00 00 00 1E 40 5E 3E 3E", "RFSL.s19", 300},
                        {"VC", "DSPFlash", 1, "02 00 00 00 1E 01 1F 3E 3E", "vrc.bin", 602},
                        {"VC", "OldVRCFlash", 1, "02 00 00 00 1E 01 1F 3E 3E", "vrc.bin", 602, 19200},
                        {"VC", "DSPFlash", 1, "02 00 00 00 1E 01 1F 3E 3E", "vrc.bin", 602, 19200, true},
                        {"VC", "DSPFlash", 6, "02 00 00 00 1E 01 1F 3E 3E", "vrc2.bin", 302},
                        {"VC", "NewHubFlash", 37, "02 00 00 00 1E 21 3F 3E 3E", "vrc2hub.s19", 300}}) {
    for (const char* other : {"wls.bin", "HUBSL.s19", "RFSL.s19", "vrc.bin", "vrc2.bin", "vrc2hub.s19"}) {
      image(other, 10);
    }
    image(c.file, 300);
    state_.LegacyLink = c.legacy;
    state_.UnitIsVrc2 = c.vrc2;
    fly(c.product, c.target, {.announces = c.announces, .image = c.wire, .baud = c.baud});
    EXPECT_EQ(loader_.wanted, c.want) << c.target;
    EXPECT_EQ(loader_.image.size(), c.wire) << c.file;
    EXPECT_EQ(loader_.handshake, std::string(c.file).ends_with(".s19") ? Handshake::Rts : Handshake::None) << c.file;
    EXPECT_EQ(ending(), "3 page 7 -timedout -port +next -watchdog -timer1 +bar") << c.product << c.target;
    EXPECT_TRUE(receivePath_.FlashSucceeded);
    EXPECT_FALSE(receivePath_.ExpectFrameEnd);
    EXPECT_EQ(linkFor(state_).outBuffer, c.target == std::string("OldVRCFlash") ? 0 : 8192);
    EXPECT_EQ(outcome(), nameOf(ProcessorState::Done)) << c.target;
  }
}

TEST_F(FlashRunTest, WhatAnAdapterStillHoldsAndHowItGathersBytesChangesNothing) {
  const Bytes stale = bytes("02 00 02 2C 02 00 00 02 1F 00 00 00 02 00 00 53 80");  // a late answer to an earlier question
  image("wls.bin", 300);
  image("RFSL.s19", 300);
  int opens = 0;
  wire_.changed = [&] {
    if (std::exchange(opens, wire_.opens()) != wire_.opens()) {
      world_.after(0, [&] { wire_.deliver(stale); });  // the flush of the opening came too early for them
    }
  };
  world_.screen.onChange = [&](Control& control) {
    if (&control == &form1_.ProgressBar1 && !supervision_.Sending && !form1_.Timer1.enabled()) {
      receivePath_.RxBuffer = bytes("02 02 02");  // came while an answer was taken
    }
  };
  for (const Micros latency : {Micros{0}, kMillisecond, 16 * kMillisecond, 60 * kMillisecond}) {
    for (const auto& [target, announces, wire] :
         {std::tuple{"DSPFlash", 1, 302U}, {"RF1Flash", 48, 300U}, {"FrontFlash", 80, 0U}}) {
      wire_.latency = latency;
      wire_.deliver(stale);
      receivePath_.RxBuffer = stale;  // as a run that broke off has left it
      form1_.ProgressBar1.Value = 50;
      frontImage(64);
      fly("WS", target,
          {.announces = announces, .image = wire, .batchAnswers = wire > 0 ? std::vector<int>() : std::vector{86, 87, 87, 82}});
      EXPECT_EQ(ending(), "3 page 7 -timedout -port +next -watchdog -timer1 +bar") << target << latency;
    }
  }
  wire_.changed = nullptr;
}

TEST_F(FlashRunTest, WhileAUnitErasesTheBarMovesAtItsPace) {
  for (const auto& [product, target, announces, interval, bar] :
       {std::tuple{"WS", "DSPFlash", 1, 700, 10}, {"WS", "RF1Flash", 48, 50, 45}, {"VC", "DSPFlash", 6, 1500, 0}}) {
    std::vector<int> seen;
    const auto look = [&] {
      seen = {form1_.Timer1.interval(),  form1_.Timer1.enabled(),  form1_.ProgressBar1.Visible,
              form1_.ProgressBar1.Value, frmAuto_.Progress1.Value, form1_.Command3.Enabled,
              state_.ImageDone,          state_.ProgressPercent};
    };
    state_.ProgressPercent = 77;
    state_.ImageDone = true;
    world_.after(2 * kSecond, [&] {
      form1_.ProgressBar1.Hide();
      form1_.ProgressBar1.Value = 30;
      frmAuto_.Progress1.Value = 31;
      supervision_.BarValue = 50;
      form1_.Command3.Enable();
      look();
    });
    world_.after(1 * kSecond + 3500 * kMillisecond, [&] {
      EXPECT_EQ(seen, (std::vector<int>{1500, 0, 0, 30, 31, 1, 0, 0})) << "before the unit is on";
      look();
    });
    fly(product, target, {.announces = announces, .erased = {}});
    EXPECT_EQ(seen, (std::vector<int>{interval, 1, 1, bar, bar, 0, 0, 0})) << product << target;
    EXPECT_EQ(form1_.Timer1.interval(), 100);
  }
}

TEST_F(FlashRunTest, SuccessCongratulatesAndAdvancesTheOverallProgressTwice) {
  struct Case {
    const char* product;
    bool inVrc;
    bool factory;
    const char* text;
  };
  image("wls.bin", 10);
  image("vrc2.bin", 10);
  state_.UnitIsVrc2 = true;
  std::vector<std::string> tasks;
  const auto pages = world_.screen.onChange;
  world_.screen.onChange = [&](Control& control) {
    pages(control);
    if (control.name() == "lblReset" && static_cast<Label&>(control).Visible) {
      tasks.push_back(static_cast<Label&>(control).Caption);
    }
  };
  for (const Case& c : {Case{"WS", false, false,
                             "Congratulations!\rYou have successfully upgraded the firmware in your Receiver!\r\rClick Next to "
                             "continue or click Exit to quit"},
                        {"VC", true, false,
                         "Congratulations!\rYou have successfully upgraded the firmware in your Vel-Arc!\r\rClick Next to "
                         "continue or click Exit to quit"},
                        {"WS", false, true, "The Flash Memory has been Programmed, Click 'Next' to Program the Serial Number"}}) {
    AutoForm& wizard = c.inVrc ? static_cast<AutoForm&>(world_.frmVRCAuto) : frmAuto_;
    AutoForm& other = c.inVrc ? static_cast<AutoForm&>(frmAuto_) : world_.frmVRCAuto;
    for (AutoForm* form : {&wizard, &other}) {
      form->prgTotal.Max = 9;
      form->prgTotal.Value = 4;
      form->lblTotal.Caption = "Overall Progress";
      form->lblReset.Show();
    }
    state_.InVrcAutoWizard = c.inVrc;
    state_.FactoryBuild = c.factory;
    tasks.clear();
    world_.after(4 * kSecond - kMillisecond, [&] {
      form1_.ProgressBar1.Value = 30;
      supervision_.BarValue = 30;
    });
    fly(c.product, "DSPFlash", {.image = 12});
    EXPECT_EQ(top(), c.text);
    EXPECT_THAT(tasks, testing::ElementsAre("Erasing Flash Memory...", "Programming Flash Memory..."));
    const Page& sending = page(kSending, pages_.back());
    EXPECT_EQ(std::tuple(sending.bar, sending.barValue, sending.barMoves), std::tuple(0, 0, false));
    EXPECT_EQ(wizard.lblTotal.Caption.get(), "Overall Progress (Step 7 of 10)");
    EXPECT_EQ(other.lblTotal.Caption.get(), "Overall Progress");
    EXPECT_FALSE(wizard.lblReset.Visible);
    EXPECT_TRUE(other.lblReset.Visible);
    EXPECT_FALSE(form1_.lblProgressInfo.Visible);
  }
}

TEST_F(FlashRunTest, AReportedFailureIsTold) {
  image("wls.bin", 10);
  image("vrc.bin", 10);
  for (const auto& [product, wire, text] :
       {std::tuple{"WS", 12U, "Failure programming Receiver FLASH"}, {"VC", 22U, "Failure programming Vel-Arc FLASH"}}) {
    fly(product, "DSPFlash", {.image = wire, .refuses = true});
    EXPECT_EQ(world_.screen.boxes().back().text, text);
    EXPECT_EQ(ending(), "3 page 0 -timedout -port +next -watchdog -timer1 +bar");
    EXPECT_FALSE(receivePath_.FlashSucceeded || receivePath_.ExpectFrameEnd);
    EXPECT_EQ(outcome(), nameOf(ProcessorState::Failed));
    EXPECT_EQ(top(),
              "Your unit may require a successful FLASH upgrade to function properly.\rPlease check your connections and try to "
              "run the Wizard again.");
  }
}

TEST_F(FlashRunTest, ASilentReceiverHasASecondChance) {
  for (CheckBox* check : frmAuto_.checks()) {
    check->Value = 1;
  }
  world_.screen.answerNext(MessageButton::OK, 60 * kSecond);
  fly("WS", "RF2Flash", {.powerOn = {}});
  ASSERT_EQ(world_.screen.boxes().size(), 1U);
  EXPECT_EQ(
      world_.screen.boxes()[0].text,
      "Your receiver may have corrupt flash memory.\r\n\r\nPlease turn it off, click OK and then turn it back on to try again.");
  EXPECT_EQ(seconds("", "Firmlane was unable"), 20 + 60 + 20);
  const std::string text =
      "Firmlane was unable to connect to your unit\r\n\r\nPlease check your connections and make sure that there is only one "
      "unit "
      "connected\r\nClick Next to try again or click Exit to quit";
  EXPECT_EQ(top(), text);
  EXPECT_EQ(frmAuto_.lblMain.Caption.get(), text);
  EXPECT_EQ(ending(), "0 page 5 +timedout -port +next -watchdog -timer1 -bar");
  EXPECT_TRUE(state_.LegacyLink);
  EXPECT_EQ(hex(wire_.sent()), "");
  for (CheckBox* check : frmAuto_.checks()) {
    EXPECT_EQ(check->Value.get(), 0);
  }
  fly("WS", "RF2Flash", {.powerOn = {}});
  EXPECT_EQ(world_.screen.boxes().size(), 1U) << "a receiver on the older link has no second chance";
  EXPECT_EQ(seconds("", ""), 20);
}

TEST_F(FlashRunTest, TheSecondChanceNamesTheProcessorByItsNumber) {
  for (const auto& [target, number] : {std::pair{"NewHubFlash", "1"},
                                       {"DSPFlash", "2"},
                                       {"RF1Flash", "3"},
                                       {"RF2Flash", "4"},
                                       {"FrontFlash", "5"},
                                       {"OldVRCFlash", ""}}) {
    std::string main;
    world_.after(25 * kSecond, [&] { main = frmAuto_.lblMain.Caption; });
    frmAuto_.lblTotal.Show();
    frmAuto_.prgTotal.Show();
    form1_.ProgressBar1.Value = 40;
    state_.LegacyLink = false;
    world_.mainPort.setSettings("19200,N,8,1");
    fly(*number == '\0' ? "" : "WS", target, {.powerOn = {}});
    EXPECT_EQ(main, std::string("Now Programming Processor ") + number);
    EXPECT_FALSE(frmAuto_.lblTotal.Visible || frmAuto_.prgTotal.Visible) << target;
    EXPECT_EQ(form1_.ProgressBar1.Value, 0);
    EXPECT_EQ(world_.mainPort.lineSettings().baud, 9600) << target;
  }
}

TEST_F(FlashRunTest, EachWaitEndsInItsTime) {
  struct Case {
    const char* product;
    const char* target;
    std::size_t size;  // of the image file; none when 0
    Script script;
    const char* from;
    bool vrc2;
    int seconds;
    const char* ending = "2 page 5 +timedout -port +next -watchdog -timer1 -bar";
  };
  const auto never = std::optional<Micros>();
  const char* noErase = "1 page 5 +timedout -port +next -watchdog -timer1 -bar";
  const Case cases[] = {
      {"VC", "DSPFlash", 10, {.powerOn = never}, "", true, 20, "0 page 5 +timedout -port +next -watchdog -timer1 -bar"},
      {"WS", "RF1Flash", 10, {.announces = 48, .erased = never}, kErasing, false, 5, noErase},
      {"WS", "RF2Flash", 10, {.announces = 64, .erased = never}, kErasing, false, 5, noErase},
      {"WS", "NewHubFlash", 10, {.announces = 32, .erased = never}, kErasing, false, 5, noErase},
      {"WS", "FrontFlash", 10, {.announces = 80, .erased = never}, kErasing, false, 5, noErase},
      {"WS", "DSPFlash", 10, {.erased = never}, kErasing, false, 80, noErase},
      {"VC", "NewHubFlash", 10, {.announces = 37, .erased = never}, kErasingVelarc, true, 80, noErase},
      {"VC", "Front1Flash", 10, {.announces = 53, .erased = never}, kErasingVelarc, true, 80, noErase},
      {"WS", "DSPFlash", 10, {.verdict = never}, kSent, false, 5},
      {"VC", "DSPFlash", 10, {.announces = 6, .verdict = never}, kSent, true, 5},
      {"VC", "DSPFlash", 10, {.verdict = never}, kSent, false, 10},
      {"WS", "RF1Flash", 10, {.announces = 48, .verdict = never}, kSent, false, 60},
      {"WS", "DSPFlash", 95'000, {.verdict = never}, kSent, false, 0},
      {"VC", "OldVRCFlash", 180'000, {.verdict = never, .baud = 19200}, kSent, false, 0},
      // Without a file nothing is sent, and the limit of the stream is the one in force.
      {"WS", "DSPFlash", 0, {}, kSending, false, 180},
      {"WS", "RF1Flash", 0, {.announces = 48}, kSending, false, 180},
      {"VC", "OldVRCFlash", 0, {.announces = 1, .baud = 19200}, "Connected to unit", true, 180},
  };
  for (const Case& c : cases) {
    for (const char* name : {"wls.bin", "hubSL.s19", "RFSL.s19", "vrc.bin", "vrc2.bin", "vrc2hub.s19"}) {
      std::filesystem::remove(world_.directory.path() / name);
      if (c.size > 0) {
        image(name, c.size);
      }
    }
    state_.UnitIsVrc2 = c.vrc2;
    Script script = c.script;
    for (std::optional<Micros>* span : {&script.powerOn, &script.erased}) {
      if (*span) {
        **span += 400 * kMillisecond;  // a limit begins with its wait, not with the clock of the wait before
      }
    }
    fly(c.product, c.target, script);
    // Behind an image the limit counts in the ticks that watched it.
    EXPECT_NEAR(seconds(c.from, kStopped), c.seconds, c.from == std::string(kSent) ? 0.5 : 0.01)
        << c.product << c.target << c.size;
    EXPECT_EQ(ending(), c.ending) << c.product << c.target;
    EXPECT_EQ(top(), "The unit has stopped responding. Please try programming the FLASH again.\r\rClick Next to try again");
    EXPECT_EQ(form1_.ProgressBar1.Value.get(), 0);
    EXPECT_EQ(outcome(), nameOf(ProcessorState::Failed)) << c.product << c.target;
    EXPECT_TRUE(state_.FlashPhase != 2 || !form1_.lblProgressInfo.Visible) << c.product << c.target;
  }
  EXPECT_EQ(world_.screen.boxes().size(), 2U) << "one for each missing image";
}

TEST_F(FlashRunTest, AnEraseReportIsFoundBehindAStrayStartByte) {
  image("RFSL.s19", 10);
  world_.after(4 * kSecond, [&] { wire_.deliver(bytes("02 02 00 00 00 1F 31 50 3E")); });
  fly("WS", "RF1Flash", {.announces = 48, .erased = {}, .image = 10});
  EXPECT_EQ(ending(), "3 page 7 -timedout -port +next -watchdog -timer1 +bar");
}

TEST_F(FlashRunTest, ARunWithoutAPhaseThatSaysAnythingStillEndsAtRest) {
  image("RFSL.s19", 10);
  world_.after(6 * kSecond, [&] {
    EXPECT_EQ(supervision_.activity.now().limit, kSecond * SilenceLimit::kSeconds);
    state_.FlashPhase = 0;
    world_.queue.post([] {});
  });
  fly("WS", "RF1Flash", {.announces = 48});
  EXPECT_EQ(ending(), "0 page -2 -timedout -port -next -watchdog -timer1 +bar");
  EXPECT_EQ(frmAuto_.lblOutcome.Kind.get(), "failure");
}

TEST_F(FlashRunTest, APortThatIsOpenIsLeftAlone) {
  world_.mainPort.setNumber(3);
  world_.mainPort.Open();
  state_.WizardPage = 6;
  world_.screen.onBox = [this](const MessageBox& box) { EXPECT_EQ(frmAuto_.lblOutcome.Caption.get(), box.text); };
  fly("WS", "DSPFlash", {});
  EXPECT_EQ(world_.screen.boxes().back().text,
            "Your Serial Port is already open, please close your remote software if it is open and try again");
  EXPECT_EQ(ending(), "0 page 6 -timedout +port -next -watchdog -timer1 +bar");
}

TEST_F(FlashRunTest, APulledAdapterEndsTheRunAndItsProcessorIsStillToBeDone) {
  for (const auto& [seconds, phase] : {std::pair{2, "0"}, {3, "1"}}) {
    wire_.openFailure.reset();
    world_.after(seconds * kSecond + kSecond / 2, [this] { wire_.vanish(); });
    EXPECT_THROW(fly("WS", "DSPFlash", {.erased = {}}), Failure);
    EXPECT_EQ(ending(), std::string(phase) + " page 5 +timedout -port +next -watchdog -timer1 -bar");
  }
}

TEST_F(FlashRunTest, ARunIsRefusedWithoutItsImage) {
  for (const auto& [product, older, target, file] : {std::tuple{"WS", false, "NewHubFlash", "HUBSL.s19"},
                                                     {"WS", false, "DSPFlash", "wls.bin"},
                                                     {"WS", false, "RF2Flash", "RFSL.s19"},
                                                     {"VC", false, "NewHubFlash", "vrc2hub.s19"},
                                                     {"VC", false, "DSPFlash", "vrc2.bin"},
                                                     {"VC", true, "OldVRCFlash", "vrc.bin"}}) {
    state_.ProductCode = product;
    state_.OldVelarc = older;
    state_.FlashTarget = target;
    EXPECT_THROW(processors_.requireImage(), Failure) << file;
    image(file, 0);
    EXPECT_THAT([this] { processors_.requireImage(); }, testing::ThrowsMessage<Failure>(std::string(file) + " is empty"));
    image(file, 1);
    EXPECT_NO_THROW(processors_.requireImage()) << file;
  }
  state_.ProductCode = "WS";
  state_.FlashTarget = "FrontFlash";
  EXPECT_NO_THROW(processors_.requireImage()) << "its image is loaded, not sent from the file";
}

}  // namespace
}  // namespace firmlane::test
