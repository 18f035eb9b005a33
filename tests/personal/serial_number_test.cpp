#include <gmock/gmock.h>

#include "factory_world.h"
#include "faulty_disk.h"

namespace firmlane::test {
namespace {

using SerialNumberTest = FactoryTest;

constexpr const char* kPresetMessage = "02 00 00 00 0A 00 00 0A 80";

TEST_F(SerialNumberTest, TwoUnitsInARowGetTwoNumbersAndTheFileIsAheadOfEach) {
  writeNumber(123456);
  std::vector<std::string> fileWhenHeard;
  unit_.onMessage = [&] {
    fileWhenHeard.push_back(file());
    EXPECT_EQ(form1_.Timer3.interval(), 100);
  };
  for (int i = 0; i < 2; ++i) {
    runSerial();
    EXPECT_EQ(form1_.lblResetSerial.Caption.get(), "Serial Number Programmed!");
    world_.run(kSecond);
    EXPECT_EQ(form1_.lblResetSerial.Caption.get(), "Serial Number Programmed!\r\nPreset 0 Loaded!");
    EXPECT_EQ(state_.SerialStep, 5);
    EXPECT_FALSE(form1_.btnSN.Visible || state_.SerialOnly);
    expectReady();
    next();
    EXPECT_FALSE(state_.GotId || receivePath_.PresetLoaded || preset_.PresetPending || form1_.lblResetSerial.Visible);
    EXPECT_EQ(form1_.lblTop.Caption.get(), "Serial Number and Preset Load Complete");
    EXPECT_TRUE(form1_.btnSN.Visible);
    EXPECT_EQ(state_.WizardPage, 0);
  }
  EXPECT_EQ(unit_.heard, (std::vector<std::string>{"02 00 00 00 27 07 44 40 00 00 00 32 80", kPresetMessage,
                                                   "02 00 00 00 27 07 44 41 00 00 00 33 80", kPresetMessage}));
  EXPECT_EQ(fileWhenHeard, (std::vector<std::string>{"41 E2 01 00", "41 E2 01 00", "42 E2 01 00", "42 E2 01 00"}));
}

TEST_F(SerialNumberTest, TheStepsShowTheirTextsAndControls) {
  writeNumber(77);
  std::vector<std::string> pages;
  const auto look = [&] {
    std::string page = form1_.lblResetSerial.Visible ? form1_.lblResetSerial.Caption.get() : "-";
    for (const Control* control :
         std::initializer_list<Control*>{&form1_.txtNum, &form1_.lblSerial, &form1_.btnSerial, &form1_.frmModel}) {
      page += control->Visible ? " " + control->name() : "";
    }
    pages.push_back(page);
  };
  for (const double seconds : {0.5, 1.5, 2.5}) {
    world_.after(static_cast<Micros>(seconds * kSecond), look);
  }
  runSerial();
  EXPECT_EQ(pages, (std::vector<std::string>{
                       "Programming the Serial Number is the next step.\r\n\r\nPlease cycle the power on the LWX Receiver and\r\n"
                       "click 'Next' when the unit has successfully rebooted",
                       "Now check the Serial Number displayed below\r\nto make sure that it is the one you want\r\nsent to the "
                       "unit. If you need to change it,\r\nClick on 'Edit Number' to adjust it\r\n\r\nClick 'Next' when you are "
                       "finished txtNum lblSerial btnSerial",
                       "- frmModel"}));
  EXPECT_EQ(form1_.txtNum.Text.get(), "77");
}

TEST_F(SerialNumberTest, FileOfAnyKindGivesANumberOrSaysWhyNot) {
  struct Case {
    const char* content;
    std::int32_t number;
  };
  for (const Case& c : {Case{"", 1}, {"05 00 00", 1}, {"05 00 00 00", 5}, {"FF FF FF 7F 09", 2147483647}, {"FE FF FF FF", -2}}) {
    world_.directory.write("sn.wls", bytes(c.content));
    serialFile_.ReadSerialFile();
    EXPECT_EQ(state_.SerialNumber, c.number) << c.content;
    EXPECT_EQ(state_.FileSerial, c.number) << c.content;
  }
  std::filesystem::remove("sn.wls");
  serialFile_.ReadSerialFile();
  EXPECT_EQ(form1_.txtNum.Text.get(), "1");
  for (const std::int32_t number : {-2, 1000000, 2147483647}) {
    state_.SerialNumber = number;
    EXPECT_THROW(serialFile_.reserve(), Failure) << number;
  }
  EXPECT_FALSE(world_.directory.has("sn.wls"));

  std::filesystem::create_directory("sn.wls");
  world_.screen.answerOthers();
  serial_.btnSN_Click();
  ASSERT_EQ(world_.screen.boxes().size(), 1U);
  EXPECT_EQ(world_.screen.boxes()[0].text, "Not a file: sn.wls");
  expectReady();
  EXPECT_TRUE(form1_.lblTop.Visible);
}

TEST_F(SerialNumberTest, ALinkToASharedCounterStaysALinkAndOneThatLeadsNowhereGivesNoNumber) {
  namespace fs = std::filesystem;
  fs::create_directory("share");
  writeNumber(100);
  fs::rename("sn.wls", "share/counter");
  fs::create_symlink("share/counter", "sn.wls");
  runSerial();
  EXPECT_TRUE(fs::is_symlink("sn.wls"));
  EXPECT_EQ(hex(Files::read("share/counter")), "65 00 00 00");
  EXPECT_TRUE(fs::exists("share/counter.lock")) << "stations that share the counter have to meet in one lock";
  next();

  fs::rename("share/counter", "elsewhere");  // the share is not mounted
  world_.screen.answerOthers();
  EXPECT_THROW(serialFile_.ReadSerialFile(), Failure);
  EXPECT_THROW(serialFile_.reserve(), Failure);
  serial_.btnSN_Click();
  EXPECT_EQ(unit_.heard.size(), 2U);
  EXPECT_TRUE(fs::is_symlink("sn.wls"));
  EXPECT_FALSE(fs::exists("share/counter"));
  expectReady();
}

TEST_F(SerialNumberTest, ANumberThatNoReceiverCanTakeIsToldWhenItIsLoadedAndGoesNoFurther) {
  writeNumber(1000000);
  world_.screen.answerOthers();
  std::string told;
  world_.after(kSecond * 3 / 2, [&] { told = form1_.lblOutcome.Caption; });
  for (const double seconds : {1.0, 2.0, 8.0, 9.0}) {
    clickAfter(seconds, form1_.Command3);
  }
  world_.after(5 * kSecond, [&] {
    EXPECT_TRUE(form1_.txtNum.Visible);
    world_.newserial.Show();
    world_.newserial.Text1.Text = "999999";
    world_.newserial.btnOK.Click();
    EXPECT_FALSE(form1_.lblOutcome.Visible);
  });
  serial_.btnSN_Click();
  const std::string words =
      "1000000 cannot be a serial number: a receiver takes numbers from 0 to 999999.{}Please click on 'Edit Number' to change it";
  const auto with = [&](const char* gap) { return std::string(words).replace(words.find("{}"), 2, gap); };
  EXPECT_EQ(told, with(" "));
  ASSERT_EQ(world_.screen.boxes().size(), 1U);
  EXPECT_EQ(world_.screen.boxes()[0].text, with("\r\n\r\n"));
  EXPECT_EQ(unit_.heard.at(0), "02 00 00 00 27 3D 04 3F 00 00 00 27 80");
  EXPECT_EQ(file(), "40 42 0F 00");
}

TEST_F(SerialNumberTest, WhatAnotherStationDoesMeanwhileGivesNoNumberTwice) {
  struct Case {
    const char* what;
    std::function<void()> onNumberPage;
    std::function<void()> onModelPage;
    std::int32_t sent;
    std::int32_t file;
  };
  const auto type = [this](const char* number) {
    return [this, number] {
      world_.newserial.Show();
      world_.newserial.Text1.Text = number;
      world_.newserial.btnOK.Click();
    };
  };
  const auto count = [this](std::int32_t number) { return [this, number] { writeNumber(number); }; };
  const auto both = [](auto first, auto second) {
    return [=] {
      first();
      second();
    };
  };
  const auto nothing = [] {};
  for (const Case& c : std::initializer_list<Case>{
           {"nothing", nothing, nothing, 100, 101},
           {"it takes one", nothing, count(101), 101, 102},
           {"it takes many", nothing, count(150), 150, 151},
           {"an edit up", type("200"), nothing, 200, 201},
           {"it takes the edited one", type("200"), count(201), 201, 202},
           {"it has passed the edit", both(count(300), type("200")), nothing, 300, 301},
           {"an edit taken back in part", both(type("2000"), type("200")), nothing, 200, 201},
           {"an edit taken back", both(type("2000"), type("100")), nothing, 100, 101},
           {"taken back behind its count", both(count(150), both(type("2000"), type("120"))), nothing, 150, 151},
           {"counted on from the edit", both(type("200"), both(count(201), type("150"))), nothing, 201, 202},
           {"a number by hand", type("50"), count(150), 50, 150},
       }) {
    writeNumber(100);
    unit_.heard.clear();
    world_.after(kSecond * 3 / 2, c.onNumberPage);
    world_.after(kSecond * 5 / 2, c.onModelPage);
    runSerial();
    const auto groups = sevenBitGroups(c.sent);
    EXPECT_EQ(unit_.heard.at(0).substr(15, 8), hex(ByteSpan(groups))) << c.what;
    EXPECT_EQ(form1_.txtNum.Text.get(), std::to_string(c.sent)) << c.what;
    serialFile_.ReadSerialFile();
    EXPECT_EQ(state_.FileSerial, c.file) << c.what;
    world_.run(kSecond);
    next();
    EXPECT_FALSE(form1_.lblOutcome.Visible) << c.what;
  }
}

TEST_F(SerialNumberTest, TheUserReadsWhichNumberTheReceiverReallyGetsAndWhoKeepsTheFile) {
  writeNumber(100);
  world_.after(kSecond * 5 / 2, [&] { writeNumber(101); });
  runSerial();
  EXPECT_EQ(form1_.lblOutcome.Caption.get(), "Another station has taken number 100: this receiver gets number 101");
  EXPECT_EQ(form1_.lblOutcome.Kind.get(), "caution");
  next();

  world_.screen.answerOthers();
  const auto other = FileLock::tryTake("sn.wls.lock");
  const Micros begin = world_.time.now();
  runSerial();
  EXPECT_EQ((world_.time.now() - begin) / kSecond, 3 + 5 + 1);
  EXPECT_EQ(world_.screen.boxes().back().text, "Another station keeps sn.wls locked");
  EXPECT_EQ(file(), "66 00 00 00");
  EXPECT_EQ(unit_.heard.size(), 2U);
  expectReady();
  world_.newserial.Show();
  world_.newserial.btnOK.Click();
  EXPECT_EQ(world_.screen.boxes().back().text, "Error: Another station keeps sn.wls locked (#16)");
}

TEST_F(SerialNumberTest, ANumberThatCannotHaveLeftIsGivenBackUnlessAnotherStationHasCountedOn) {
  world_.screen.answerOthers();
  writeNumber(100);
  world_.after(kSecond * 5 / 2, [&] { writeNumber(101); });
  world_.screen.onChange = [&](Control&) {
    if (form1_.txtNum.Text.get() == "101") {
      wire_.vanish();  // the number is taken already
    }
  };
  runSerial();
  EXPECT_TRUE(unit_.heard.empty());
  EXPECT_EQ(file(), "65 00 00 00");
  expectReady();

  serialFile_.ReadSerialFile();
  serialFile_.reserve();
  writeNumber(103);
  serialFile_.giveBack();
  EXPECT_EQ(file(), "67 00 00 00");

  serialFile_.ReadSerialFile();
  serialFile_.reserve();
  state_.SerialNumber = 50;
  serialFile_.reserve();
  serialFile_.giveBack();
  EXPECT_EQ(file(), "68 00 00 00") << "of the unit before";
}

TEST_F(SerialNumberTest, EditedNumbersMoveTheFileUpAndNeverDown) {
  struct Case {
    const char* typed;
    const char* afterOk;
    const char* sent;
    const char* afterRun;
  };
  for (const Case& c : {Case{"200", "C8 00 00 00", "27 00 01 48 00 00 00 70 80", "C9 00 00 00"},
                        {"50", "64 00 00 00", "27 00 00 32 00 00 00 59 80", "64 00 00 00"},
                        {" 100 ", "64 00 00 00", "27 00 00 64 00 00 00 0B 80", "65 00 00 00"}}) {
    writeNumber(100);
    unit_.heard.clear();
    std::string afterOk;
    clickAfter(1, form1_.Command3);
    clickAfter(1.1, form1_.btnSerial);
    world_.after(kSecond * 12 / 10, [&] { world_.host.type(world_.newserial.Text1, c.typed); });
    clickAfter(1.3, world_.newserial.btnOK);
    world_.after(kSecond * 14 / 10, [&] { afterOk = file(); });
    clickAfter(2, form1_.Command3);
    clickAfter(3, form1_.Command3);
    serial_.btnSN_Click();
    EXPECT_EQ(afterOk, c.afterOk) << c.typed;
    EXPECT_EQ(unit_.heard.at(0), std::string("02 00 00 00 ") + c.sent);
    EXPECT_EQ(file(), c.afterRun) << c.typed;
    world_.run(kSecond);
    next();
  }
}

TEST_F(SerialNumberTest, TheEditorStepsRefusesAndIsGoneBeforeTheNumberGoesOut) {
  state_.SerialNumber = 999998;
  editor_.btnSerial_Click();
  NewSerial& form = world_.newserial;
  const auto text = [&] { return form.Text1.Text.get(); };
  form.btnUp.Click();
  form.btnUp.Click();
  EXPECT_EQ(text(), "999999");
  form.Text1.Text = "1";
  form.btnDown.Click();
  form.btnDown.Click();
  EXPECT_EQ(text(), "0");
  world_.screen.answerOthers();
  for (const char* wrong : {"", "12a", "-1", "1000000", "99999999999"}) {
    form.Text1.Text = wrong;
    form.btnOK.Click();
    EXPECT_TRUE(form.Loaded) << wrong;
  }
  EXPECT_EQ(world_.screen.boxes().size(), 5U);
  EXPECT_EQ(state_.SerialNumber, 999998);
  form.btnCancel.Click();
  EXPECT_FALSE(form.Visible);

  writeNumber(5);
  clickAfter(1.5, form1_.btnSerial);
  runSerial();
  EXPECT_FALSE(form.Visible);
}

TEST_F(SerialNumberTest, ReadBackThatDiffersIsTriedAgainUntilItAgrees) {
  writeNumber(100);
  unit_.wrongReadBacks = {99, 0};
  world_.screen.answerOthers(60 * kSecond);
  runSerial();
  world_.run(kSecond);
  ASSERT_EQ(world_.screen.boxes().size(), 2U);
  EXPECT_EQ(world_.screen.boxes()[0].text,
            "Error programming Serial Number\r\n\r\nSent #100, but read back #99\r\n\r\nTrying again");
  EXPECT_EQ(unit_.heard.size(), 4U);
  EXPECT_EQ(wire_.opens(), 3);
  EXPECT_EQ(file(), "65 00 00 00");
  EXPECT_EQ(form1_.lblResetSerial.Caption.get(), "Serial Number Programmed!\r\nPreset 0 Loaded!");
}

TEST_F(SerialNumberTest, ASilentUnitEndsTheProcedureOnNoAndItsNumberIsNotUsedAgain) {
  writeNumber(100);
  unit_.deafTo = 2;
  world_.screen.answerNext(MessageButton::Yes, 90 * kSecond);
  world_.screen.answerNext(MessageButton::No);
  runSerial();
  ASSERT_EQ(world_.screen.boxes().size(), 2U);
  EXPECT_EQ(world_.screen.boxes()[1].text, "No answer from the receiver, try again?");
  EXPECT_EQ(world_.time.now() / kSecond, 3 + 10 + 90 + 1 + 10 + 1);
  EXPECT_EQ(unit_.heard.size(), 2U);
  EXPECT_EQ(file(), "65 00 00 00");
  expectReady();
  EXPECT_TRUE(form1_.btnSN.Visible);
  EXPECT_FALSE(state_.SerialOnly);
  EXPECT_EQ(state_.SerialStep, 0);
  EXPECT_EQ(form1_.lblTop.Caption.get(),
            "No answer from the receiver: number 100 may be in it or not, and no other receiver gets it");
  EXPECT_EQ(form1_.lblOutcome.Caption.get(), form1_.lblTop.Caption.get());
  EXPECT_EQ(form1_.lblOutcome.Kind.get(), "failure");
  // A port that fails on the way to the next number must not bring the old one back.
  wire_.openFailure = Failure(failure_number::kPortInUse, "The port is in use");
  world_.screen.answerNext(MessageButton::OK);
  runSerial();
  EXPECT_EQ(file(), "65 00 00 00");
  wire_.openFailure.reset();
  runSerial();
  EXPECT_EQ(unit_.heard.at(2), "02 00 00 00 27 00 00 65 00 00 00 0C 80");
  EXPECT_EQ(file(), "66 00 00 00");
}

TEST_F(SerialNumberTest, AnAnswerUnderTheQuestionCountsUnlessItDiffersAndTheUserSaysNo) {
  struct Case {
    const char* answer;
    MessageButton button;
    std::size_t heard;
    const char* page;
  };
  const char* right = "02 00 00 64 1F 27 2A 3E 3E";
  const char* wrong = "02 00 00 63 1F 27 29 3E 3E";
  for (const Case& c : {Case{right, MessageButton::No, 2, "Serial Number Programmed!"},
                        {wrong, MessageButton::Yes, 3, "Serial Number Programmed!"},
                        {wrong, MessageButton::No, 1,
                         "The receiver has reported number 99, not number 100: the Serial Number was not programmed"}}) {
    writeNumber(100);
    unit_.deafTo = 1;
    unit_.heard.clear();
    world_.screen.onBox = [&](const MessageBox& box) {
      if (box.buttons == MessageButtons::YesNo) {
        world_.after(kMillisecond, [&] { wire_.send(bytes(c.answer), 57600); });
      }
    };
    world_.screen.answerNext(c.button);
    world_.screen.answerOthers();
    runSerial();
    EXPECT_EQ(unit_.heard.size(), c.heard) << c.page;
    EXPECT_EQ(form1_.lblResetSerial.Visible ? form1_.lblResetSerial.Caption : form1_.lblTop.Caption, c.page);
    EXPECT_EQ(file(), "65 00 00 00");
    if (state_.SerialStep == 5) {
      next();
    }
  }
}

TEST_F(SerialNumberTest, APresetThatFailsLeavesTheNumberTaken) {
  writeNumber(100);
  bool numberHeard = false;
  unit_.onMessage = [&] {
    unit_.deafTo = numberHeard ? 99 : 0;
    numberHeard = true;
    receivePath_.PresetLoaded = unit_.heard.size() == 1;  // of the unit before
  };
  world_.screen.answerNext(MessageButton::Yes);
  world_.screen.answerNext(MessageButton::No);
  runSerial();
  EXPECT_EQ(unit_.heard.size(), 3U);
  EXPECT_EQ(unit_.heard.at(2), kPresetMessage);
  EXPECT_EQ(file(), "65 00 00 00");
  expectReady();
  EXPECT_EQ(form1_.lblTop.Caption.get(),
            "No answer from the receiver: the Serial Number was programmed, but Preset 0 was not loaded");
}

TEST_F(SerialNumberTest, ExitEndsEveryWaitAndNoNumberComesTwice) {
  struct Case {
    double at;
    const char* fileAfter;
  };
  // In the power cycle text, at the number, at the models, waiting for the unit.
  for (const Case& c : {Case{0.5, "64 00 00 00"}, {1.5, "64 00 00 00"}, {2.5, "64 00 00 00"}, {7, "65 00 00 00"}}) {
    writeNumber(100);
    unit_.deafTo = 99;
    state_.SerialStep = 0;
    world_.after(static_cast<Micros>(c.at * kSecond), [&] { world_.queue.post([] { throw ProgramEnded{}; }); });
    for (const double seconds : {1.0, 2.0, 3.0}) {
      if (seconds < c.at) {
        clickAfter(seconds, form1_.Command3);
      }
    }
    EXPECT_THROW(serial_.btnSN_Click(), ProgramEnded) << c.at;
    EXPECT_EQ(file(), c.fileAfter) << c.at;
    world_.mainPort.Close();
    form1_.frmModel.Hide();
    form1_.Command3.Enable();
  }
}

TEST_F(SerialNumberTest, WhatAFlashRunHasLeftDoesNotSpoilTheNextNumber) {
  writeNumber(17);  // a byte that XON/XOFF would take for its own
  state_.FlashTarget = "NewHubFlash";
  world_.mainPort.setHandshake(Handshake::XonXoff);
  form1_.frmUC.Show();
  std::optional<LineSettings> heardUnder;
  unit_.onMessage = [&] { heardUnder = wire_.settings(); };
  runSerial();
  EXPECT_TRUE(world_.screen.boxes().empty());
  EXPECT_EQ(heardUnder, (LineSettings{57600, Handshake::None}));
  EXPECT_FALSE(form1_.frmUC.Visible);
  EXPECT_EQ(file(), "12 00 00 00");
}

TEST_F(SerialNumberTest, TheFactoryButtonsMakeTheWizardReadyForTheirRun) {
  world_.wires.add(5);
  for (CommandButton* button : {&form1_.btnSN, &form1_.btnMic}) {
    SCOPED_TRACE(button->name());
    form1_.Option2(0).Value = true;
    form1_.Option1(0).Value = true;
    state_.ProductCode = "VC";
    state_.FactoryFirstPass = true;
    state_.PortChosen = false;
    state_.ComPort = 9;
    state_.WizardPage = 6;
    form1_.lblTop.Show();
    form1_.ProgressBar1.Value = 50;
    form1_.Command3.Disable();
    world_.after(kSecond, [&] { world_.queue.post([] { throw ProgramEnded{}; }); });
    EXPECT_THROW(button->Click(), ProgramEnded);
    EXPECT_TRUE(form1_.Option2(1).Value && form1_.Option1(2).Value);
    EXPECT_EQ(state_.ProductCode, "WS");
    EXPECT_FALSE(state_.FactoryFirstPass);
    EXPECT_EQ(state_.SerialOnly, button == &form1_.btnSN);
    EXPECT_EQ(state_.WizardPage, button == &form1_.btnSN ? 7 : 6);
    EXPECT_TRUE(state_.PortChosen);
    EXPECT_EQ(state_.ComPort, 2);
    EXPECT_TRUE(form1_.lblResetSerial.Visible);
    EXPECT_FALSE(form1_.lblTop.Visible || form1_.btnSN.Visible || form1_.btnMic.Visible);
    EXPECT_EQ(form1_.Command3.Enabled, button == &form1_.btnSN);
    EXPECT_EQ(form1_.ProgressBar1.Visible, button == &form1_.btnMic);
    world_.mainPort.Close();
    form1_.Command3.Enable();
    state_.SerialStep = 0;
  }
  // The microphones go by the port that was chosen.
  state_.ComPort = 5;
  world_.after(kSecond, [&] { world_.queue.post([] { throw ProgramEnded{}; }); });
  EXPECT_THROW(form1_.btnMic.Click(), ProgramEnded);
  EXPECT_TRUE(world_.wires.find(5)->isOpen());
  EXPECT_EQ(form1_.lblResetSerial.Caption.get(),
            "Ready to send Mic Models to the Receiver\r\n\r\nPlease cycle the power on the receiver now");
  EXPECT_EQ(form1_.Watchdog.interval(), 1000);
  EXPECT_EQ(form1_.ProgressBar1.Value, 0);
  EXPECT_EQ(form1_.ProgressBar1.Max, 100);
  EXPECT_FALSE(form1_.Command5.Visible);
}

TEST_F(SerialNumberTest, FactoryButtonsLeaveARunAlone) {
  world_.mainPort.setNumber(2);
  world_.mainPort.Open();
  form1_.Command3.Disable();
  state_.WizardPage = 6;
  form1_.btnSN.Click();
  form1_.btnMic.Click();
  EXPECT_EQ(state_.WizardPage, 6);
  EXPECT_TRUE(wire_.isOpen());
  EXPECT_TRUE(unit_.heard.empty());
}

TEST_F(FactoryTest, APowerFailureWhileANumberIsTakenGivesNoNumberTwice) {
  const auto disk = std::make_shared<FaultyDisk>(world_.directory.path().string());
  const Files files(world_.directory.path(), noRecorder(), disk);
  SerialFile file(files, state_, form1_);
  constexpr int kOperations = 6;
  for (int at = 0; at <= kOperations; ++at) {
    for (unsigned seed = 0; seed < 10; ++seed) {
      SCOPED_TRACE("operation " + std::to_string(at) + ", seed " + std::to_string(seed));
      std::mt19937 random(seed);
      writeNumber(1000);
      file.ReadSerialFile();
      disk->plan(FaultyDisk::Fault::Power, at);
      bool given = true;
      try {
        file.reserve();
      } catch (const PowerFailed&) {
        given = false;
      }
      EXPECT_EQ(given, at == kOperations);
      disk->reboot(random);
      file.ReadSerialFile();
      EXPECT_THAT(state_.SerialNumber, testing::AnyOf(1001, given ? 1001 : 1000));
    }
  }
}

}  // namespace
}  // namespace firmlane::test
