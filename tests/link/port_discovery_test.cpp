#include "link/port_discovery.h"

#include <gmock/gmock.h>

#include <deque>

#include "fake_unit.h"

namespace firmlane::test {
namespace {

class PortDiscoveryTest : public testing::Test {
 protected:
  PortDiscoveryTest() {
    receive_.FrameLength.fill();
    world_.screen.answerOthers();
    world_.frmPort.Show();
  }

  FakeUnit& unitOn(int port, int baud = 57600, const std::string& answer = kIdAnswer) {
    FakeUnit& unit = units_.emplace_back(world_, port, baud);
    unit.answers[kWho] = answer;
    return unit;
  }
  void click(Control& control) { EXPECT_EQ(world_.host.click(control), std::nullopt) << control.name(); }
  void search() {
    click(world_.frmPort.Command2);
    world_.run(10 * kSecond);
  }
  std::string boxes() {
    std::string text;
    for (const MessageBox& box : world_.screen.boxes()) {
      text += "[" + box.title + ": " + box.text + "]";
    }
    return text;
  }

  World world_;
  RunState& state_ = world_.state;
  FrmPort& form_ = world_.frmPort;
  CommandSet commands_{world_.mainPort, state_, world_.frmAuto, world_.frmVRCAuto};
  ShortDelay delay_{world_.queue, state_, world_.form1};
  ReceivePath receive_{world_.host, world_.mainPort, commands_, delay_, state_, world_.form1, world_.frmAuto, world_.frmVRCAuto};
  PortDiscovery discovery_{world_.mainPort, commands_, receive_, world_.activity, state_, form_};
  std::deque<FakeUnit> units_;
};

const std::string kNone = "[Tolvex Firmlane: No valid ports with receivers connected found!]";

TEST_F(PortDiscoveryTest, TheFirstPortWithAUnitIsTaken) {
  world_.wires.add(1);  // a port with nothing on it
  world_.wires.add(2).openFailure = Failure(failure_number::kPortInUse, "The port is in use");
  FakeUnit& unit = unitOn(3);
  FakeUnit& other = unitOn(7);
  receive_.ExpectFrameEnd = true;  // left by a flash run that broke off
  state_.FlashPhase = 3;
  world_.mainPort.setHandshake(Handshake::Rts);
  EXPECT_GT(form_.Left, 0) << "the window stands in the middle";
  form_.Option1(7).Value = true;
  form_.Unload();
  form_.Show();
  EXPECT_EQ(form_.Option1.selected(), 0);
  search();
  EXPECT_EQ(world_.mainPort.lineSettings().handshake, Handshake::None);
  EXPECT_EQ(boxes(), "[LWX Firmlane: COM3 found, now Connecting]");
  EXPECT_EQ(world_.screen.boxes()[0].icon, MessageIcon::Information);
  EXPECT_EQ(state_.ComPort, 3);
  EXPECT_TRUE(state_.PortChosen);
  EXPECT_FALSE(state_.PortSearching);
  EXPECT_FALSE(form_.Loaded);
  EXPECT_FALSE(world_.mainPort.IsOpen());
  EXPECT_EQ(hex(unit.wire().sent()), "02 00 00 00 72 72 80 02 00 00 00 01 01 80");
  EXPECT_EQ(other.wire().opens(), 0);
}

TEST_F(PortDiscoveryTest, TheLineIsTheOneOfTheProduct) {
  struct Case {
    const char* product;
    int baud;
    const char* result;
  };
  for (const Case& c :
       {Case{"WS", 57600, "found"}, {"", 57600, "found"}, {"VC", 19200, "found"}, {"WS", 19200, "none"}, {"VC", 57600, "none"}}) {
    units_.clear();
    form_.Show();
    state_.ProductCode = c.product;
    state_.PortChosen = false;
    unitOn(12, c.baud);
    search();
    EXPECT_EQ(state_.PortChosen ? "found" : "none", std::string(c.result)) << c.product << c.baud;
    EXPECT_EQ(state_.ComPort, 12);
  }
}

TEST_F(PortDiscoveryTest, WhatIsNotAnAnswerInTimeIsNoUnit) {
  FakeUnit& late = unitOn(2);
  late.delay = 150 * kMillisecond;
  unitOn(4, 57600, "02 00 02 2C 02 00 00 02 1F 00 00 00 02 00 00 80");  // 16 bytes
  search();
  EXPECT_EQ(boxes(), kNone);
  EXPECT_FALSE(state_.PortChosen);
  EXPECT_FALSE(state_.PortSearching);
  EXPECT_TRUE(form_.Loaded);
  EXPECT_FALSE(world_.mainPort.IsOpen());
  EXPECT_EQ(late.count(kWho), 1);
}

TEST_F(PortDiscoveryTest, ALateAnswerOfOneSearchIsNoUnitInTheNext) {
  VirtualWire& dead = world_.wires.add(1);
  FakeUnit& unit = unitOn(kPortCount);
  for (const Micros latency : {Micros{0}, 20 * kMillisecond}) {  // until the system, or only the adapter, gives it away
    state_.PortChosen = false;
    state_.FlashPhase = static_cast<std::int16_t>(latency == 0 ? 1 : 2);
    form_.Show();
    dead.deliver(bytes(kIdAnswer));
    dead.changed = [&] {
      if (dead.isOpen()) {
        world_.after(latency, [&] { dead.deliver(bytes(kIdAnswer)); });
      }
    };
    search();
    EXPECT_EQ(state_.ComPort, kPortCount);
  }
  EXPECT_EQ(unit.count(kWho), 2);
  dead.changed = nullptr;
}

TEST_F(PortDiscoveryTest, WhatOnePortLeavesOverDoesNotHideTheNextUnit) {
  unitOn(4, 57600, "02 00 02 2C 02 00 00 02 1F 00 00 00 02 00 00 80");
  unitOn(5);
  search();
  EXPECT_EQ(state_.ComPort, 5);
}

TEST_F(PortDiscoveryTest, AnAnswerAfterAFailedSearchHasNoEffect) {
  world_.wires.add(1);
  search();
  world_.mainPort.setNumber(1);
  world_.mainPort.Open();
  world_.wires.find(1)->deliver(bytes(kIdAnswer));
  world_.run(kSecond);
  EXPECT_FALSE(state_.PortFound);
}

TEST_F(PortDiscoveryTest, APortChosenByHandMustOpenButNeedsNoUnit) {
  world_.wires.add(9);
  EXPECT_FALSE(form_.Command1.Visible || form_.Label1.Visible || form_.Option1(8).Visible);
  const int height = form_.Height;
  click(form_.Command3);
  world_.run(kMillisecond);
  EXPECT_GT(form_.Height, height);
  EXPECT_TRUE(form_.Label1.Visible);
  click(form_.Option1(10));
  click(form_.Command1);
  world_.run(2 * kSecond);
  EXPECT_EQ(boxes(), "[Tolvex Firmlane: Error opening port: There is no port 11 (#8002)]");
  EXPECT_EQ(world_.screen.boxes()[0].icon, MessageIcon::Critical);
  EXPECT_EQ(state_.ErrorText, world_.screen.boxes()[0].text);
  EXPECT_TRUE(form_.Loaded);
  EXPECT_FALSE(state_.PortChosen);
  click(form_.Option1(8));
  click(form_.Command1);
  world_.run(kMillisecond);
  EXPECT_EQ(state_.ComPort, 9);
  EXPECT_TRUE(state_.PortChosen);
  EXPECT_FALSE(form_.Loaded);
  EXPECT_FALSE(world_.mainPort.IsOpen());
  EXPECT_EQ(hex(world_.wires.find(9)->sent()), "");
}

TEST_F(PortDiscoveryTest, ClosingTheWindowEndsTheSearchInEitherWait) {
  for (const Micros when : {50 * kMillisecond, 150 * kMillisecond}) {
    VirtualWire& wire = world_.wires.add(1);
    form_.Show();
    click(form_.Command2);
    world_.after(when, [this] { EXPECT_EQ(world_.host.close(form_), std::nullopt); });
    world_.run(when + kMillisecond);
    EXPECT_FALSE(state_.PortSearching);
    EXPECT_FALSE(wire.isOpen());
    const Bytes sent = wire.sent();
    world_.run(5 * kSecond);
    EXPECT_EQ(hex(wire.sent()), hex(sent)) << "sent after the window was closed";
    EXPECT_FALSE(state_.PortChosen);
    EXPECT_EQ(boxes(), "");
  }
  unitOn(6);
  form_.Show();
  search();
  EXPECT_EQ(state_.ComPort, 6) << "a later search works";
}

TEST_F(PortDiscoveryTest, AWindowOpenedAgainInsideAGivenUpSearchSearchesForItself) {
  world_.wires.add(1);
  unitOn(2);
  click(form_.Command2);
  world_.after(50 * kMillisecond, [this] {
    world_.queue.post([this] {
      form_.Unload();
      form_.Show();
      discovery_.AutoSearch();
      world_.mainPort.setNumber(1);
      world_.mainPort.Open();  // what the caller does with the port it asked for
    });
  });
  world_.run(5 * kSecond);
  EXPECT_EQ(state_.ComPort, 2);
  EXPECT_EQ(world_.screen.boxes().size(), 1U);
  EXPECT_TRUE(world_.mainPort.IsOpen()) << "the given up search has closed a port that is not its own";
}

TEST_F(PortDiscoveryTest, ButtonsStayHarmlessDuringASearch) {
  world_.wires.add(1);
  FakeUnit& unit = unitOn(2);
  click(form_.Command3);
  click(form_.Command2);
  world_.after(30 * kMillisecond, [this] { click(form_.Command2); });
  world_.after(250 * kMillisecond, [this] { click(form_.Command2); });
  world_.run(5 * kSecond);
  EXPECT_EQ(state_.ComPort, 2);
  EXPECT_EQ(unit.count(kWho), 1);
  EXPECT_EQ(world_.screen.boxes().size(), 1U);
}

TEST_F(PortDiscoveryTest, OkDuringASearchTakesTheUsersChoice) {
  world_.wires.add(1);
  world_.wires.add(9);
  unitOn(3);
  click(form_.Command3);
  click(form_.Command2);
  world_.after(30 * kMillisecond, [this] {
    click(form_.Option1(8));
    click(form_.Command1);
  });
  world_.run(5 * kSecond);
  EXPECT_EQ(state_.ComPort, 9);
  EXPECT_EQ(world_.wires.find(9)->opens(), 1);
  EXPECT_FALSE(state_.PortSearching);
  EXPECT_EQ(boxes(), "");
}

TEST_F(PortDiscoveryTest, APulledAdapterIsAPortWithoutAUnit) {
  VirtualWire& wire = world_.wires.add(1);
  unitOn(2);
  click(form_.Command2);
  world_.after(50 * kMillisecond, [&wire] { wire.vanish(); });
  world_.run(5 * kSecond);
  EXPECT_EQ(state_.ComPort, 2);
}

TEST_F(PortDiscoveryTest, ExitPassesThroughASearch) {
  world_.wires.add(1);
  click(form_.Command2);
  world_.after(50 * kMillisecond, [this] { world_.queue.post([] { throw ProgramEnded{}; }); });
  EXPECT_THROW(world_.run(kSecond), ProgramEnded);
}

}  // namespace
}  // namespace firmlane::test
