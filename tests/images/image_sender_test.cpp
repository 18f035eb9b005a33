#include "images/image_sender.h"

#include <gtest/gtest.h>

#include "world.h"

namespace firmlane::test {
namespace {

class ImageSenderTest : public testing::Test {
 protected:
  ImageSenderTest() {
    world_.time.setEnd(kSecond * 3600);
    world_.state.InAutoWizard = true;
    world_.mainPort.setNumber(1);
    world_.mainPort.setReceiveThreshold(9);
    world_.mainPort.Open();
    form1_.Watchdog.start(1000);
    supervision_.setLimit(180);
    world_.screen.onChange = [this](Control& control) {
      const std::string text = form1_.lblProgressInfo.Caption;
      if (&control == &form1_.lblProgressInfo && !text.empty() && (texts_.empty() || texts_.back() != text)) {
        texts_.push_back(text);
      }
    };
  }

  std::string image(const Bytes& content) {
    world_.directory.write("image", content);
    return world_.files.path("image");
  }
  [[nodiscard]] std::string sent() const { return hex(wire_.sent()); }
  void expectErrorBox() const {
    ASSERT_EQ(world_.screen.boxes().size(), 1U);
    const MessageBox& box = world_.screen.boxes().front();
    EXPECT_EQ(box.text, "Error encountered while trying to open file, please retry.");
    EXPECT_EQ(box.title, "Open File");
    EXPECT_EQ(box.icon, MessageIcon::Exclamation);
    EXPECT_EQ(box.buttons, MessageButtons::OK);
  }

  World world_;
  VirtualWire& wire_ = world_.wires.add(1);
  Form1& form1_ = world_.form1;
  Supervision& supervision_ = world_.supervision;
  bool expectFrameEnd_ = false;
  std::vector<std::string> texts_;
  ImageSender sender_{world_.host, world_.mainPort, supervision_, world_.wizard, world_.state, form1_, expectFrameEnd_};
};

TEST_F(ImageSenderTest, BytesOnTheWireOfEitherForm) {
  std::string before;
  for (const auto& [product, vrc2, content, wire] : {std::tuple{"WS", false, "80 7F FF 00", "01 80 7F FF 00 7E"},
                                                     {"VC", true, "80 80 80", "01 80 80 80 00"},
                                                     {"VC", false, "80 7F FF 00", "01 01 00 00 7F 01 7F 00 00 7E"},
                                                     {"VC", false, "", "01 00"},
                                                     {"WS", true, "", "01 00"}}) {
    world_.state.ProductCode = product;
    world_.state.UnitIsVrc2 = vrc2;
    form1_.Watchdog.setInterval(1000);
    form1_.lblProgressInfo.Hide();
    sender_.DumpFile2(image(bytes(content)));
    EXPECT_TRUE(form1_.lblProgressInfo.Visible);
    EXPECT_EQ(sent(), before + wire) << product << vrc2;
    before = sent() + " ";
    EXPECT_EQ(form1_.Watchdog.interval(), product == std::string("VC") && !vrc2 ? 1000 : 500);
    EXPECT_EQ(form1_.lblProgressInfo.Caption.get(), "Programmed " + std::to_string(bytes(content).size()) + " bytes (100%)");
  }
}

TEST_F(ImageSenderTest, TheUnitHasTenTicksAfterAnImageWithASum) {
  sender_.DumpFile2(image(Bytes(2000, 0x55)));
  EXPECT_EQ(supervision_.WatchdogLimit, 10);
  EXPECT_EQ(supervision_.WatchdogTicks, 0);
  EXPECT_TRUE(form1_.Watchdog.enabled());
  EXPECT_TRUE(expectFrameEnd_);
  EXPECT_TRUE(world_.state.ImageDone);
  EXPECT_FALSE(supervision_.Sending);
  EXPECT_EQ(wire_.opens(), 1);
  EXPECT_EQ(form1_.Timer1.interval(), 100);
  EXPECT_TRUE(form1_.Timer1.enabled());
  EXPECT_EQ(form1_.ProgressBar1.Value.get(), 100);
  EXPECT_EQ(world_.frmAuto.Progress1.Value.get(), 100);
  EXPECT_EQ(form1_.lblTop.Caption.get(), "Finished sending new firmware to the unit, now waiting to get response from unit...");
  EXPECT_EQ(texts_.size(), 5U) << "one text each half second of the two that 2000 bytes take, and the last";
}

TEST_F(ImageSenderTest, TextGoesOutByteForByteUnderRtsAfterReopening) {
  Bytes text;
  for (int i = 0; i < 100; ++i) {
    text.push_back(static_cast<std::uint8_t>(i * 7));
  }
  std::vector<Handshake> handshakes;
  wire_.heard = [&](std::uint8_t) { handshakes.push_back(wire_.settings()->handshake); };
  form1_.lblProgressInfo.Hide();
  sender_.DumpFile3(image(text));
  EXPECT_TRUE(form1_.lblProgressInfo.Visible);
  EXPECT_EQ(sent(), hex(text));
  EXPECT_EQ(wire_.opens(), 2);
  ASSERT_FALSE(handshakes.empty());
  EXPECT_EQ(handshakes, std::vector<Handshake>(handshakes.size(), Handshake::Rts));
  EXPECT_EQ(world_.mainPort.receiveThreshold(), 1);
  EXPECT_EQ(texts_,
            (std::vector<std::string>{"Programmed 1 bytes (1%)", "Programmed 51 bytes (51%)", "Programmed 100 bytes (100%)"}));
  EXPECT_FALSE(form1_.Watchdog.enabled());
  EXPECT_EQ(form1_.Watchdog.interval(), 50);
  EXPECT_EQ(supervision_.WatchdogLimit, 200);
  EXPECT_FALSE(expectFrameEnd_);
  EXPECT_TRUE(world_.state.ImageDone);
  EXPECT_EQ(world_.frmAuto.Progress1.Value.get(), 100);
}

TEST_F(ImageSenderTest, WhatWaitsInTheQueueRunsBeforeTextGoesOutAndBetweenTheBytes) {
  for (const auto& [dump, sentAtPasses] : {std::pair{&ImageSender::DumpFile3, std::vector<std::size_t>{0, 0, 1, 1, 2, 3}},
                                           {&ImageSender::DumpFile2, {2, 3, 4, 5}}}) {
    const std::size_t before = wire_.sent().size();
    std::vector<std::size_t> seen;
    std::function<void()> look = [&] {
      seen.push_back(wire_.sent().size() - before);
      EXPECT_TRUE(form1_.ProgressBar1.Value == (seen.size() > 3 ? 5 : 0) || dump == &ImageSender::DumpFile2);
      if (seen.size() < sentAtPasses.size()) {
        world_.queue.post(look);
      }
    };
    form1_.ProgressBar1.Value = 50;
    world_.queue.post(look);
    (sender_.*dump)(image(Bytes(20, 1)));
    EXPECT_EQ(seen, sentAtPasses);
  }
}

TEST_F(ImageSenderTest, AMissingFileSendsNothingAndLeavesTheLimitInForce) {
  for (const auto dump : {&ImageSender::DumpFile2, &ImageSender::DumpFile3}) {
    world_.screen.answerNext(MessageButton::OK);
    (sender_.*dump)(world_.files.path("nowhere.bin"));
    EXPECT_EQ(world_.mainPort.receiveThreshold(), dump == &ImageSender::DumpFile3 ? 1 : 9);
  }
  ASSERT_EQ(world_.screen.boxes().size(), 2U);
  EXPECT_EQ(sent(), "");
  EXPECT_FALSE(supervision_.Sending);
  EXPECT_TRUE(form1_.Watchdog.enabled());
  EXPECT_EQ(form1_.Watchdog.interval(), 1000);
  EXPECT_EQ(supervision_.WatchdogLimit, 180);
}

TEST_F(ImageSenderTest, AnAdapterPulledDuringTheStreamEndsIt) {
  for (const auto dump : {&ImageSender::DumpFile2, &ImageSender::DumpFile3}) {
    wire_.openFailure.reset();
    world_.mainPort.Close();
    world_.mainPort.Open();
    world_.state.ImageDone = true;
    world_.after(kSecond, [&] { wire_.vanish(); });
    EXPECT_THROW((sender_.*dump)(image(Bytes(5000, 0x55))), Failure);
    EXPECT_TRUE(supervision_.Sending);
    EXPECT_FALSE(world_.state.ImageDone);
    EXPECT_NEAR(supervision_.BytesSent, 960, 70);
  }
  EXPECT_EQ(world_.screen.boxes().size(), 0U) << "the run names the adapter; this is no file that does not open";
}

TEST_F(ImageSenderTest, APortThatDoesNotOpenAgainIsToldInTheOneBox) {
  world_.screen.answerNext(MessageButton::OK);
  wire_.openFailure = Failure(failure_number::kPortInUse, "The port is in use");
  sender_.DumpFile3(image({1, 2, 3}));
  expectErrorBox();
  EXPECT_EQ(sent(), "");
}

}  // namespace
}  // namespace firmlane::test
