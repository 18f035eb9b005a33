// A unit on a pseudo-terminal and the program's own serial port at the other side: what each end sees of the other.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>

#include "platform/qt/qt_platform.h"
#include "pty/pty_unit.h"
#include "qt_core.h"
#include "world.h"

namespace firmlane::sim {
namespace {

TEST(PtyUnitTest, AnswersAtItsSpeedOnlyAlsoAfterThePortWasOpenedAgain) {
  constexpr double kTimeScale = 50;
  const test::QtCore core;
  const test::TemporaryDirectory directory;
  PtyUnit bench{*findUnitModel("lwx51"), kTimeScale};
  QtPlatform platform{{.directory = directory.path(), .ports = {{1, bench.path()}}, .timeScale = kTimeScale}};
  SerialPort port{platform.queue, platform.mainDriver};
  const auto run = [&](Micros span) {
    for (const Micros end = platform.queue.now() + span; platform.queue.now() < end;) {
      platform.queue.waitEventsUntil(end);
    }
  };
  bench.unit.startRunning();
  port.setNumber(1);
  port.setReceiveThreshold(1);
  for (const auto& [settings, answer] : {std::pair{"9600,N,8,1", ""},
                                         {"57600,N,8,1", "02 00 09 31 02 00 00 02 1D 00 00 00 02 00 00 5D 80"},
                                         {"9600,N,8,1", ""},
                                         {"57600,N,8,1", "02 00 09 31 02 00 00 02 1D 00 00 00 02 00 00 5D 80"}}) {
    port.setSettings(settings);
    port.Open();
    run(kSecond);  // the unit's end looks every few milliseconds of real time
    port.Write(test::bytes("02 00 00 00 01 01 80"));
    Bytes heard;
    for (int tries = 0; tries == 0 || (tries < 100 && test::hex(heard) != answer); ++tries) {
      run(2 * kSecond);
      const Bytes more = port.Read();
      heard.insert(heard.end(), more.begin(), more.end());
    }
    EXPECT_EQ(test::hex(heard), answer);
    port.Close();
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

}  // namespace
}  // namespace firmlane::sim
