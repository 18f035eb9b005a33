// A flash run for tests: the run over the real link, and a small boot loader at the far end of port 3.
#pragma once

#include <gmock/gmock.h>

#include <optional>

#include "flash/flash_run.h"
#include "link_world.h"

namespace firmlane::test {

/// What the boot loader at the far end does, and when. Times count from what goes before; none means that it never does.
struct Script {
  int announces = 1;
  std::optional<Micros> powerOn = 2 * kSecond;
  std::optional<Micros> erased = kSecond;
  /// Bytes that it takes as its image; a front panel's end with its last answer instead.
  std::size_t image = 0;
  std::optional<Micros> verdict = kSecond;
  bool refuses = false;
  /// Sub-codes with which a front panel answers its batches, one after another.
  std::vector<int> batchAnswers;
  int baud = 9600;
};

class BootLoader {
 public:
  BootLoader(VirtualTime& time, VirtualWire& wire) : time_(time), wire_(wire) {}

  /// Switches the unit on as its script says.
  void play(const Script& script) {
    script_ = script;
    wanted.clear();
    want_.clear();
    image.clear();
    wire_.heard = [this](std::uint8_t byte) { take(byte); };
    sayAfter(script_.powerOn, script_.announces);
  }
  /// Sends a frame with this sub-code now.
  void say(int subCode) {
    const Bytes data = {static_cast<std::uint8_t>(subCode)};
    wire_.send(buildFrame(FrameKind::BootFrame, 0, 31, data), script_.baud);
  }
  void sayAfter(std::optional<Micros> span, int subCode) {
    if (span) {
      time_.after(*span, [this, subCode] { say(subCode); });
    }
  }

  /// What it heard since it announced itself: the want-to-program frame, and the image.
  std::string wanted;
  Bytes image;
  /// The program's handshake when it heard the last byte.
  Handshake handshake = Handshake::None;

 private:
  void take(std::uint8_t byte) {
    constexpr std::size_t kWantSize = 9;
    if (want_.size() == kWantSize) {
      image.push_back(byte);
      handshake = wire_.settings()->handshake;
      answerImage();
      return;
    }
    want_.push_back(byte);
    if (want_.size() == kWantSize) {
      wanted = hex(want_);
      sayAfter(script_.erased, script_.announces + 1);
    }
  }
  void answerImage() {
    constexpr std::size_t kLengthBytes = 2;
    constexpr std::size_t kBatch = 32;
    const std::size_t batches = (image.size() - std::min(image.size(), kLengthBytes)) / kBatch;
    if (!script_.batchAnswers.empty()) {
      if (batches > 0 && batches <= script_.batchAnswers.size() && image.size() == kLengthBytes + batches * kBatch) {
        sayAfter(5 * kMillisecond, script_.batchAnswers[batches - 1]);
      }
    } else if (image.size() == script_.image) {
      sayAfter(script_.verdict, script_.announces + (script_.refuses ? 3 : 2));
    }
  }

  VirtualTime& time_;
  VirtualWire& wire_;
  Script script_;
  Bytes want_;
};

class FlashTest : public testing::Test {
 protected:
  FlashTest() {
    state_.ComPort = 3;
    state_.InAutoWizard = true;
    frmAuto_.prgTotal.Max = 9;
    world_.screen.answerOthers();
    world_.time.setEnd(kSecond * 7200);
    world_.screen.onChange = [this](Control& control) {
      if (&control == &form1_.lblTop) {
        pages_.push_back({world_.time.now(), form1_.lblTop.Caption, form1_.ProgressBar1.Value, supervision_.BarValue,
                          form1_.Timer1.enabled()});
      }
    };
  }

  /// Runs ConnectVelarc for a processor whose loader plays the script.
  void fly(const std::string& product, const std::string& target, const Script& script) {
    world_.run(kSecond);  // the user takes a moment between two runs
    state_.ProductCode = product;
    state_.FlashTarget = target;
    state_.FlashPhase = 0;
    form1_.Command3.Disable();
    form1_.ProgressBar1.Show();
    form1_.lblTop.Caption = "";
    pages_ = {{world_.time.now(), ""}};
    loader_.play(script);
    run_.ConnectVelarc();
    pages_.push_back({world_.time.now(), ""});
  }

  /// A text of the page, and how things stood when it came.
  struct Page {
    Micros at;
    std::string text;
    int bar = 0;  // of the main form, and the value that it goes on from
    int barValue = 0;
    bool barMoves = false;
  };
  /// The first page text that begins so, or `other` for "".
  [[nodiscard]] const Page& page(const std::string& text, const Page& other) const {
    const auto found = std::ranges::find_if(pages_, [&](const Page& page) { return page.text.starts_with(text); });
    EXPECT_NE(found, pages_.end()) << "no page " << text;
    return text.empty() || found == pages_.end() ? other : *found;
  }
  /// Seconds between the page texts that begin so; "" for the start and the end of the run.
  [[nodiscard]] double seconds(const std::string& from, const std::string& to) const {
    return static_cast<double>(page(to, pages_.back()).at - page(from, pages_.front()).at) / kSecond;
  }
  /// "FlashPhase page WizardPage" and what is on of the rest as a run leaves it.
  [[nodiscard]] std::string ending() const {
    const auto flag = [](const char* name, bool on) { return std::string(on ? " +" : " -") + name; };
    return std::to_string(state_.FlashPhase) + " page " + std::to_string(state_.WizardPage) + flag("timedout", state_.TimedOut) +
           flag("port", wire_.isOpen()) + flag("next", form1_.Command3.Enabled) + flag("watchdog", form1_.Watchdog.enabled()) +
           flag("timer1", form1_.Timer1.enabled()) + flag("bar", form1_.ProgressBar1.Visible);
  }
  /// How the record of what goes on has the last run.
  [[nodiscard]] std::string outcome() const {
    const auto& reports = world_.supervision.activity.processors();
    const auto found = std::ranges::find(reports, state_.FlashTarget, &ProcessorReport::target);
    return found == reports.end() ? "no report" : nameOf(found->state);
  }
  [[nodiscard]] std::string top() const { return form1_.lblTop.Caption; }

  void image(const std::string& name, std::size_t size) const {
    Bytes content(size);
    for (std::size_t i = 0; i < size; ++i) {
      content[i] = static_cast<std::uint8_t>(i * 5);
    }
    world_.directory.write(name, content);
  }
  /// An image of so many code bytes, "0" to "F" over and over.
  void frontImage(std::size_t codeBytes) {
    state_.FrontImage.clear();
    for (std::size_t i = 0; i < codeBytes; ++i) {
      const std::size_t value = i % 16;
      state_.FrontImage += std::to_string(value < 10 ? 48 + value : 55 + value) + "48";
    }
    state_.FrontCodeBytes = static_cast<std::int16_t>(codeBytes);
  }

  LinkWorld world_;
  RunState& state_ = world_.state;
  Form1& form1_ = world_.form1;
  FrmAuto& frmAuto_ = world_.frmAuto;
  Supervision& supervision_ = world_.supervision;
  ReceivePath& receivePath_ = world_.receivePath;
  VirtualWire& wire_ = world_.wires.add(3);
  BootLoader loader_{world_.time, wire_};
  std::vector<Page> pages_;

  DebugNotes notes_{state_, world_.frmDBUG};
  ImageSender sender_{world_.host, world_.mainPort, supervision_, world_.wizard, state_, form1_, receivePath_.ExpectFrameEnd};
  ProcessorProgramming processors_{world_.files, world_.mainPort, sender_, supervision_, world_.wizard, state_, form1_};
  FrontPanel frontPanel_{world_.host, world_.mainPort, world_.delay, supervision_, world_.wizard,
                         notes_,      state_,          form1_,       frmAuto_};
  Outcomes outcomes_{world_.host, world_.mainPort, receivePath_, world_.wizard, notes_, state_, form1_, frmAuto_};
  FlashRun run_{world_.host, world_.mainPort, receivePath_, supervision_, world_.wizard, processors_,
                frontPanel_, outcomes_,       notes_,       state_,       form1_,        frmAuto_};
};

}  // namespace firmlane::test
