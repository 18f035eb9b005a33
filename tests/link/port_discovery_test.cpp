#include "link/port_discovery.h"

#include <gmock/gmock.h>

#include <deque>

#include "fake_unit.h"
#include "link_world.h"

namespace firmlane::test {
namespace {

class PortDiscoveryTest : public testing::Test {
 protected:
  PortDiscoveryTest() {
    world_.screen.answerOthers();
    form_.Show();
  }

  FakeUnit& unitOn(int port, int baud = 57600, const std::string& answer = kIdAnswer) {
    FakeUnit& unit = units_.emplace_back(world_, port, baud);
    unit.answers[kWho] = answer;
    return unit;
  }
  void click(Control& control) { EXPECT_EQ(world_.host.click(control), std::nullopt) << control.name(); }
  void search() {
    click(form_.Command2);
    world_.run(10 * kSecond);
  }
  std::string boxes() {
    std::string text;
    for (const MessageBox& box : world_.screen.boxes()) {
      text += "[" + box.title + ": " + box.text + "]";
    }
    return text;
  }

  LinkWorld world_;
  RunState& state_ = world_.state;
  FrmPort& form_ = world_.frmPort;
  PortDiscovery discovery_{world_.mainPort, world_.commands, world_.receivePath, world_.activity, state_, form_};
  std::deque<FakeUnit> units_;
};

TEST_F(PortDiscoveryTest, TheFirstPortWithAUnitIsTaken) {
  VirtualWire& pulled = world_.wires.add(1);
  world_.after(50 * kMillisecond, [&] { pulled.vanish(); });
  world_.wires.add(2).openFailure = Failure(failure_number::kPortInUse, "The port is in use");
  FakeUnit& unit = unitOn(3);
  FakeUnit& other = unitOn(7);
  world_.receivePath.ExpectFrameEnd = true;  // left by a flash run that broke off
  state_.FlashPhase = 3;
  world_.mainPort.setHandshake(Handshake::Rts);
  EXPECT_GT(form_.Left, 0) << "the window stands in the middle";
  form_.Option1(7).Value = true;
  form_.Unload();
  form_.Show();
  EXPECT_TRUE(form_.Option1(0).Value);
  Activity::Phase phase;
  world_.after(250 * kMillisecond, [&] { phase = world_.activity.now(); });
  search();
  EXPECT_STREQ(nameOf(phase.doing), "searching ports");
  EXPECT_EQ(std::tuple(phase.part, phase.parts, phase.limit), std::tuple(3, 16, 0));
  EXPECT_EQ(world_.mainPort.lineSettings().handshake, Handshake::None);
  EXPECT_EQ(boxes(), "[LWX Firmlane: COM3 found, now Connecting]");
  EXPECT_EQ(world_.screen.boxes()[0].icon, MessageIcon::Information);
  EXPECT_EQ(state_.ComPort, 3);
  EXPECT_TRUE(state_.PortChosen);
  EXPECT_FALSE(state_.PortSearching || form_.Loaded || world_.mainPort.IsOpen());
  EXPECT_EQ(hex(unit.wire().sent()), "02 00 00 00 72 72 80 02 00 00 00 01 01 80");
  EXPECT_EQ(other.wire().opens(), 0);
}

TEST_F(PortDiscoveryTest, TheLineIsTheOneOfTheProduct) {
  for (const auto& [product, baud, found] :
       {std::tuple{"WS", 57600, true}, {"", 57600, true}, {"VC", 19200, true}, {"WS", 19200, false}, {"VC", 57600, false}}) {
    units_.clear();
    form_.Show();
    state_.ProductCode = product;
    state_.PortChosen = false;
    unitOn(12, baud);
    search();
    EXPECT_EQ(state_.PortChosen, found) << product << baud;
    EXPECT_EQ(state_.ComPort, 12);
  }
}

TEST_F(PortDiscoveryTest, WhatIsNotAnAnswerInTimeIsNoUnitAndHidesNone) {
  FakeUnit& late = unitOn(2);
  late.delay = 150 * kMillisecond;
  unitOn(4, 57600, "02 00 02 2C 02 00 00 02 1F 00 00 00 02 00 00 80");  // 16 bytes
  world_.wires.add(kPortCount);                                         // nothing on it
  search();
  EXPECT_EQ(boxes(), "[Tolvex Firmlane: No valid ports with receivers connected found!]");
  EXPECT_FALSE(state_.PortChosen || state_.PortSearching || world_.mainPort.IsOpen());
  EXPECT_TRUE(form_.Loaded);
  EXPECT_EQ(late.count(kWho), 1);
  unitOn(5);
  search();
  EXPECT_EQ(state_.ComPort, 5);
  unitOn(1);
  form_.Show();
  world_.mainPort.Open();
  search();
  EXPECT_EQ(state_.ComPort, 1) << "the port was left open";
}

TEST_F(PortDiscoveryTest, ALateAnswerOfOneSearchIsNoUnitInTheNext) {
  VirtualWire& dead = world_.wires.add(1);
  FakeUnit& unit = unitOn(kPortCount);
  int searches = 0;
  // Until the system gives it away, or only the adapter, or the adapter still holds it when the question goes out.
  for (const auto& [late, latency] :
       {std::pair{Micros{0}, Micros{0}}, {20 * kMillisecond, Micros{0}}, {95 * kMillisecond, 20 * kMillisecond}}) {
    state_.PortChosen = false;
    state_.FlashPhase = static_cast<std::int16_t>(++searches);
    form_.Show();
    dead.latency = latency;
    dead.deliver(bytes(kIdAnswer));
    dead.changed = [&dead, this, after = late] {
      if (dead.isOpen()) {
        world_.after(after, [&dead] { dead.deliver(bytes(kIdAnswer)); });
      }
    };
    search();
    EXPECT_EQ(state_.ComPort, kPortCount);
    EXPECT_EQ(unit.count(kWho), searches);
  }
  dead.changed = nullptr;
}

TEST_F(PortDiscoveryTest, APortChosenByHandMustOpenButNeedsNoUnit) {
  world_.wires.add(9);
  EXPECT_FALSE(form_.Command1.Visible || form_.Label1.Visible || form_.Option1(0).Visible || form_.Option1(8).Visible);
  click(form_.Command3);
  world_.run(kMillisecond);
  EXPECT_EQ(form_.Height, 6000);
  EXPECT_TRUE(form_.Label1.Visible && form_.Option1(0).Visible);
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
  EXPECT_FALSE(form_.Loaded || world_.mainPort.IsOpen());
  EXPECT_EQ(hex(world_.wires.find(9)->sent()), "");
}

TEST_F(PortDiscoveryTest, ClosingTheWindowEndsTheSearchInEitherWait) {
  VirtualWire& wire = world_.wires.add(1);
  for (const Micros when : {50 * kMillisecond, 150 * kMillisecond}) {
    form_.Show();
    click(form_.Command2);
    world_.after(when, [this] { EXPECT_EQ(world_.host.close(form_), std::nullopt); });
    world_.run(when + kMillisecond);
    EXPECT_FALSE(state_.PortSearching || wire.isOpen());
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

TEST_F(PortDiscoveryTest, DuringASearchItsButtonIsHarmlessAndOkTakesTheUsersChoice) {
  world_.wires.add(1);
  FakeUnit& unit = unitOn(2);
  VirtualWire& chosen = world_.wires.add(9);
  click(form_.Command3);
  click(form_.Command2);
  for (const Micros when : {30 * kMillisecond, 250 * kMillisecond}) {
    world_.after(when, [this] { click(form_.Command2); });
  }
  world_.run(5 * kSecond);
  EXPECT_EQ(state_.ComPort, 2);
  EXPECT_EQ(unit.count(kWho), 1);
  EXPECT_EQ(world_.screen.boxes().size(), 1U);

  form_.Show();
  click(form_.Command3);
  click(form_.Command2);
  world_.after(30 * kMillisecond, [this] {
    click(form_.Option1(8));
    click(form_.Command1);
  });
  world_.run(5 * kSecond);
  EXPECT_EQ(state_.ComPort, 9);
  EXPECT_EQ(chosen.opens(), 1);
  EXPECT_FALSE(state_.PortSearching);
  EXPECT_EQ(world_.screen.boxes().size(), 1U);
}

}  // namespace
}  // namespace firmlane::test
