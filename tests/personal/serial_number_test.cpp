#include "factory_world.h"

namespace firmlane::test {
namespace {

using SerialNumberTest = FactoryTest;

constexpr const char* kPresetMessage = "02 00 00 00 0A 00 00 0A 80";

TEST_F(SerialNumberTest, TwoUnitsInARowGetTwoNumbersAndTheFileIsAheadOfEach) {
  writeNumber(123456);
  std::vector<std::string> fileWhenHeard;
  unit_.onMessage = [&] { fileWhenHeard.push_back(file()); };
  for (int i = 0; i < 2; ++i) {
    runSerial();
    EXPECT_EQ(form1_.lblResetSerial.Caption.get(), "Serial Number Programmed!");
    world_.run(kSecond);
    EXPECT_EQ(form1_.lblResetSerial.Caption.get(), "Serial Number Programmed!\r\nPreset 0 Loaded!");
    EXPECT_EQ(state_.SerialStep, 5);
    EXPECT_FALSE(form1_.btnSN.Visible);
    expectReady();
    next();
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
    std::string page = form1_.lblResetSerial.Visible ? form1_.lblResetSerial.Caption.get().substr(0, 9) : "-";
    for (const Control* control : std::initializer_list<Control*>{&form1_.txtNum, &form1_.btnSerial, &form1_.frmModel}) {
      page += control->Visible ? " " + control->name() : "";
    }
    pages.push_back(page);
  };
  for (const double seconds : {0.5, 1.5, 2.5}) {
    world_.after(static_cast<Micros>(seconds * kSecond), look);
  }
  runSerial();
  EXPECT_EQ(pages, (std::vector<std::string>{"Programmi", "Now check txtNum btnSerial", "- frmModel"}));
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
  for (const std::int32_t number : {-2, 2147483647}) {
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
  state_.SerialNumber = 2147483645;
  editor_.btnSerial_Click();
  NewSerial& form = world_.newserial;
  const auto text = [&] { return form.Text1.Text.get(); };
  form.btnUp.Click();
  form.btnUp.Click();
  EXPECT_EQ(text(), "2147483646");
  form.Text1.Text = "1";
  form.btnDown.Click();
  form.btnDown.Click();
  EXPECT_EQ(text(), "0");
  world_.screen.answerOthers();
  for (const char* wrong : {"", "12a", "-1", "2147483647", "99999999999"}) {
    form.Text1.Text = wrong;
    form.btnOK.Click();
    EXPECT_TRUE(form.Loaded) << wrong;
  }
  EXPECT_EQ(world_.screen.boxes().size(), 5U);
  EXPECT_EQ(state_.SerialNumber, 2147483645);
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

TEST_F(SerialNumberTest, ASilentUnitEndsTheProcedureOnNoAndItsNumberIsFreeAgain) {
  writeNumber(100);
  unit_.deafTo = 2;
  world_.screen.answerNext(MessageButton::Yes, 90 * kSecond);
  world_.screen.answerNext(MessageButton::No);
  runSerial();
  ASSERT_EQ(world_.screen.boxes().size(), 2U);
  EXPECT_EQ(world_.screen.boxes()[1].text, "No answer from the receiver, try again?");
  EXPECT_EQ(world_.time.now() / kSecond, 3 + 10 + 90 + 1 + 10 + 1);
  EXPECT_EQ(unit_.heard.size(), 2U);
  EXPECT_EQ(file(), "64 00 00 00");
  expectReady();
  EXPECT_TRUE(form1_.btnSN.Visible);
  EXPECT_EQ(state_.SerialStep, 0);
  EXPECT_EQ(form1_.lblTop.Caption.get(), "No answer from the receiver: the Serial Number was not programmed");
  runSerial();
  EXPECT_EQ(unit_.heard.at(2), unit_.heard.at(0));
  EXPECT_EQ(file(), "65 00 00 00");
}

TEST_F(SerialNumberTest, AnAnswerUnderTheQuestionCountsWhateverIsPressed) {
  writeNumber(100);
  unit_.deafTo = 1;
  world_.screen.onBox = [&](const MessageBox&) {
    world_.after(kMillisecond, [&] { wire_.send(bytes("02 00 00 64 1F 27 2A 3E 3E"), 57600); });
  };
  world_.screen.answerNext(MessageButton::No);
  runSerial();
  EXPECT_EQ(unit_.heard.size(), 2U);
  EXPECT_EQ(unit_.heard.at(1), kPresetMessage);
  EXPECT_EQ(file(), "65 00 00 00");
}

TEST_F(SerialNumberTest, APresetThatFailsLeavesTheNumberTaken) {
  writeNumber(100);
  bool numberHeard = false;
  unit_.onMessage = [&] {
    unit_.deafTo = numberHeard ? 99 : 0;
    numberHeard = true;
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

TEST_F(SerialNumberTest, APortThatFailsLosesNoNumberAndNextStartsAnew) {
  writeNumber(100);
  wire_.openFailure = Failure(failure_number::kPortInUse, "The port is in use");
  world_.screen.answerOthers();
  runSerial();
  EXPECT_EQ(world_.screen.boxes().at(0).text, "The port is in use");
  EXPECT_EQ(file(), "64 00 00 00");
  expectReady();
  wire_.openFailure.reset();
  for (const double seconds : {1.0, 2.0, 3.0}) {
    clickAfter(seconds, form1_.Command3);
  }
  form1_.Command3.Click();
  EXPECT_EQ(unit_.heard.size(), 2U);
  EXPECT_EQ(file(), "65 00 00 00");
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

}  // namespace
}  // namespace firmlane::test
