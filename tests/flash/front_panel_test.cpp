#include "flash_world.h"
#include "images/digit_text.h"

namespace firmlane::test {
namespace {

class FrontPanelTest : public FlashTest {
 protected:
  /// The values of the image from `from` on, as they go over the wire; zeros behind its end.
  [[nodiscard]] std::string values(std::size_t from, std::size_t count) const {
    Bytes wire;
    for (std::size_t i = from; i < from + count; ++i) {
      wire.push_back(2 * i < state_.FrontImage.size() ? Asc2Num(state_.FrontImage.substr(2 * i, 2)) : 0);
    }
    return hex(wire);
  }
  [[nodiscard]] std::string heard() const { return hex(loader_.image); }
};

TEST_F(FrontPanelTest, TheDialogueFollowsWhatThePanelAsksFor) {
  struct Case {
    const char* what;
    std::size_t codeBytes;
    const char* length;
    std::vector<int> answers;
    std::vector<std::size_t> batches;  // where each begins, in values; one a batch
  };
  const Case cases[] = {
      {"code ends with a batch", 64, "00 40", {86, 87, 87, 82}, {0, 32, 64, 96}},
      {"code ends inside a batch that runs into the vectors",
       300,
       "02 2C",
       {86, 86, 86, 86, 86, 86, 86, 86, 86, 86, 86, 86, 86, 86, 86, 86, 87, 87, 82},
       {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448, 480, 512, 536, 568}},
      {"128 digits: one code batch, then the table from the start", 32, "00 20", {87, 87, 82}, {0, 0, 32}},
      {"the end reached without 87: the vectors go unasked, as zeros", 16, "00 10", {0, 0, 82}, {0, 32, 64}},
      {"86 between the vector batches: one more code batch", 64, "00 40", {86, 87, 86, 82}, {0, 32, 64, 96, 128}},
  };
  for (const Case& c : cases) {
    frontImage(c.codeBytes);
    world_.mainPort.setSettings("19200,N,8,1");  // of a run before
    fly("WS", "FrontFlash", {.announces = 80, .batchAnswers = c.answers});
    std::string wire = c.length;
    for (const std::size_t from : c.batches) {
      wire += " " + values(from, 32);
    }
    EXPECT_EQ(heard(), wire) << c.what;
    EXPECT_EQ(loader_.wanted, "02 00 00 00 1E 50 6E 3E 3E");
    EXPECT_EQ(loader_.handshake, Handshake::XonXoff);
    EXPECT_EQ(state_.WizardPage, 7) << c.what;
  }
}

TEST_F(FrontPanelTest, PanelsOfAVelarcGetTheirPauses) {
  state_.UnitIsVrc2 = true;
  for (const auto& [target, base, inVrc, milliseconds] : {std::tuple{"Front1Flash", 53, true, 1000 + 2 * 250},
                                                          {"Front2Flash", 58, true, 1000 + 2 * 250},
                                                          {"Front1Flash", 53, false, 0}}) {
    state_.InVrcAutoWizard = inVrc;
    frontImage(64);
    Micros erased = 0;
    world_.screen.onChange = [&](Control& control) {
      if (&control == &form1_.lblTop && form1_.lblTop.Caption.get().starts_with("FLASH memory")) {
        erased = world_.time.now();
        world_.after(9 * kMillisecond, [this, before = wire_.sent().size()] {
          EXPECT_EQ(wire_.sent().size(), before) << "the pause comes before the length";
        });
      }
    };
    fly("VC", target, {.announces = base, .batchAnswers = {86, 87, 87, base + 2}});
    EXPECT_EQ(state_.WizardPage, 7) << target;
    // 227 ms go by for what is on the wire, the panel's own time, and the pauses before the length and behind each request.
    EXPECT_NEAR(static_cast<double>(pages_.back().at - erased) / kMillisecond, milliseconds + 227, 3) << target;
  }
}

TEST_F(FrontPanelTest, APanelThatAsksForNothingHasAMinute) {
  frontImage(640);
  struct Case {
    std::vector<int> answers;
    std::size_t heard;
    int finished = 0;
  };
  for (const Case& c : {Case{{86, 86, 0}, 2 + 3 * 32}, {{86, 87, 0}, 2 + 3 * 32}, {{86, 87, 87, 0}, 2 + 4 * 32, 1}}) {
    fly("WS", "FrontFlash", {.announces = 80, .batchAnswers = c.answers});
    EXPECT_EQ(loader_.image.size(), c.heard);
    EXPECT_NEAR(seconds("FLASH memory", "The unit has stopped"), 60, 1);
    EXPECT_EQ(std::ranges::count_if(pages_, [](const Page& page) { return page.text.starts_with("Finished"); }), c.finished);
    EXPECT_EQ(ending(), "2 page 5 +timedout -port +next -watchdog -timer1 -bar");
    EXPECT_FALSE(supervision_.Sending);
  }
  EXPECT_TRUE(world_.screen.boxes().empty());
}

TEST_F(FrontPanelTest, AVerdictAmidTheCodeStandsAndAPanelThatAsksOnGetsTheRest) {
  frontImage(64);
  fly("WS", "FrontFlash", {.announces = 80, .batchAnswers = {86, 83}});
  EXPECT_EQ(ending(), "3 page 0 -timedout -port +next -watchdog -timer1 +bar");
  EXPECT_NEAR(seconds("FLASH memory", "Your unit may"), 5 + 1, 0.1) << "the box stands a second";
  world_.after(4 * kSecond + 250 * kMillisecond, [&] { loader_.say(82); });
  world_.after(5 * kSecond, [&] { loader_.say(86); });
  fly("WS", "FrontFlash", {.announces = 80, .batchAnswers = {0, 87, 87}});
  EXPECT_EQ(loader_.image.size(), 2U + 4 * 32);
  EXPECT_EQ(ending(), "3 page 7 -timedout -port +next -watchdog -timer1 +bar");
}

TEST_F(FrontPanelTest, WhatAnEarlierPanelAskedForDoesNotCount) {
  for (const int onceTooOften : {86, 87}) {
    frontImage(64);
    fly("WS", "FrontFlash", {.announces = 80, .batchAnswers = {86, 87, 87, onceTooOften}});
    fly("WS", "FrontFlash", {.announces = 80, .batchAnswers = {0}});
    EXPECT_EQ(loader_.image.size(), 2U + 32) << onceTooOften;
  }
}

TEST_F(FrontPanelTest, ARequestThatComesAmidItsBatchCounts) {
  frontImage(64);
  std::size_t heardMeanwhile = 0;
  world_.screen.onChange = [&](Control& control) {
    if (&control == &form1_.lblProgressInfo && form1_.lblProgressInfo.Caption.get() == "Programmed 0 bytes (0%)") {
      wire_.deliver(bytes("02 00 00 00 1F 56 75 3E 3E"));  // at the first value of the first batch
      const std::size_t before = wire_.sent().size();
      world_.queue.post([&, before] { world_.queue.post([&, before] { heardMeanwhile = wire_.sent().size() - before; }); });
    }
  };
  fly("WS", "FrontFlash", {.announces = 80, .batchAnswers = {0, 87, 87, 82}});
  EXPECT_EQ(ending(), "3 page 7 -timedout -port +next -watchdog -timer1 +bar");
  EXPECT_EQ(loader_.image.size(), 2U + 4 * 32);
  EXPECT_EQ(heardMeanwhile, 0U) << "events run between the values";
}

TEST_F(FrontPanelTest, AnImageThatCannotBeSentIsToldAndTheRunEnds) {
  struct Case {
    const char* what;
    std::size_t digits;
    std::vector<int> answers;
    std::size_t heard;
  };
  const Case cases[] = {{"empty", 0, {}, 2 + 1},
                        {"shorter than its vector table", 80, {87}, 2 + 32},
                        {"longer than positions reach", 32'800, std::vector<int>(600, 86), 2 + 512 * 32}};
  for (const Case& c : cases) {
    state_.FrontImage.clear();
    for (std::size_t i = 0; i < c.digits / 2; ++i) {
      state_.FrontImage += "48";
    }
    state_.FrontCodeBytes = 100;
    fly("WS", "FrontFlash", {.announces = 80, .batchAnswers = c.answers});
    EXPECT_EQ(loader_.image.size(), c.heard) << c.what;
    EXPECT_EQ(world_.screen.boxes().back().text, "Error encountered while trying to open file, please retry.") << c.what;
    EXPECT_EQ(ending(), "2 page 5 +timedout -port +next -watchdog -timer1 -bar") << c.what;
  }
  EXPECT_EQ(world_.screen.boxes().size(), 3U);
}

TEST_F(FrontPanelTest, TheDebugViewFollowsTheRunOnlyWhenItIsOn) {
  FrmDBUG& view = world_.frmDBUG;
  std::string notes;
  world_.screen.onChange = [&](Control& control) {
    if (&control == &view.lblStage || &control == &view.lblBytes || &control == &view.lblErrors) {
      notes += static_cast<Label&>(control).Caption.get() + (&control == &view.lblErrors ? "\n" : " / ");
    }
  };
  frontImage(67);
  fly("WS", "FrontFlash", {.announces = 80, .batchAnswers = {86, 87, 86, 82}});
  for (const Control* control : view.controls()) {
    if (control->name().starts_with("lbl") || control->name() == "LblL1") {
      EXPECT_EQ(static_cast<const Label*>(control)->Caption.get(), "") << control->name();
    }
  }
  state_.DebugView = true;
  fly("WS", "FrontFlash", {.announces = 80, .batchAnswers = {86, 87, 86, 82}});
  EXPECT_EQ(notes,
            "Waiting for Receiver Response / 0 / Got Response from Receiver / About to Start Communications with Receiver\n"
            "Waiting for Erased Confirmation / Starting to Program Front / "
            "Sending Program length / Program Length Bytes are 0 and 67\r\n\r\n\nProgram Length is 67\n"
            "Sent Program Length / Now Starting to send firmware bytes\n"
            "Sending First Batch / Programming Code Bytes\n64 / Sending Next Batch / 128 / "
            "Sending Vector Table / Programming Vector Table\n204 / Sending Next Batch / Programming Code Bytes\n268 / "
            "Sending Vector Table / Programming Vector Table\n332 / Finished Programming Front / Successful!\n");
  EXPECT_EQ(view.LblL1.Caption.get() + " " + view.lblL2.Caption.get() + " " + view.lblHI.Caption.get(), "0 67 15");
  state_.FrontImage.assign(268, '4');  // no digits: all values are 0
  fly("WS", "FrontFlash", {.announces = 80, .batchAnswers = {83}});
  EXPECT_EQ(view.lblHI.Caption.get(), "0");
  fly("WS", "FrontFlash", {.announces = 80, .erased = {}});
  EXPECT_EQ(view.lblStage.Caption.get(), "Timed Out");
}

TEST_F(FrontPanelTest, TheLastBytesShowOnTheWirelessWizardAlone) {
  frontImage(70);
  state_.UnitIsVrc2 = true;
  state_.InVrcAutoWizard = true;
  std::vector<int> bars;
  world_.screen.onChange = [&](Control& control) {
    if (&control == &form1_.lblTop && form1_.lblTop.Caption.get().starts_with("Finished")) {
      bars = {form1_.ProgressBar1.Value, frmAuto_.Progress1.Value, world_.frmVRCAuto.Progress1.Value};
      EXPECT_EQ(form1_.lblProgressInfo.Caption.get(), "Programmed 70 bytes (100%)");
    }
  };
  std::vector<std::string> texts;
  const auto onText = world_.screen.onChange;
  world_.screen.onChange = [&](Control& control) {
    onText(control);
    const std::string text = form1_.lblProgressInfo.Caption;
    if (&control == &form1_.lblProgressInfo && (texts.empty() || texts.back() != text)) {
      texts.push_back(text);
      EXPECT_TRUE(form1_.lblProgressInfo.Visible);
    }
  };
  fly("VC", "Front1Flash", {.announces = 53, .batchAnswers = {86, 87, 87, 82}});
  EXPECT_EQ(bars, (std::vector<int>{100, 100, 91}));
  EXPECT_EQ(texts,
            (std::vector<std::string>{"", "Programmed 0 bytes (0%)", "Programmed 16 bytes (22%)", "Programmed 32 bytes (45%)",
                                      "Programmed 48 bytes (68%)", "Programmed 64 bytes (91%)", "Programmed 70 bytes (100%)"}));
  EXPECT_TRUE(state_.FrontStreaming);
  EXPECT_EQ(supervision_.WatchdogLimit, 200);
}

}  // namespace
}  // namespace firmlane::test
