// A simulated unit at the far end of a serial line: power switch, boot loaders, normal operation, and faults on request. It
// checks what it hears as a real one would: speed, handshake, sums, and whether an image arrived whole.
//
// Switched on, its boot loaders announce themselves at the boot speed, one after another and several times over. The one that
// is told to program has the unit to itself until the unit is switched off. If none is, the firmware starts and answers at the
// running speed.
#pragma once

#include <functional>
#include <memory>
#include <random>
#include <string>

#include "units/faults.h"
#include "units/loader.h"
#include "units/unit_frames.h"
#include "units/unit_line.h"
#include "units/unit_state.h"

namespace firmlane::sim {

/// How fast a unit reacts. Change it before switching on.
struct UnitTiming {
  Micros firstAnnouncement = 500 * kMillisecond;
  Micros announcementGap = 300 * kMillisecond;
  int announcementRounds = 4;
  Micros answer = 10 * kMillisecond;    // to a command, a batch or a group
  Micros verdict = 500 * kMillisecond;  // from the last byte of an image
  /// Time to erase in place of the processor's own, when above 0.
  Micros erase = 0;
  /// A stream counts as broken off after its loader's own span of silence, and never before this one.
  Micros leastSilence = 0;
};

/// Something worth telling, as it happens. `what` is one of "power", "phase", "verdict", "stored", "complaint".
struct Happening {
  std::string what;
  std::string processor;  // empty when it concerns the whole unit
  std::string text;
};

class Unit {
 public:
  /// The line and the clock must outlive the unit.
  Unit(const UnitModel& model, UnitLine& line, UnitClock& clock);
  ~Unit() = default;
  Unit(const Unit&) = delete;
  Unit& operator=(const Unit&) = delete;

  /// Switches the unit on; no effect when it is on.
  void powerOn();
  /// Switches it off, whatever it is doing. An image that was under way leaves its processor blank.
  void powerOff();
  [[nodiscard]] bool isOn() const { return state_.phase != Phase::Off; }
  /// Puts the unit into normal operation at once, as one that was switched on long ago.
  void startRunning();

  /// A byte has left the program's end of the line. The program's settings are those of now.
  void hear(std::uint8_t byte);

  [[nodiscard]] const UnitState& state() const { return state_; }
  /// The speed at which it talks and listens now.
  [[nodiscard]] int speed() const { return speed_; }
  void setSerial(std::int32_t serial);
  /// Sets what a processor runs; no effect for a name that the model has not.
  void setVersion(std::string_view processor, const Version& version);

  Faults faults;
  UnitTiming timing;
  /// Seed of the noise fault.
  void seedNoise(std::uint32_t seed) { random_.seed(seed); }

  // Called in the midst of what the unit does: look and note, but let the clock call back before working the unit.

  /// Called whenever what state() tells has changed (for bytes of an image, every 64).
  std::function<void()> onChange;
  std::function<void(const Happening&)> onHappening;

 private:
  void later(Micros span, std::function<void()> action);
  void enter(Phase phase);
  void changed() const;
  void happened(const std::string& what, const std::string& text);
  [[nodiscard]] ProcessorState& target() { return state_.processors[static_cast<std::size_t>(state_.target)]; }

  void announce(std::size_t step);
  void announceWhileStartingFirmware();
  [[nodiscard]] bool canRun() const;
  void hearFrame(const HeardFrame& frame);
  void hearCommand(const HeardFrame& frame);
  void startProgramming(std::size_t processor);
  void reportErased();

  void beginTransfer(Phase phase, std::unique_ptr<Loader> loader);
  void hearTransfer(std::uint8_t byte, const LineSettings& programEnd);
  void meetFaultsInStream();
  void watchSilence(Micros span);
  [[nodiscard]] Micros silenceLimit() const;
  void grant(LoaderWish wish);
  void finishTransfer();
  void judge();
  void giveVerdict(bool good);
  void storeMicrophones();

  [[nodiscard]] bool acknowledges();
  void report(std::uint8_t subCode);
  void sendFrame(FrameEnd end, std::int32_t address, std::uint8_t code, ByteSpan data);
  void send(Bytes bytes);

  UnitLine& line_;
  UnitClock& clock_;
  UnitState state_;
  int speed_;
  FrameReader reader_;
  std::unique_ptr<Loader> loader_;
  Micros lastHeard_ = 0;
  int acknowledgements_ = 0;
  bool complete_ = false;      // all of the image or table is in
  bool dead_ = false;          // hears nothing any more
  bool verdictGiven_ = false;  // ahead of time
  std::minstd_rand random_{1};
  std::shared_ptr<char> life_;  // planned actions die with it: at the power switch, and with the unit
};

}  // namespace firmlane::sim
