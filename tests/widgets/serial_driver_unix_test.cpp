// The serial driver against the far end of a pseudo-terminal.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <pty.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <thread>

#include "platform/qt/qt_serial_driver.h"
#include "real_ground.h"
#include "world.h"

namespace firmlane::test {
namespace {

/// A line with its far end in the test's hand.
class Pty {
 public:
  Pty() {
    std::array<char, 64> name{};
    openpty(&master_, &slave_, name.data(), nullptr, nullptr);
    termios raw{};
    tcgetattr(slave_, &raw);
    cfmakeraw(&raw);
    tcsetattr(slave_, TCSANOW, &raw);
    fcntl(master_, F_SETFL, O_NONBLOCK);
    path_ = name.data();
  }
  ~Pty() { hangUp(); }
  Pty(const Pty&) = delete;
  Pty& operator=(const Pty&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }
  void send(const std::string& hexText) const {
    const Bytes out = bytes(hexText);
    EXPECT_EQ(::write(master_, out.data(), out.size()), static_cast<ssize_t>(out.size()));
  }
  /// What has come so far, from the last call on.
  Bytes heard() const {
    Bytes all;
    std::array<std::uint8_t, 4096> buffer{};
    for (ssize_t count = 0; (count = ::read(master_, buffer.data(), buffer.size())) > 0;) {
      all.insert(all.end(), buffer.begin(), buffer.begin() + count);
    }
    return all;
  }
  [[nodiscard]] speed_t speed() const {
    termios settings{};
    tcgetattr(slave_, &settings);
    return cfgetospeed(&settings);
  }
  /// The adapter is pulled.
  void hangUp() {
    if (master_ >= 0) {
      ::close(slave_);
      ::close(master_);
      master_ = -1;
    }
  }

 private:
  int master_ = -1;
  int slave_ = -1;
  std::string path_;
};

struct RealLine : RealGround, testing::Test {
  Pty pty;
  PortMap ports{"", {{3, pty.path()}, {4, "/dev/firmlane-no-such-device"}}};
  QtSerialDriver driver{ports};
  SerialPort port{queue, driver};

  RealLine() {
    port.setNumber(3);
    port.setReceiveThreshold(1);
    port.setSettings("57600,N,8,1");
  }
  [[nodiscard]] std::string inUse(const std::string& by) const {
    return "Serial port COM 3 (" + pty.path() + ") is in use by another program (" + by + ") (#" + std::to_string(EBUSY) + ")";
  }
  std::string openFailure(int number) {
    port.setNumber(number);
    try {
      port.Open();
    } catch (const Failure& failure) {
      return failureText("", failure);
    }
    return "opened";
  }
};

TEST_F(RealLine, BytesPassBothWaysUnchangedAndInOrder) {
  port.Open();
  std::string taken;
  port.OnComm = [&] {
    const Bytes read = port.Read();
    taken += hex(read) + "|";
  };
  pty.send("00 0A 0D 11 13 80 FF");
  runUntil([&] { return !taken.empty(); });
  EXPECT_EQ(taken, "00 0A 0D 11 13 80 FF|");

  Bytes image(3000);
  for (std::size_t i = 0; i < image.size(); ++i) {
    image[i] = static_cast<std::uint8_t>(i * 7);
  }
  Bytes heard;
  for (const std::uint8_t byte : image) {
    port.Write({byte});
    if (byte == 0) {
      const Bytes part = pty.heard();
      heard.insert(heard.end(), part.begin(), part.end());
    }
  }
  port.Close();
  const Bytes rest = pty.heard();
  heard.insert(heard.end(), rest.begin(), rest.end());
  EXPECT_EQ(heard, image);
}

TEST_F(RealLine, WhatWaitedBeforeAnOpeningIsNeverHeard) {
  std::string taken;
  port.OnComm = [&] { taken += hex(port.Read()) + "|"; };
  for (const std::string answer : {"41", "42", "43"}) {  // as a run does that closes and opens in its middle
    pty.send("02 00 02 2C 02 00 00 02 1F 00 00 00 02 00 00 53 80");
    run(20 * kMillisecond);
    port.Open();
    EXPECT_EQ(hex(port.Read()), "");
    pty.send(answer);
    runUntil([&] { return taken.ends_with(answer + "|"); });
    port.Close();
  }
  EXPECT_EQ(taken, "41|42|43|");
}

TEST_F(RealLine, AReadTakesWhatTheSystemHasNotDeliveredYet) {
  port.Open();
  port.OnComm = [&] { ADD_FAILURE() << "an event for bytes that were read: " << hex(port.Read()); };
  for (const char* sent : {"41 42 43", "44"}) {
    pty.send(sent);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));  // the bytes are in, and the event loop did not run
    EXPECT_EQ(hex(port.Read()), sent);
    run(10 * kMillisecond);
  }
  EXPECT_EQ(hex(port.Read()), "");
}

TEST_F(RealLine, AReadThatFindsTheAdapterPulledClosesThePort) {
  port.Open();
  pty.hangUp();
  EXPECT_EQ(hex(port.Read()), "");
  EXPECT_FALSE(port.IsOpen());
}

TEST_F(RealLine, WritingTakesAsLongAsTheLine) {
  port.setSettings("19200,N,8,1");
  port.Open();
  EXPECT_EQ(pty.speed(), static_cast<speed_t>(B19200));
  const Micros before = queue.now();
  for (int i = 0; i < 960; ++i) {
    port.Write({0x55});
    queue.PumpEvents();
  }
  const Micros taken = queue.now() - before;
  EXPECT_GE(taken, 450 * kMillisecond);  // half a second less the backlog of 64 bytes
  EXPECT_LE(taken, 5 * kSecond);  // on a machine with much else to do
}

TEST_F(RealLine, HangUpClosesThePortAndCostsNoProcessorTime) {
  port.Open();
  pty.hangUp();
  runUntil([&] { return !port.IsOpen(); });
  try {
    port.Write({1});
    FAIL() << "wrote to a port that has gone";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.number(), failure_number::kPortGone);
    EXPECT_THAT(failure.description(), testing::HasSubstr("COM 3 (" + pty.path() + ") has gone"));
  }
  const std::clock_t before = std::clock();
  run(300 * kMillisecond);
  EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 20);
}

TEST_F(RealLine, AHangUpThatANewSpeedFindsOutClosesThePort) {
  port.Open();
  pty.hangUp();
  port.setSettings("9600,N,8,1");
  port.setHandshake(Handshake::XonXoff);
  EXPECT_FALSE(port.IsOpen());
  port.Close();
}

TEST_F(RealLine, OpenTellsWhatIsWrong) {
  EXPECT_EQ(openFailure(4), "There is no serial port COM 4 (/dev/firmlane-no-such-device) (#2)");
  EXPECT_EQ(openFailure(5), "There is no serial port COM 5 (#2)");
  QtSerialDriver other(ports);
  other.open(3, {});
  EXPECT_EQ(openFailure(3), inUse("test_widgets, process " + std::to_string(getpid())));
  other.close();
  EXPECT_EQ(openFailure(3), "opened");
  if (geteuid() != 0) {
    chmod(pty.path().c_str(), 0);
    port.Close();
    EXPECT_THAT(openFailure(3), testing::HasSubstr("No permission to use COM 3 (" + pty.path() + "). It belongs to the group"));
  }
}

/// The lock of a device as some program has left it. It is held open, so that this test may not remove it either.
class LeftLock {
 public:
  LeftLock(const std::string& device, const std::string& content)
      : path_((access("/var/lock", W_OK) == 0 ? "/var/lock/LCK..pts_" : "/tmp/LCK..pts_") + device.substr(9)) {
    std::ofstream(path_) << content;
    held_ = ::open(path_.c_str(), O_RDONLY);
    EXPECT_EQ(flock(held_, LOCK_EX | LOCK_NB), 0);
  }
  ~LeftLock() {
    ::close(held_);
    std::filesystem::remove(path_);
  }
  LeftLock(const LeftLock&) = delete;
  LeftLock& operator=(const LeftLock&) = delete;

 private:
  std::string path_;
  int held_ = -1;
};

TEST_F(RealLine, OnlyALockWithALivingOwnerMeansInUse) {
  const pid_t dead = fork();
  if (dead == 0) {
    _exit(0);
  }
  waitpid(dead, nullptr, 0);
  std::ifstream comm("/proc/" + std::to_string(getppid()) + "/comm");
  std::string parent;
  std::getline(comm, parent);
  const std::string living = std::to_string(getppid());
  struct Case {
    std::string lock;
    std::string outcome;
  };
  for (const Case& c : {Case{std::to_string(dead) + "\nminicom\nhost\n", "opened"},
                        {living + "\nminicom\nhost\n", "opened"},  // the number is another program's by now
                        {living + "\n" + parent + "\nhost\n", inUse(parent + ", process " + living)},
                        {"     " + living + "\n", inUse("process " + living)}}) {
    const LeftLock lock(pty.path(), c.lock);
    EXPECT_EQ(openFailure(3), c.outcome) << c.lock;
    if (port.IsOpen()) {
      QtSerialDriver second(ports);
      EXPECT_THROW(second.open(3, {}), Failure) << "two that pass by one abandoned lock meet in the next";
      port.Close();
    }
  }
}

TEST_F(RealLine, CloseInTheMiddleOfAHeldLineComesBackSoon) {
  port.setHandshake(Handshake::Rts);
  port.Open();
  port.Write({1, 2, 3});
  const Micros before = queue.now();
  port.Close();
  EXPECT_LT(queue.now() - before, 2 * kSecond);
  EXPECT_EQ(hex(pty.heard()), "01 02 03");
}

TEST(PortMapTest, LinksOfTheDirectoryDecideAndDevicesSortAsPeopleCount) {
  const TemporaryDirectory directory;
  std::filesystem::create_directory(directory.path() / "ports");
  std::filesystem::create_symlink("/dev/null", directory.path() / "ports/com7");
  const PortMap map(directory.path());
  EXPECT_EQ(map.device(7), (directory.path() / "ports/com7").string());
  EXPECT_EQ(map.hint(7), "null");
  EXPECT_TRUE(naturallyBefore("ttyS2", "ttyS10"));
  EXPECT_FALSE(naturallyBefore("ttyS10", "ttyS2"));
  EXPECT_TRUE(naturallyBefore("ttyACM3", "ttyUSB0"));
  EXPECT_FALSE(naturallyBefore("ttyS1", "ttyS1"));
  EXPECT_EQ(PortMap(directory.path(), {{1, "/dev/pts/99"}}).device(7), "") << "a given port leaves the others without hardware";
}

}  // namespace
}  // namespace firmlane::test
