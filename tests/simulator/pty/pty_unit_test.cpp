// A unit on a pseudo-terminal and the program's own serial port at the other side: what each end sees of the other.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>

#include "console/options.h"
#include "console/unit_console.h"
#include "platform/qt/qt_platform.h"
#include "pty/pty_unit.h"
#include "qt_core.h"
#include "units/firmware.h"
#include "world.h"

namespace firmlane::sim {
namespace {

constexpr double kTimeScale = 50;
constexpr const char* kId = "02 00 09 31 02 00 00 02 1D 00 00 00 02 00 00 5D 80";
constexpr const char* kErased = "02 00 00 00 1F 21 40 3E 3E";

class PtyUnitTest : public testing::Test {
 protected:
  void open(const char* settings, Handshake handshake = Handshake::None) {
    port.Close();
    port.setNumber(1);
    port.setSettings(settings);
    port.setHandshake(handshake);
    port.setReceiveThreshold(1);
    port.Open();
    run(kSecond);  // the unit's end looks every few milliseconds of real time
  }

  void run(Micros span) {
    const Micros end = platform.queue.now() + span;
    while (platform.queue.now() < end) {
      platform.queue.waitEventsUntil(end);
    }
  }

  /// What has come once it ends in `answer`, or after the unit had all the time for it.
  std::string await(const std::string& answer) {
    std::string text;
    for (int tries = 0; tries < 100 && !text.ends_with(answer); ++tries) {
      run(2 * kSecond);
      const std::string more = test::hex(port.Read());
      text += (text.empty() || more.empty() ? "" : " ") + more;
    }
    return text;
  }

  std::string ask(const std::string& hexText, const std::string& answer) {
    port.Read();
    port.Write(test::bytes(hexText));
    return await(answer);
  }

  test::QtCore core;
  test::TemporaryDirectory directory;
  PtyUnit bench{*findUnitModel("lwx51"), kTimeScale};
  QtPlatform platform{{.directory = directory.path(), .ports = {{1, bench.path()}}, .timeScale = kTimeScale}};
  SerialPort port{platform.queue, platform.mainDriver};
};

TEST_F(PtyUnitTest, AnswersAtItsSpeedOnlyAlsoAfterThePortWasOpenedAgain) {
  bench.unit.startRunning();
  for (int round = 0; round < 2; ++round) {
    open("9600,N,8,1");
    port.Write(test::bytes("02 00 00 00 01 01 80"));
    run(2 * kSecond);
    EXPECT_EQ(test::hex(port.Read()), "");
    open("57600,N,8,1");
    EXPECT_EQ(ask("02 00 00 00 01 01 80", kId), kId);
  }
}

TEST(PseudoTerminalTest, WhatAProgramLeftUnreadIsGoneForTheNextOne) {
  PseudoTerminal terminal;
  EXPECT_FALSE(terminal.isOpen());
  const auto openDevice = [&terminal] { return open(terminal.path().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK); };
  const int first = openDevice();
  EXPECT_TRUE(terminal.isOpen());
  terminal.write(test::bytes("01 02 03"));
  close(first);
  terminal.discardUnread();
  EXPECT_FALSE(terminal.isOpen());
  const int next = openDevice();
  terminal.write(test::bytes("04"));
  std::array<std::uint8_t, 8> bytes{};
  EXPECT_EQ(read(next, bytes.data(), bytes.size()), 1);
  EXPECT_EQ(bytes[0], 4);
  close(next);
}

TEST_F(PtyUnitTest, HubIsProgrammedUnderRtsHandshakeOnly) {
  bench.unit.timing.announcementRounds = 1000;
  for (const Handshake handshake : {Handshake::None, Handshake::Rts}) {
    bench.unit.powerOff();
    bench.unit.powerOn();
    open("9600,N,8,1");
    EXPECT_THAT(ask("02 00 00 00 1E 21 3F 3E 3E", kErased), testing::EndsWith(kErased));
    open("9600,N,8,1", handshake);
    port.Write(imageFile(ImageKind::WirelessHub, {2, 31, 0}, 400));
    const bool good = handshake == Handshake::Rts;
    const std::string verdict = good ? "02 00 00 00 1F 22 41 3E 3E" : "02 00 00 00 1F 23 42 3E 3E";
    EXPECT_EQ(await(verdict), verdict);
    EXPECT_EQ(bench.unit.state().versionOf("Hub"), good ? "2.31" : "blank");
  }
}

}  // namespace
}  // namespace firmlane::sim
