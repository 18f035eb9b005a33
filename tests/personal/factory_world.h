// A production line for tests: the factory's procedures over the real link, and a unit at the far end of port 2.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>

#include "link_world.h"
#include "personal/mic_models.h"
#include "personal/serial_editor.h"
#include "personal/serial_number.h"

namespace firmlane::test {

/// What a receiver does with set serial, load preset and microphone groups. Answers 20 ms after it has heard a message whole.
class FactoryUnit {
 public:
  FactoryUnit(VirtualTime& time, VirtualWire& wire);

  /// Messages heard, as hex text.
  std::vector<std::string> heard;
  /// Numbers that the next answers report in place of the true one.
  std::vector<std::int32_t> wrongReadBacks;
  /// Messages that go unanswered, counted from the first.
  std::size_t deafTo = 0;
  /// Called for each message before it is answered.
  std::function<void()> onMessage;

  /// Switches on into the boot loader, which takes the microphone table; acknowledges the first `groups` groups.
  void startForMicrophones(std::size_t groups);

 private:
  void take(std::uint8_t byte);
  void answer(const Bytes& message);
  void send(Bytes bytes, int baud);

  VirtualTime& time_;
  VirtualWire& wire_;
  Bytes message_;
  std::size_t acknowledges_ = 0;
  bool groups_ = false;
};

class FactoryTest : public testing::Test {
 protected:
  FactoryTest();
  ~FactoryTest() override { std::filesystem::current_path(before_); }

  /// A user's click after so many seconds from now.
  void clickAfter(double seconds, Control& control);
  /// What page 7 does on Next.
  void next();
  /// A whole serial number run, with the clicks that lead through its steps.
  void runSerial();
  /// What sn.wls holds for a number, as hex text.
  [[nodiscard]] static std::string content(std::int32_t number);
  void writeNumber(std::int32_t number) const;
  [[nodiscard]] std::string file() const;
  /// What shows of the controls that the procedures use, and behind ";" what is on: Next, the port, timers.
  [[nodiscard]] std::string page() const;
  /// The page on which the next unit begins, and how it is when the last one did not go well.
  static constexpr const char* kReady = "lblTop btnSN btnMic; Next";
  static constexpr const char* kGivenUp = "lblTop lblOutcome btnSN btnMic; Next";

  std::filesystem::path before_ = std::filesystem::current_path();
  LinkWorld world_;
  RunState& state_ = world_.state;
  Form1& form1_ = world_.form1;
  VirtualWire& wire_ = world_.wires.add(2);
  FactoryUnit unit_{world_.time, wire_};

  ReceivePath& receivePath_ = world_.receivePath;
  UnitAnswer answer_{world_.host, world_.mainPort, world_.supervision, state_, form1_};
  SerialFile serialFile_{world_.files, state_, form1_};
  Preset preset_{world_.mainPort, world_.commands, receivePath_, answer_, state_, form1_};
  FactoryLine line_{world_.mainPort, receivePath_, preset_, world_.supervision, world_.wizard, state_, form1_};
  SerialNumber serial_{world_.host, world_.mainPort, world_.commands, receivePath_, answer_,         serialFile_,
                       preset_,     line_,           state_,          form1_,       world_.newserial};
  SerialEditor editor_{serialFile_, state_, form1_, world_.newserial};
  MicModels mic_{world_.host,   world_.mainPort, receivePath_, answer_, world_.supervision,
                 world_.wizard, line_,           world_.files, state_,  form1_};
};

}  // namespace firmlane::test
