#include "link/version_readout.h"

#include <gmock/gmock.h>

#include "fake_unit.h"

namespace firmlane::test {
namespace {

const std::string kResetFrame = "02 00 00 00 72 72 80";
const std::string kWhoFrame = "02 00 00 00 01 01 80";
const std::string kVersionsFrame = "02 00 00 00 5E 5E 80";

class VersionReadoutTest : public testing::Test {
 protected:
  VersionReadoutTest() {
    state_.ProductCode = "WS";
    state_.ComPort = 4;
    world_.screen.answerOthers();
  }
  void load() {
    state_.VersionsComplete = state_.SerialRead = state_.GotId = state_.GetVersionsSent = state_.VersionsRead = false;
    form_.Load();
  }
  /// A unit on the line that answers both questions.
  FakeUnit& unitAt(int baud, const std::string& id = kIdAnswer, const std::string& versions = kVersionAnswer) {
    FakeUnit& unit = unit_.emplace(world_, 4, baud);
    unit.answers = {{kWho, id}, {kVersions, versions}};
    return unit;
  }
  void tryAgain() { EXPECT_EQ(world_.host.click(form_.Command1), std::nullopt); }
  void complete(Micros limit = 10 * kSecond) {
    world_.runUntil([this] { return state_.VersionsComplete; }, limit);
  }
  Pointer pointer() { return world_.screen.pointer(); }

  World world_;
  RunState& state_ = world_.state;
  FrmVersion& form_ = world_.frmVersion;
  VersionReadout readout_{world_.versionPort, world_.activity, state_, form_};
  VirtualWire& wire_ = world_.wires.add(4);
  std::optional<FakeUnit> unit_;
};

TEST_F(VersionReadoutTest, AWirelessUnitIsReadAtFullSpeed) {
  unitAt(57600);
  world_.versionPort.setHandshake(Handshake::Rts);
  load();
  EXPECT_EQ(world_.versionPort.lineSettings().handshake, Handshake::None);
  EXPECT_EQ(pointer(), Pointer::Hourglass);
  complete();
  EXPECT_TRUE(hex(wire_.sent()).starts_with(kResetFrame + " " + kWhoFrame)) << hex(wire_.sent());
  EXPECT_TRUE(hex(wire_.sent()).ends_with(kWhoFrame + " " + kVersionsFrame)) << hex(wire_.sent());
  EXPECT_LT(world_.time.now(), 300 * kMillisecond);
  EXPECT_EQ(form_.lblSN.Caption.get() + " " + form_.lblHub.Caption.get() + " " + form_.lblFront.Caption.get(), "1000300 2.5 3.1");
  EXPECT_FALSE(state_.LegacyLink);
  world_.run(200 * kMillisecond);
  EXPECT_EQ(pointer(), Pointer::Normal);
  EXPECT_FALSE(form_.Timer1.enabled());
  const Bytes sent = wire_.sent();
  world_.run(10 * kSecond);
  EXPECT_EQ(hex(wire_.sent()), hex(sent)) << "nothing is asked once all is in";
  form_.Unload();
  EXPECT_FALSE(wire_.isOpen());
}

TEST_F(VersionReadoutTest, TheFirstQuestionComesFiveThousandPassesAfterTheReset) {
  state_.ProductCode = "VC";
  world_.after(90 * kMillisecond, [this] { EXPECT_EQ(hex(wire_.sent()), "") << "no reset, no question yet"; });
  FakeUnit& unit = unitAt(19200, "02 00 02 2C 02 00 00 03 67 00 00 00 02 00 00 18 80");  // an old DSP
  load();
  EXPECT_GE(world_.time.now(), 100 * kMillisecond);
  EXPECT_EQ(hex(wire_.sent()).substr(hex(wire_.sent()).size() - 20), kWhoFrame);
  EXPECT_EQ(wire_.settings()->baud, 19200);
  complete();
  world_.run(5 * kSecond);
  EXPECT_EQ(form_.lblDSP.Caption.get(), "4.87");
  EXPECT_EQ(unit.count(kVersions), 0);
  EXPECT_FALSE(form_.Timer1.enabled());
}

TEST_F(VersionReadoutTest, AnOldReceiverIsFoundAtTheOldSpeed) {
  FakeUnit& unit = unitAt(9600);
  load();
  complete();
  EXPECT_TRUE(state_.LegacyLink);
  EXPECT_EQ(wire_.settings()->baud, 9600);
  EXPECT_EQ(unit.count(kReset), 0) << "no reset link at the old speed";
  EXPECT_EQ(state_.VerDspMajor, 2);
  EXPECT_NEAR(static_cast<double>(world_.time.now()) / kSecond, 2.4, 0.2);

  form_.Show();
  tryAgain();
  world_.after(0, [this] {
    world_.queue.post(
        [this] { EXPECT_FALSE(state_.VersionsComplete || state_.GetVersionsSent || state_.GotId || state_.SerialRead); });
  });
  world_.run(kSecond);
  EXPECT_TRUE(state_.LegacyLink) << "what was read stays true of it";
  EXPECT_FALSE(state_.VersionsComplete);
}

TEST_F(VersionReadoutTest, ASilentLineIsAskedEveryTickAndTheSpeedChangesEveryTwoSeconds) {
  FakeUnit fast(world_, 4, 57600);
  std::vector<std::string> speeds;
  wire_.changed = [&] {
    speeds.push_back(std::to_string((world_.time.now() + 50 * kMillisecond) / (100 * kMillisecond)) + ": " +
                     (wire_.isOpen() ? std::to_string(wire_.settings()->baud) : "closed"));
  };
  load();
  world_.run(7 * kSecond);
  wire_.changed = nullptr;
  EXPECT_THAT(speeds, testing::ElementsAre("0: 57600", "20: 9600", "20: closed", "22: 9600", "41: 57600", "41: closed",
                                           "43: 57600", "62: 9600", "62: closed", "64: 9600"));
  // At full speed ticks 1 to 19, the reset of the beginning and its question; then the tick that came back to it and 19 more.
  EXPECT_EQ(fast.count(kReset), 1 + 19 + 20);
  EXPECT_EQ(fast.count(kWho), 1 + 19 + 20);
  form_.Show();
  EXPECT_TRUE(state_.LegacyLink);
  tryAgain();
  world_.after(50 * kMillisecond, [&] { tryAgain(); });
  world_.run(kSecond);
  EXPECT_FALSE(state_.LegacyLink) << "the search starts over";
  EXPECT_EQ(wire_.settings()->baud, 57600);
  EXPECT_EQ(fast.count(kReset), 1 + 19 + 20 + 2 + 9);
  EXPECT_EQ(fast.count(kWho), 1 + 19 + 20 + 1 + 9) << "of two tries the last asks";
}

TEST_F(VersionReadoutTest, BytesOfTheWrongSpeedDoNotSpoilTheAnswer) {
  for (const char* noise : {"FF 00 FE 80", "80", "02 11", "02 FF FF FF FF FF FF FF", "02 05 06 07 80", "02 00 01 01 55 01 80"}) {
    unitAt(9600);
    world_.after(1900 * kMillisecond, [&] { wire_.deliver(bytes(noise)); });
    load();
    complete();
    EXPECT_EQ(state_.SerialNumber, 1000300) << noise;
    EXPECT_TRUE(state_.LegacyLink) << noise;
    form_.Unload();
    world_.run(kSecond);
  }
}

TEST_F(VersionReadoutTest, WhatWillNeverBecomeAnAnswerDoesNotStandInFrontOfOne) {
  FakeUnit unit(world_, 4, 57600);
  Bytes endless(32'767, 0x11);
  endless.front() = 0x02;
  const std::pair<Bytes, std::function<void()>> cases[] = {{bytes("02 00 02"), [this] { tryAgain(); }},
                                                           {endless, [this] { wire_.deliver(bytes("11")); }}};
  for (const auto& [start, then] : cases) {
    unit.answers.clear();
    state_.VersionsComplete = state_.GetVersionsSent = true;
    form_.Show();
    EXPECT_FALSE(state_.VersionsComplete || state_.GetVersionsSent);
    wire_.deliver(start);
    world_.run(20 * kMillisecond);
    EXPECT_EQ(state_.IdRxBuf.size(), start.size());
    then();
    world_.run(20 * kMillisecond);
    EXPECT_EQ(state_.IdRxBuf, "");
    unit.answers = {{kWho, kIdAnswer}, {kVersions, kVersionAnswer}};
    complete();
    form_.Unload();
    state_.GotId = state_.SerialRead = state_.VersionsRead = false;
  }
}

TEST_F(VersionReadoutTest, AnAnswerTakenByAnEventInsideIsNotTakenTwice) {
  load();
  wire_.deliver(bytes(kIdAnswer.substr(0, 20)));
  world_.queue.PumpEvents();
  EXPECT_FALSE(state_.GotId);
  wire_.deliver(bytes(kIdAnswer.substr(20)));
  world_.queue.post([this] {
    wire_.deliver(bytes("55"));
    world_.queue.PumpEvents();
    EXPECT_TRUE(state_.GotId);
  });
  world_.run(10 * kMillisecond);
  EXPECT_EQ(state_.IdQueueWrite, 1);
  EXPECT_EQ(state_.IdQueueRead, 1);
  wire_.deliver(bytes(kVersionAnswer));
  world_.run(10 * kMillisecond);
  EXPECT_TRUE(state_.VersionsComplete);
  // Events run before an answer is taken, but for the two codes of which none comes in pieces.
  for (const auto& [frame, taken] : {std::pair{"02 01 01 6E 5F 6E 80", false},
                                     {"02 01 01 01 6E 01 80", true},
                                     {"02 01 01 01 00 01 80", true},
                                     {"02 01 01 01 6F 01 80", false}}) {
    std::size_t inBuffer = 0;
    wire_.deliver(bytes(frame));
    world_.queue.post([&] { inBuffer = state_.IdRxBuf.size(); });
    world_.run(10 * kMillisecond);
    EXPECT_EQ(inBuffer, taken ? 0 : 7) << frame;
  }
}

TEST_F(VersionReadoutTest, UnloadedInAnyWaitItSendsNothingMoreAndLeavesThePortClosed) {
  for (const auto& [what, when] : {std::pair{"delay of the beginning", 50 * kMillisecond},
                                   {"between ticks", 350 * kMillisecond},
                                   {"change of speed", 2100 * kMillisecond},
                                   {"change back", 4200 * kMillisecond}}) {
    world_.after(when, [this] { world_.queue.post([this] { form_.Unload(); }); });
    const Micros start = world_.time.now();
    load();
    world_.run(start + when + kMillisecond - std::min(world_.time.now(), start + when));
    EXPECT_FALSE(form_.Loaded) << what;
    EXPECT_FALSE(wire_.isOpen()) << what;
    EXPECT_EQ(pointer(), Pointer::Normal) << what;
    const Bytes sent = wire_.sent();
    const int opens = wire_.opens();
    world_.run(6 * kSecond);
    EXPECT_EQ(hex(wire_.sent()), hex(sent)) << what;
    EXPECT_EQ(wire_.opens(), opens) << what;
  }
  EXPECT_TRUE(world_.screen.boxes().empty());
}

TEST_F(VersionReadoutTest, LoadedAgainInsideAnOldWaitOnlyTheNewConversationGoesOn) {
  FakeUnit& unit = unitAt(57600);
  world_.after(2100 * kMillisecond, [this] {
    world_.queue.post([this] {
      form_.Unload();
      load();
    });
  });
  unit.delay = 10 * kSecond;
  load();
  world_.run(2300 * kMillisecond);
  unit.delay = kMillisecond;
  complete();
  EXPECT_FALSE(state_.LegacyLink);
  EXPECT_EQ(wire_.settings()->baud, 57600);
  EXPECT_TRUE(world_.screen.boxes().empty());
}

TEST_F(VersionReadoutTest, AUnitThatTellsLessThanTheOneBeforeTakesNothingOverFromIt) {
  state_.ProductCode = "VC";
  FakeUnit& unit = unitAt(19200, kVelarcId, kVelarcVersions);
  load();
  complete();
  EXPECT_EQ(state_.VrcHubVer3, 3);
  form_.Unload();
  unit.answers = {{kWho, "02 00 02 2C 02 00 00 03 67 00 00 00 01 00 00 38 80"}};  // a DSP of 4.87 tells of nothing else
  load();
  complete();
  EXPECT_EQ(state_.VrcDspVer2, 103);
  for (const auto version : {&RunState::VrcHubVer1, &RunState::VrcHubVer2, &RunState::VrcHubVer3, &RunState::VrcFrontAVer1}) {
    EXPECT_EQ(state_.*version, 0);
  }
}

TEST_F(VersionReadoutTest, APortThatFailsIsToldOnceAndTryAgainReadsWhenItIsBack) {
  wire_.openFailure = Failure(failure_number::kPortInUse, "The port is in use");
  world_.screen.onBox = [this](const MessageBox&) { EXPECT_EQ(pointer(), Pointer::Normal); };
  form_.ShowModal();
  ASSERT_EQ(world_.screen.boxes().size(), 1U);
  EXPECT_EQ(world_.screen.boxes()[0].text, "Error: The port is in use (#8005)");
  EXPECT_EQ(world_.screen.boxes()[0].icon, MessageIcon::Critical);
  EXPECT_EQ(state_.ErrorText, world_.screen.boxes()[0].text);
  EXPECT_FALSE(form_.Loaded || form_.Visible);
  EXPECT_EQ(pointer(), Pointer::Normal);
  wire_.openFailure.reset();
  for (const Micros when : {50 * kMillisecond, 350 * kMillisecond, 2100 * kMillisecond}) {
    const std::size_t boxes = world_.screen.boxes().size();
    world_.after(when, [this] { wire_.vanish(); });
    form_.Show();
    load();
    world_.run(5 * kSecond);
    EXPECT_EQ(world_.screen.boxes().size(), boxes + 1) << "pulled after " << when;
    EXPECT_TRUE(world_.screen.boxes().back().text.starts_with("Error: ")) << world_.screen.boxes().back().text;
    EXPECT_FALSE(form_.Timer1.enabled());
    EXPECT_EQ(pointer(), Pointer::Normal);
    EXPECT_EQ(world_.activity.now().doing, Doing::Nothing);
    wire_.openFailure.reset();
    unitAt(57600);
    tryAgain();
    complete(kSecond);
    EXPECT_EQ(pointer(), Pointer::Hourglass);
    form_.Unload();
    unit_.reset();
  }
}

TEST_F(VersionReadoutTest, TryAgainReadsTheIdAnewOnTheOpenPort) {
  FakeUnit& unit = unitAt(57600);
  load();
  form_.Show();
  complete();
  world_.run(kSecond);
  unit.answers[kWho] = "02 00 02 2D 02 00 00 02 1F 00 00 00 03 00 00 55 80";
  const Bytes sent = wire_.sent();
  tryAgain();
  world_.run(2 * kSecond);
  EXPECT_EQ(state_.SerialNumber, 2000301);
  EXPECT_EQ(wire_.opens(), 1);
  EXPECT_EQ(hex(wire_.sent()).substr(hex(sent).size() + 1, 20), kResetFrame);
  EXPECT_FALSE(form_.Timer1.enabled());
  EXPECT_FALSE(state_.VersionsComplete) << "after a finished reading only the ID is read anew";
}

}  // namespace
}  // namespace firmlane::test
