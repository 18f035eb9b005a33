// A production line for tests: the factory's procedures over the real link, and a unit at the far end of port 2.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include "link/frame.h"
#include "link_world.h"
#include "personal/mic_models.h"
#include "personal/serial_editor.h"
#include "personal/serial_number.h"

namespace firmlane::test {

/// What a receiver does with set serial, load preset and microphone groups. Answers 20 ms after it has heard a message whole.
class FactoryUnit {
 public:
  FactoryUnit(VirtualTime& time, VirtualWire& wire) : time_(time), wire_(wire) {
    wire.heard = [this](std::uint8_t byte) { take(byte); };
  }

  /// Messages heard, as hex text.
  std::vector<std::string> heard;
  /// Numbers that the next answers report in place of the true one.
  std::vector<std::int32_t> wrongReadBacks;
  /// Messages that go unanswered, counted from the first.
  std::size_t deafTo = 0;
  /// Called for each message before it is answered.
  std::function<void()> onMessage;

  /// Switches on into the boot loader, which takes the microphone table; acknowledges the first `groups` groups.
  void startForMicrophones(std::size_t groups) {
    groups_ = false;
    acknowledges_ = groups;
    send(bytes("02 00 00 00 1F 01 20 3E 3E"), kBootSpeed);
  }

 private:
  static constexpr int kRunSpeed = 57600;
  static constexpr int kBootSpeed = 9600;

  void take(std::uint8_t byte) {
    constexpr std::size_t kGroupSize = 6;
    message_.push_back(byte);
    const bool boot = message_.size() >= 2 && byte == kBootFrameEnd && message_[message_.size() - 2] == kBootFrameEnd;
    const bool whole = groups_ ? message_.size() == kGroupSize : byte == kRunFrameEnd || boot;
    if (!whole) {
      return;
    }
    const Bytes message = std::exchange(message_, {});
    heard.push_back(hex(message));
    if (onMessage) {
      onMessage();
    }
    if (groups_ && acknowledges_ > 0) {
      --acknowledges_;
      send({'A'}, kBootSpeed);
    } else if (!groups_ && boot) {
      groups_ = true;
    } else if (!groups_ && heard.size() > deafTo) {
      answer(message);
    }
  }

  void answer(const Bytes& message) {
    constexpr std::uint8_t kSetSerial = 39;
    const std::uint8_t code = message[4];
    const std::size_t at = code == kSetSerial ? 5 : 1;
    std::int32_t number = (message[at] * 128 + message[at + 1]) * 128 + message[at + 2];
    if (code == kSetSerial && !wrongReadBacks.empty()) {
      number = wrongReadBacks.front();
      wrongReadBacks.erase(wrongReadBacks.begin());
    }
    Bytes frame = buildFrame(FrameKind::BootFrame, number, 31, Bytes{code});
    frame.pop_back();  // a unit in operation ends these with a single 3E
    send(frame, kRunSpeed);
  }

  void send(const Bytes& bytes, int baud) {
    time_.after(20 * kMillisecond, [this, bytes, baud] { wire_.send(bytes, baud); });
  }

  VirtualTime& time_;
  VirtualWire& wire_;
  Bytes message_;
  std::size_t acknowledges_ = 0;
  bool groups_ = false;
};

class FactoryTest : public testing::Test {
 protected:
  FactoryTest() {
    std::filesystem::current_path(world_.directory.path());
    state_.FactoryBuild = true;
    line_.showButtons();
    form1_.Command3.OnClick = [this] { next(); };
    form1_.btnSN.OnClick = [this] { serial_.btnSN_Click(); };
    form1_.btnSerial.OnClick = [this] { editor_.btnSerial_Click(); };
    form1_.btnMic.OnClick = [this] { mic_.btnMic_Click(); };
    world_.time.setEnd(kSecond * 3600);
  }
  ~FactoryTest() override { std::filesystem::current_path(before_); }

  /// A user's click after so many seconds from now.
  void clickAfter(double seconds, Control& control) {
    world_.after(static_cast<Micros>(seconds * kSecond),
                 [this, &control] { EXPECT_EQ(world_.host.click(control).value_or("done"), "done") << control.name(); });
  }
  /// What page 7 does on Next.
  void next() {
    if (state_.SerialStep == 5 || !state_.SerialOnly) {
      line_.endProcedure();
      line_.readyForNext(line_.verdict());
    } else if (state_.SerialStep == 0) {
      state_.SerialStep = 1;
      form1_.ProgressBar1.Hide();
      world_.mainPort.setSettings("57600,N,8,1");
      try {
        serial_.DoSerialNumber();
      } catch (const Failure& failure) {
        world_.host.showMessage(failure.description());
      }
    } else if (state_.SerialStep < 4) {
      ++state_.SerialStep;
    }
  }
  /// A whole serial number run, with the clicks that lead through its steps.
  void runSerial() {
    for (const double seconds : {1.0, 2.0, 3.0}) {
      clickAfter(seconds, form1_.Command3);
    }
    serial_.btnSN_Click();
  }

  /// What sn.wls holds for a number, as hex text.
  [[nodiscard]] static std::string content(std::int32_t number) {
    Bytes content;
    for (int shift = 0; shift < 32; shift += 8) {
      content.push_back(static_cast<std::uint8_t>(static_cast<std::uint32_t>(number) >> shift));
    }
    return hex(content);
  }
  void writeNumber(std::int32_t number) const { world_.directory.write("sn.wls", bytes(content(number))); }
  [[nodiscard]] std::string file() const { return hex(Files::read("sn.wls")); }

  /// What shows of the controls that the procedures use, and behind ";" what is on: Next, the port, timers.
  [[nodiscard]] std::string page() const {
    constexpr std::array<std::string_view, 12> kShown = {"lblTop", "lblResetSerial", "lblProgressInfo", "lblOutcome",
                                                         "txtNum", "lblSerial",      "btnSerial",       "frmModel",
                                                         "frmUC",  "ProgressBar1",   "btnSN",           "btnMic"};
    std::string text;
    for (const Control* control : form1_.controls()) {
      const bool ours = std::ranges::count(kShown, control->name()) > 0;
      text += ours && control->Visible ? (text.empty() ? "" : " ") + control->name() : "";
    }
    const auto on = [](const char* name, bool is) { return is ? std::string(" ") + name : ""; };
    return text + ";" + on("Next", form1_.Command3.Enabled) + on("port", wire_.isOpen()) +
           on("Watchdog", form1_.Watchdog.enabled()) + on("Timer1", form1_.Timer1.enabled()) +
           on("Timer3", form1_.Timer3.enabled());
  }
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
