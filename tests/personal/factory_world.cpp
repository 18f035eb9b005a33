#include "factory_world.h"

#include "link/frame.h"

namespace firmlane::test {

namespace {
constexpr int kRunSpeed = 57600;
constexpr int kBootSpeed = 9600;
constexpr std::size_t kGroupSize = 6;
constexpr std::array<std::string_view, 12> kShown = {"lblTop", "lblResetSerial", "lblProgressInfo", "lblOutcome",
                                                     "txtNum", "lblSerial",      "btnSerial",       "frmModel",
                                                     "frmUC",  "ProgressBar1",   "btnSN",           "btnMic"};
}  // namespace

FactoryUnit::FactoryUnit(VirtualTime& time, VirtualWire& wire) : time_(time), wire_(wire) {
  wire.heard = [this](std::uint8_t byte) { take(byte); };
}

void FactoryUnit::startForMicrophones(std::size_t groups) {
  groups_ = false;
  acknowledges_ = groups;
  send(bytes("02 00 00 00 1F 01 20 3E 3E"), kBootSpeed);
}

void FactoryUnit::take(std::uint8_t byte) {
  message_.push_back(byte);
  const bool boot = message_.size() >= 2 && message_.back() == kBootFrameEnd && message_[message_.size() - 2] == kBootFrameEnd;
  const bool whole = groups_ ? message_.size() == kGroupSize : byte == kRunFrameEnd || boot;
  if (!whole) {
    return;
  }
  const Bytes message = std::move(message_);
  message_.clear();
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

void FactoryUnit::answer(const Bytes& message) {
  Bytes number = {message[1], message[2], message[3]};
  const std::uint8_t code = message[4];
  if (code == 39) {
    number = {message[5], message[6], message[7]};
    if (!wrongReadBacks.empty()) {
      const auto groups = sevenBitGroups(wrongReadBacks.front());
      number.assign(groups.begin(), groups.end());
      wrongReadBacks.erase(wrongReadBacks.begin());
    }
  }
  const std::int32_t address = (number[0] * 128 + number[1]) * 128 + number[2];
  Bytes frame = buildFrame(FrameKind::BootFrame, address, 31, Bytes{code});
  frame.pop_back();  // a unit in operation ends these with a single 3E
  send(frame, kRunSpeed);
}

void FactoryUnit::send(Bytes bytes, int baud) {
  time_.after(20 * kMillisecond, [this, bytes = std::move(bytes), baud] { wire_.send(bytes, baud); });
}

FactoryTest::FactoryTest() {
  std::filesystem::current_path(world_.directory.path());
  state_.FactoryBuild = true;
  line_.showButtons();
  form1_.Command3.OnClick = [this] { next(); };
  form1_.btnSN.OnClick = [this] { serial_.btnSN_Click(); };
  form1_.btnSerial.OnClick = [this] { editor_.btnSerial_Click(); };
  form1_.btnMic.OnClick = [this] { mic_.btnMic_Click(); };
  world_.time.setEnd(kSecond * 3600);
}

void FactoryTest::clickAfter(double seconds, Control& control) {
  world_.after(static_cast<Micros>(seconds * kSecond),
               [this, &control] { EXPECT_EQ(world_.host.click(control).value_or("done"), "done") << control.name(); });
}

void FactoryTest::next() {
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

void FactoryTest::runSerial() {
  for (const double seconds : {1.0, 2.0, 3.0}) {
    clickAfter(seconds, form1_.Command3);
  }
  serial_.btnSN_Click();
}

std::string FactoryTest::content(std::int32_t number) {
  Bytes content;
  for (int shift = 0; shift < 32; shift += 8) {
    content.push_back(static_cast<std::uint8_t>(static_cast<std::uint32_t>(number) >> shift));
  }
  return hex(content);
}

void FactoryTest::writeNumber(std::int32_t number) const { world_.directory.write("sn.wls", bytes(content(number))); }

std::string FactoryTest::file() const { return hex(Files::read("sn.wls")); }

std::string FactoryTest::page() const {
  std::string text;
  for (const Control* control : form1_.controls()) {
    const bool ours = std::ranges::count(kShown, control->name()) > 0;
    text += ours && control->Visible ? (text.empty() ? "" : " ") + control->name() : "";
  }
  text += ";";
  const auto on = [&text](const char* name, bool is) { text += is ? std::string(" ") + name : ""; };
  on("Next", form1_.Command3.Enabled);
  on("port", wire_.isOpen());
  on("Watchdog", form1_.Watchdog.enabled());
  on("Timer1", form1_.Timer1.enabled());
  on("Timer3", form1_.Timer3.enabled());
  return text;
}

}  // namespace firmlane::test
