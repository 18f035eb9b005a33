#include <gmock/gmock.h>

#include "serial_number_world.h"

namespace firmlane::test {
namespace {

using testing::ElementsAre;

constexpr const char* kPresetMessage = "02 00 00 00 0A 00 00 0A 80";
constexpr const char* kAskAgain = "No answer from the receiver, try again?";

TEST_F(SerialNumberTest, TwoUnitsInARowGetTwoNumbersAndTheFileIsAheadOfEach) {
  writeNumber(123456);
  std::vector<std::string> pages;
  const auto look = [&] { pages.push_back(page() + "\n" + instruction()); };
  unit_.onMessage = [&] {
    EXPECT_EQ(form1_.Timer3.interval(), 100);
    look();
    pages.push_back(file());
  };
  for (int i = 0; i < 2; ++i) {
    form1_.lblOutcome.tell(OutcomeKind::Failure, "of the run before");
    form1_.lblProgressInfo.Show();
    pages.clear();
    for (const double seconds : {0.5, 1.5, 2.5}) {
      at(seconds, look);
    }
    runSerial();
    look();
    world_.run(kSecond);
    look();
    const std::string fileAhead = i == 0 ? "41 E2 01 00" : "42 E2 01 00";
    EXPECT_THAT(
        pages,
        ElementsAre("lblResetSerial; Next\nProgramming the Serial Number is the next step.\r\n\r\nPlease cycle the power on the "
                    "LWX Receiver and\r\nclick 'Next' when the unit has successfully rebooted",
                    "lblResetSerial lblSerial txtNum btnSerial; Next\nNow check the Serial Number displayed below\r\nto make "
                    "sure that it is the one you want\r\nsent to the unit. If you need to change it,\r\nClick on 'Edit Number' "
                    "to adjust it\r\n\r\nClick 'Next' when you are finished",
                    testing::StartsWith("frmModel; Next"), testing::StartsWith("; port Watchdog Timer3"), fileAhead,
                    "lblResetSerial; port Watchdog Timer3\nSerial Number Programmed!", fileAhead,
                    "lblResetSerial; Next Timer3\nSerial Number Programmed!",
                    "lblResetSerial; Next\nSerial Number Programmed!\r\nPreset 0 Loaded!"));
    EXPECT_EQ(form1_.txtNum.Text.get(), std::to_string(123456 + i));
    EXPECT_EQ(state_.SerialNumber, 123456 + i + 1);
    EXPECT_EQ(state_.SerialStep, 5);
    EXPECT_FALSE(state_.SerialOnly);
    form1_.ProgressBar1.Show();
    next();
    EXPECT_FALSE(state_.GotId || receivePath_.PresetLoaded || preset_.PresetPending);
    EXPECT_EQ(top(), "Serial Number and Preset Load Complete");
    EXPECT_EQ(page(), kReady);
    EXPECT_EQ(state_.WizardPage, 0);
  }
  EXPECT_THAT(unit_.heard, ElementsAre("02 00 00 00 27 07 44 40 00 00 00 32 80", kPresetMessage,
                                       "02 00 00 00 27 07 44 41 00 00 00 33 80", kPresetMessage));
}

TEST_F(SerialNumberTest, ANumberThatNoReceiverCanTakeIsToldWhenItIsLoadedAndGoesNoFurther) {
  writeNumber(1000000);
  world_.screen.answerOthers();
  std::string told;
  at(1.5, [&] { told = form1_.lblOutcome.Caption; });
  for (const double seconds : {1.0, 2.0, 8.0, 9.0}) {
    clickAfter(seconds, form1_.Command3);
  }
  at(5, [&] {
    EXPECT_TRUE(form1_.txtNum.Visible);
    type("999999")();
    EXPECT_FALSE(form1_.lblOutcome.Visible);
  });
  serial_.btnSN_Click();
  const std::string why = "1000000 cannot be a serial number: a receiver takes numbers from 0 to 999999.";
  const std::string change = "Please click on 'Edit Number' to change it";
  EXPECT_EQ(told, why + " " + change);
  EXPECT_EQ(world_.screen.boxes().size(), 1U);
  EXPECT_EQ(box().text, why + "\r\n\r\n" + change);
  EXPECT_EQ(unit_.heard.at(0), "02 00 00 00 27 3D 04 3F 00 00 00 27 80");
  EXPECT_EQ(file(), "40 42 0F 00");
}

TEST_F(SerialNumberTest, TheEditorStepsRefusesAndIsGoneBeforeTheNumberGoesOut) {
  state_.SerialNumber = 999998;
  editor_.btnSerial_Click();
  NewSerial& form = world_.newserial;
  for (const auto& [from, button, to] : {std::tuple{"999998", &form.btnUp, "999999"},
                                         {"999999", &form.btnUp, "999999"},
                                         {"1", &form.btnDown, "0"},
                                         {"0", &form.btnDown, "0"}}) {
    EXPECT_TRUE(form.Text1.Text.get() == from || std::string(from) == "1");
    form.Text1.Text = from;
    button->Click();
    EXPECT_EQ(form.Text1.Text.get(), to);
  }
  world_.screen.answerOthers();
  for (const char* wrong : {"", "12a", "-1", "1000000", "99999999999"}) {
    form.Text1.Text = wrong;
    form.btnOK.Click();
    EXPECT_TRUE(form.Loaded) << wrong;
  }
  EXPECT_EQ(world_.screen.boxes().size(), 5U);
  EXPECT_EQ(box().text, "Please enter a whole number from 0 to 999999");
  EXPECT_EQ(state_.SerialNumber, 999998);
  form.btnCancel.Click();
  EXPECT_FALSE(form.Visible);

  writeNumber(5);
  clickAfter(1.5, form1_.btnSerial);
  at(2.5, [&] { EXPECT_FALSE(form.Visible); });
  runSerial();
}

TEST_F(SerialNumberTest, ReadBackThatDiffersIsTriedAgainUntilItAgrees) {
  writeNumber(100);
  unit_.wrongReadBacks = {99, 0};
  world_.screen.answerOthers(60 * kSecond);
  world_.screen.onBox = [&](const MessageBox&) { at(60.5, [&] { EXPECT_EQ(page(), "; Timer3") << "between two tries"; }); };
  runSerial();
  world_.screen.onBox = nullptr;
  world_.run(kSecond);
  ASSERT_EQ(world_.screen.boxes().size(), 2U);
  EXPECT_EQ(world_.screen.boxes()[0].text,
            "Error programming Serial Number\r\n\r\nSent #100, but read back #99\r\n\r\nTrying again");
  EXPECT_EQ(unit_.heard.size(), 4U);
  EXPECT_EQ(wire_.opens(), 3);
  EXPECT_EQ(file(), content(101));
  EXPECT_EQ(instruction(), "Serial Number Programmed!\r\nPreset 0 Loaded!");
  next();

  unit_.wrongReadBacks = {99};
  world_.screen.onBox = [&](const MessageBox&) { wire_.openFailure = Failure(failure_number::kPortInUse, "The port is in use"); };
  runSerial();
  EXPECT_EQ(box().text, "The port is in use");
  EXPECT_EQ(top(), "Click 'Next' to Program the Serial Number");
  EXPECT_EQ(page(), kReady);
  EXPECT_EQ(file(), content(102)) << "the number may be in the unit";
}

TEST_F(SerialNumberTest, ASilentUnitEndsTheProcedureOnNoAndItsNumberIsNotUsedAgain) {
  writeNumber(100);
  unit_.deafTo = 2;
  world_.screen.answerNext(MessageButton::Yes, 90 * kSecond);
  world_.screen.answerNext(MessageButton::No);
  runSerial();
  ASSERT_EQ(world_.screen.boxes().size(), 2U);
  EXPECT_EQ(box().text, kAskAgain);
  EXPECT_EQ(world_.time.now() / kSecond, 3 + 10 + 90 + 1 + 10 + 1);
  EXPECT_EQ(unit_.heard.size(), 2U);
  EXPECT_EQ(file(), content(101));
  EXPECT_EQ(page(), kGivenUp);
  EXPECT_FALSE(state_.SerialOnly);
  EXPECT_EQ(state_.SerialStep, 0);
  EXPECT_EQ(top(), "No answer from the receiver: number 100 may be in it or not, and no other receiver gets it");
  EXPECT_EQ(form1_.lblOutcome.Caption.get(), top());
  EXPECT_EQ(form1_.lblOutcome.Kind.get(), "failure");
  // A port that fails on the way to the next number must not bring the old one back.
  wire_.openFailure = Failure(failure_number::kPortInUse, "The port is in use");
  world_.screen.answerNext(MessageButton::OK);
  runSerial();
  EXPECT_EQ(file(), content(101));
  wire_.openFailure.reset();
  runSerial();
  EXPECT_EQ(unit_.heard.at(2), "02 00 00 00 27 00 00 65 00 00 00 0C 80");
  EXPECT_EQ(file(), content(102));
}

TEST_F(SerialNumberTest, AnAnswerUnderTheQuestionCountsUnlessItDiffersAndTheUserSaysNo) {
  const char* right = "02 00 00 64 1F 27 2A 3E";
  const char* wrong = "02 00 00 63 1F 27 29 3E";
  for (const auto& [answer, button, messages, words] :
       {std::tuple{right, MessageButton::No, 2, "Serial Number Programmed!"},
        {wrong, MessageButton::Yes, 3, "Serial Number Programmed!"},
        {wrong, MessageButton::No, 1,
         "The receiver has reported number 99, not number 100: the Serial Number was not programmed"}}) {
    writeNumber(100);
    unit_.deafTo = 1;
    unit_.heard.clear();
    unit_.onMessage = [&] { EXPECT_EQ(form1_.lblResetSerial.Visible, unit_.heard.back() == kPresetMessage); };
    world_.screen.onBox = [&](const MessageBox& question) {
      if (question.buttons == MessageButtons::YesNo) {
        at(0.001, [&] { wire_.send(bytes(answer), 57600); });
      }
    };
    world_.screen.answerNext(button);
    world_.screen.answerOthers();
    runSerial();
    EXPECT_EQ(unit_.heard.size(), messages) << words;
    EXPECT_EQ(form1_.lblResetSerial.Visible ? instruction() : top(), words);
    EXPECT_EQ(file(), content(101));
    if (state_.SerialStep == 5) {
      next();
    }
  }
}

TEST_F(SerialNumberTest, WhatARunBeforeHasLeftDoesNotSpoilTheNextNumber) {
  writeNumber(17);  // a byte that XON/XOFF would take for its own
  state_.FlashTarget = "NewHubFlash";
  world_.mainPort.setHandshake(Handshake::XonXoff);
  form1_.frmUC.Show();
  at(2.5, [&] {
    receivePath_.RxBuffer = bytes("02 00 00");
    state_.GotId = state_.SerialAnswerTaken = receivePath_.PresetLoaded = true;
  });
  std::optional<LineSettings> heardUnder;
  unit_.onMessage = [&] {
    heardUnder = wire_.settings();
    EXPECT_FALSE(form1_.frmUC.Visible || (unit_.heard.size() > 1 && receivePath_.PresetLoaded));
  };
  runSerial();
  EXPECT_TRUE(world_.screen.boxes().empty());
  EXPECT_EQ(heardUnder, (LineSettings{57600, Handshake::None}));
  EXPECT_EQ(file(), content(18));
}

TEST_F(SerialNumberTest, TheFactoryButtonsMakeTheWizardReadyForTheirRun) {
  world_.wires.add(5);
  for (CommandButton* button : {&form1_.btnSN, &form1_.btnMic}) {
    SCOPED_TRACE(button->name());
    const bool serial = button == &form1_.btnSN;
    form1_.Option2(0).Value = true;
    form1_.Option1(0).Value = true;
    state_.ProductCode = "VC";
    state_.FactoryFirstPass = true;
    state_.PortChosen = false;
    state_.ComPort = 9;
    state_.WizardPage = 6;
    for (Control* control : std::initializer_list<Control*>{&form1_.lblTop, &form1_.lblProgressInfo, &form1_.frmUC}) {
      control->Show();
    }
    form1_.lblOutcome.tell(OutcomeKind::Failure, "of the run before");
    form1_.lblResetSerial.Hide();
    form1_.ProgressBar1.Value = 50;
    form1_.ProgressBar1.Max = 9;
    form1_.Command3.Disable();
    at(1, [&] { world_.queue.post([] { throw ProgramEnded{}; }); });
    EXPECT_THROW(button->Click(), ProgramEnded);
    EXPECT_TRUE(form1_.Option2(1).Value && form1_.Option1(2).Value);
    EXPECT_EQ(state_.ProductCode, "WS");
    EXPECT_FALSE(state_.FactoryFirstPass);
    EXPECT_EQ(state_.SerialOnly, serial);
    EXPECT_EQ(state_.WizardPage, serial ? 7 : 6);
    EXPECT_TRUE(state_.PortChosen);
    EXPECT_EQ(state_.ComPort, 2);
    EXPECT_EQ(page(), serial ? "lblResetSerial; Next" : "ProgressBar1 lblResetSerial; port Watchdog");
    world_.mainPort.Close();
    form1_.Command3.Enable();
    state_.SerialStep = 0;
    EXPECT_TRUE(serial || !receivePath_.ExpectFrameEnd);
    receivePath_.ExpectFrameEnd = true;
  }
  // The microphones go by the port that was chosen.
  state_.ComPort = 5;
  at(1, [&] { world_.queue.post([] { throw ProgramEnded{}; }); });
  EXPECT_THROW(form1_.btnMic.Click(), ProgramEnded);
  EXPECT_TRUE(world_.wires.find(5)->isOpen());
  EXPECT_EQ(instruction(), "Ready to send Mic Models to the Receiver\r\n\r\nPlease cycle the power on the receiver now");
  EXPECT_EQ(form1_.Watchdog.interval(), 1000);
  EXPECT_EQ(form1_.ProgressBar1.Value, 0);
  EXPECT_EQ(form1_.ProgressBar1.Max, 100);
  EXPECT_FALSE(form1_.Command5.Visible);

  for (CommandButton* button : {&form1_.btnSN, &form1_.btnMic}) {
    const std::string before = page();
    button->Click();
    EXPECT_EQ(page(), before) << "a run that has the line is left alone";
    EXPECT_EQ(state_.WizardPage, 6);
  }
}

}  // namespace
}  // namespace firmlane::test
