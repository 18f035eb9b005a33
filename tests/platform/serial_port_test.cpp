#include "platform/serial_port.h"

#include <gtest/gtest.h>

#include "world.h"

namespace firmlane::test {
namespace {

class SerialPortTest : public testing::Test {
 protected:
  SerialPortTest() {
    world_.mainPort.setNumber(3);
    world_.mainPort.setSettings("9600,N,8,1");
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

TEST_F(SerialPortTest, AUnitThatHoldsTheLineBackHoldsTheWriteBack) {
  port_.setHandshake(Handshake::Rts);
  port_.Open();
  wire_.holdBack(true);
  world_.after(3 * kSecond, [&] { wire_.holdBack(false); });
  for (int i = 0; i < 200; ++i) {
    port_.Write({0x55});
  }
  EXPECT_GE(world_.time.now(), 3 * kSecond);
}

TEST_F(SerialPortTest, AUnitThatHoldsTheLineBackForGoodEndsTheWrite) {
  port_.setHandshake(Handshake::Rts);
  port_.Open();
  wire_.holdBack(true);
  const auto writeOn = [&] {
    for (;;) {
      port_.Write({0x55});
    }
  };
  EXPECT_THROW(writeOn(), Failure);
  EXPECT_EQ(world_.time.now() / kSecond, 60);
  EXPECT_TRUE(port_.IsOpen());
}

TEST_F(SerialPortTest, ExitEndsAWriteThatIsHeldBack) {
  port_.setHandshake(Handshake::Rts);
  port_.Open();
  wire_.holdBack(true);
  world_.after(5 * kSecond, [&] { world_.queue.post([] { throw ProgramEnded{}; }); });
  const auto writeOn = [&] {
    for (;;) {
      port_.Write({0x55});
    }
  };
  EXPECT_THROW(writeOn(), ProgramEnded);
  EXPECT_EQ(world_.time.now() / kSecond, 5);
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
  wire_.deliver(Bytes(20, 0x41));
  world_.run(kMillisecond);
  EXPECT_EQ(seen, std::vector<std::size_t>{29});

  wire_.deliver(Bytes(9, 0x41));
  port_.Read();
  wire_.deliver(Bytes(3, 0x41));
  world_.run(kMillisecond);
  EXPECT_EQ(seen.size(), 1U) << "the event was for bytes that somebody else has read; a frame would be torn";
  port_.setReceiveThreshold(1);
  world_.run(kMillisecond);
  EXPECT_EQ(seen.back(), 3U) << "they stood in front of the next frame";
}

TEST_F(SerialPortTest, APulledAdapterIsAClosedPortThatSaysSo) {
  port_.setReceiveThreshold(1);
  port_.OnComm = [] { ADD_FAILURE() << "bytes of a closed port"; };
  port_.Open();
  wire_.deliver(Bytes(1, 0x41));
  wire_.vanish();
  EXPECT_FALSE(port_.IsOpen());
  port_.Close();
  world_.run(kMillisecond);
  try {
    port_.Write({1});
    FAIL() << "wrote to a port that is gone";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.number(), failure_number::kPortGone);
  }
  EXPECT_THROW(port_.Open(), Failure);
}

TEST_F(SerialPortTest, OpenFailuresCarryTheirNumber) {
  struct Case {
    int number;
    int failure;
  };
  for (const Case& c :
       {Case{0, failure_number::kPortNumber}, {17, failure_number::kPortNumber}, {4, failure_number::kPortNumber}}) {
    port_.setNumber(c.number);
    try {
      port_.Open();
      FAIL() << "opened port " << c.number;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.number(), c.failure);
    }
  }
  EXPECT_THROW(port_.setSettings("fast"), Failure);
}

}  // namespace
}  // namespace firmlane::test
