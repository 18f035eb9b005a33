#include "platform/serial_port.h"

#include <gtest/gtest.h>

#include "world.h"

namespace firmlane::test {
namespace {

constexpr const char* kGone = "Serial port COM 3 has gone: its adapter was pulled (#8020)";

class SerialPortTest : public testing::Test {
 protected:
  SerialPortTest() {
    world_.mainPort.setNumber(3);
    world_.mainPort.setSettings("9600,N,8,1");
  }

  static std::string failureOf(const std::function<void()>& use) {
    try {
      use();
    } catch (const Failure& failure) {
      return failureText("", failure);
    }
    return "";
  }

  World world_;
  VirtualWire& wire_ = world_.wires.add(3);
  SerialPort& port_ = world_.mainPort;
};

TEST_F(SerialPortTest, WritingRunsAtMostSixtyFourBytesAheadOfTheLine) {
  port_.Open();
  const Micros start = world_.time.now();
  std::size_t heard = 0;
  wire_.heard = [&](std::uint8_t) { ++heard; };
  for (int i = 0; i < 1000; ++i) {
    port_.Write({0x55});
    EXPECT_LE(static_cast<std::size_t>(i) + 1 - heard, 65U);
  }
  const Micros lineTime = 1000 * 10 * kSecond / 9600;
  EXPECT_LE(lineTime - (world_.time.now() - start), 64 * 10 * kSecond / 9600);
}

TEST_F(SerialPortTest, ClosingLosesNothingThatWasWritten) {
  port_.Open();
  std::size_t heard = 0;
  wire_.heard = [&](std::uint8_t) { ++heard; };
  for (int i = 0; i < 50; ++i) {
    port_.Write({0x55});
  }
  port_.Close();
  EXPECT_EQ(heard, 50U);
}

TEST_F(SerialPortTest, ClosingWaitsHalfASecondForALineThatIsHeldBack) {
  port_.setHandshake(Handshake::Rts);
  std::size_t heard = 0;
  wire_.heard = [&](std::uint8_t) { ++heard; };
  struct Case {
    const char* what;
    std::function<void()> meanwhile;  // 200 ms after the bytes would have left
    Micros closedAfter;
    std::size_t heard;
  };
  for (const Case& c : {Case{"let go", [&] { wire_.holdBack(false); }, 230 * kMillisecond, 20},
                        {"pulled", [&] { wire_.vanish(); }, 200 * kMillisecond, 0},
                        {"held", [] {}, 500 * kMillisecond, 0}}) {
    heard = 0;
    wire_.openFailure.reset();
    wire_.holdBack(true);
    port_.Open();
    port_.Write(Bytes(20, 0x55));
    const Micros left = world_.time.now() + 20 * 10 * kSecond / 9600;
    world_.time.at(left + 200 * kMillisecond, c.meanwhile);
    port_.Close();
    EXPECT_NEAR(static_cast<double>(world_.time.now() - left) / kMillisecond, static_cast<double>(c.closedAfter) / kMillisecond,
                c.closedAfter == 500 * kMillisecond ? 0.1 : 6)
        << c.what;
    EXPECT_EQ(heard, c.heard) << c.what;
    world_.run(kSecond);
  }
}

TEST_F(SerialPortTest, AnOpeningStartsEmptyAndAReadTakesAllThatIsIn) {
  port_.setReceiveThreshold(1);
  std::string events;
  port_.OnComm = [&] { events += hex(port_.Read()) + "|"; };
  for (const Micros latency : {Micros{0}, 16 * kMillisecond}) {
    events.clear();
    wire_.latency = latency;
    wire_.send(bytes("02 00 02"), 9600);  // nobody listens
    world_.run(50 * kMillisecond);
    port_.Open();
    EXPECT_EQ(hex(port_.Read()), "") << "of an earlier time";
    wire_.deliver(bytes("41 42"));
    EXPECT_EQ(hex(port_.Read()), "41 42") << "no event has told of them";
    world_.after(0, [this] { wire_.deliver(bytes("43")); });
    EXPECT_EQ(hex(port_.Read()), "43") << "in at this very moment";
    world_.run(50 * kMillisecond);
    EXPECT_EQ(events, "");
    wire_.deliver(bytes("44"));
    wire_.deliver(bytes("45"));
    world_.run(50 * kMillisecond);
    EXPECT_EQ(events, "44 45|");
    wire_.deliver(bytes("46"));
    port_.Close();
    port_.Open();
    EXPECT_EQ(hex(port_.Read()), "") << "from before the second opening";
    world_.run(50 * kMillisecond);
    EXPECT_EQ(events, "44 45|");
    port_.Close();
  }
}

TEST_F(SerialPortTest, AUnitThatHoldsTheLineBackHoldsTheWriteBack) {
  port_.setHandshake(Handshake::Rts);
  port_.Open();
  wire_.holdBack(true);
  world_.after(50 * kSecond, [&] { wire_.holdBack(false); });
  world_.after(50 * kSecond + 5 * kMillisecond, [&] { wire_.holdBack(true); });  // a unit that takes a little lives
  world_.after(100 * kSecond, [&] { wire_.holdBack(false); });
  for (int i = 0; i < 2; ++i) {
    port_.Write(Bytes(200, 0x55));
  }
  EXPECT_GE(world_.time.now(), 100 * kSecond);
}

TEST_F(SerialPortTest, AUnitThatHoldsTheLineBackForGoodEndsTheWrite) {
  port_.setHandshake(Handshake::Rts);
  port_.Open();
  wire_.holdBack(true);
  int written = 0;
  const auto writeOn = [&] {
    for (;; ++written) {
      port_.Write({0x55});
    }
  };
  EXPECT_EQ(failureOf(writeOn), "The unit takes no more data (#8013)");
  EXPECT_EQ(written, 65);
  EXPECT_EQ(world_.time.now() / kMillisecond, 60'034) << "a minute behind the time at which the byte would have gone";
  EXPECT_TRUE(port_.IsOpen());
}

TEST_F(SerialPortTest, ExitEndsAWriteThatIsHeldBack) {
  port_.setHandshake(Handshake::Rts);
  port_.Open();
  wire_.holdBack(true);
  world_.after(5 * kSecond, [&] { world_.queue.post([] { throw ProgramEnded{}; }); });
  int written = 0;
  const auto writeOn = [&] {
    for (;; ++written) {
      port_.Write({0x55});
    }
  };
  EXPECT_THROW(writeOn(), ProgramEnded);
  EXPECT_EQ(world_.time.now() / kSecond, 5);
  world_.after(5 * kSecond, [&] { wire_.vanish(); });
  EXPECT_EQ(failureOf(writeOn), kGone);
  EXPECT_EQ(written, 65) << "what has not left is not taken for written";
  EXPECT_EQ(world_.time.now() / kSecond, 10);
}

TEST_F(SerialPortTest, TheEventComesWhenTheThresholdIsReachedAndOncePerPass) {
  port_.setReceiveThreshold(9);
  port_.Open();
  std::vector<std::size_t> seen;
  port_.OnComm = [&] { seen.push_back(port_.Read().size()); };
  wire_.deliver(Bytes(8, 0x41));
  world_.run(kMillisecond);
  EXPECT_TRUE(seen.empty());
  wire_.deliver(Bytes(1, 0x41));
  world_.run(kMillisecond);
  wire_.deliver(Bytes(9, 0x41));
  wire_.deliver(Bytes(20, 0x41));
  world_.run(kMillisecond);
  EXPECT_EQ(seen, (std::vector<std::size_t>{9, 29}));

  wire_.deliver(Bytes(9, 0x41));
  port_.Read();
  wire_.deliver(Bytes(3, 0x41));
  world_.run(kMillisecond);
  EXPECT_EQ(seen.size(), 2U) << "the event was for bytes that somebody else has read; a frame would be torn";
  port_.setReceiveThreshold(1);
  world_.run(kMillisecond);
  EXPECT_EQ(seen.back(), 3U) << "they stood in front of the next frame";
  port_.setReceiveThreshold(0);
  wire_.deliver(Bytes(3, 0x41));
  world_.run(kMillisecond);
  EXPECT_EQ(seen.size(), 3U) << "without a threshold there is no event";
}

TEST_F(SerialPortTest, APulledAdapterIsAClosedPortThatSaysSo) {
  port_.setReceiveThreshold(1);
  port_.OnComm = [] { ADD_FAILURE() << "bytes of a closed port"; };
  port_.Open();
  wire_.deliver(Bytes(1, 0x41));
  port_.Write(Bytes(64, 0x55));
  wire_.vanish();
  EXPECT_FALSE(port_.IsOpen());
  world_.run(0);
  EXPECT_EQ(failureOf([&] { port_.Write({1}); }), kGone);
  EXPECT_THROW(port_.Open(), Failure);
  wire_.openFailure.reset();
  port_.Open();
  EXPECT_EQ(hex(port_.Read()), "") << "what came before the loss says nothing of this opening";
  port_.Write({1});
  EXPECT_EQ(world_.time.now(), 0) << "nor does what was still to leave then";
  wire_.deliver(Bytes(1, 0x41));
  port_.Close();
  EXPECT_EQ(hex(port_.Read()), "");
  world_.run(kMillisecond);
  EXPECT_EQ(failureOf([&] { port_.Write({1}); }), "The serial port is not open (#8018)")
      << "that it had gone once is of no interest any more";
}

TEST_F(SerialPortTest, APortThatIsNoMoreIsClosedAndHearsNothing) {
  VirtualDriver driver(world_.wires);
  auto port = std::make_unique<SerialPort>(world_.queue, driver);
  port->setNumber(3);
  port->Open();
  port->setSettings("19200,N,8,1");
  EXPECT_EQ(wire_.settings()->baud, 19200);
  port.reset();
  EXPECT_FALSE(wire_.isOpen() || driver.received || driver.lost);
}

TEST_F(SerialPortTest, ALossWakesAWait) {
  port_.Open();
  world_.after(kSecond, [&] { wire_.vanish(); });
  world_.queue.WaitEvents();
  EXPECT_EQ(world_.time.now(), kSecond);
  EXPECT_EQ(failureOf([this] { port_.requireOpen(); }), kGone);
}

TEST_F(SerialPortTest, OpenFailuresCarryTheirNumber) {
  for (const int number : {0, 1, 16, 17}) {
    world_.wires.add(number);  // hardware that only the numbers' own bounds keep out of reach
  }
  const std::pair<int, const char*> numbers[] = {{0, "Invalid port number 0 (#8002)"},
                                                 {1, ""},
                                                 {16, ""},
                                                 {17, "Invalid port number 17 (#8002)"},
                                                 {4, "There is no port 4 (#8002)"}};
  for (const auto& [number, failure] : numbers) {
    port_.setNumber(number);
    EXPECT_EQ(failureOf([&] { port_.Open(); }), failure);
    EXPECT_EQ(failureOf([&] { port_.Open(); }), *failure == '\0' ? "The serial port is already open (#8005)" : failure);
    port_.Close();
  }
  for (const char* settings : {"fast", "0,N,8,1", "-9600,N,8,1", "9600,E,8,1", "9600", ""}) {
    EXPECT_EQ(failureOf([&] { port_.setSettings(settings); }),
              std::string("Invalid serial port settings: ") + settings + " (#5)");
  }
  EXPECT_EQ(failureOf([&] { port_.setSettings("1,n,8,1"); }), "");
}

}  // namespace
}  // namespace firmlane::test
