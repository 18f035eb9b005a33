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
  void play(const Script& script);
  /// Sends a frame with this sub-code now.
  void say(int subCode);
  void sayAfter(std::optional<Micros> span, int subCode);

  /// What it heard since it announced itself: the want-to-program frame, and the image.
  std::string wanted;
  Bytes image;
  /// The program's handshake when it heard the last byte.
  Handshake handshake = Handshake::None;

 private:
  void take(std::uint8_t byte);
  void takeImage();
  [[nodiscard]] int base() const;

  VirtualTime& time_;
  VirtualWire& wire_;
  Script script_;
  Bytes want_;
};

class FlashTest : public testing::Test {
 protected:
  FlashTest();

  /// Runs ConnectVelarc for a processor whose loader plays the script.
  void fly(const std::string& product, const std::string& target, const Script& script);
  /// Seconds between the page texts that begin so; "" for the start and the end of the run.
  [[nodiscard]] double seconds(const std::string& from, const std::string& to) const;
  /// "TimedOut FlashPhase WizardPage port Command3 Watchdog Timer1" as a run leaves them.
  [[nodiscard]] std::string ending() const;
  /// How the record of what goes on has the last run.
  [[nodiscard]] std::string outcome() const;
  [[nodiscard]] std::string top() const { return form1_.lblTop.Caption; }
  void image(const std::string& name, std::size_t size) const;
  /// An image of so many code bytes, "0" to "F" over and over.
  void frontImage(std::size_t codeBytes);

  /// A text of the page, and how things stood when it came.
  struct Page {
    Micros at;
    std::string text;
    int bar = 0;  // of the main form, and the value that it goes on from
    int barValue = 0;
    bool barMoves = false;
  };
  /// The first page text that begins so, or `other` for "".
  [[nodiscard]] const Page& page(const std::string& text, const Page& other) const;

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
  ProcessorProgramming processors_{world_.files, world_.mainPort, sender_, state_, form1_};
  FrontPanel frontPanel_{world_.host, world_.mainPort, world_.delay, supervision_, world_.wizard,
                         notes_,      state_,          form1_,       frmAuto_};
  Outcomes outcomes_{world_.host, world_.mainPort, receivePath_, world_.wizard, notes_, state_, form1_, frmAuto_};
  FlashRun run_{world_.host, world_.mainPort, receivePath_, supervision_, world_.wizard, processors_,
                frontPanel_, outcomes_,       notes_,       state_,       form1_,        frmAuto_};
};

}  // namespace firmlane::test
