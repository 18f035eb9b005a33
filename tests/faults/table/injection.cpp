#include "injection.h"

namespace firmlane::test {

namespace {

constexpr Micros kMargin = 300 * kMillisecond;
constexpr Micros kAnnounceLimit = 20 * kSecond;
constexpr Micros kAnswerLimit = 10 * kSecond;
/// From the switch to the last processor's first announcement, and what the user needs to reach the switch.
constexpr Micros kSwitchLead = 1200 * kMillisecond;
constexpr std::uint8_t kReport = 31;
constexpr std::uint8_t kNextBatch = 86;
constexpr std::uint8_t kVector = 87;

/// A frame's sub-code; 0 for one that has none.
int subCodeOf(const Bytes& frame) { return frame.size() > 5 ? frame[5] : 0; }

Micros limitAt(const Run& run, Moment moment) {
  switch (moment) {
    case Moment::Erase:
      return run.eraseLimit;
    case Moment::SerialNumber:
    case Moment::Preset:
      return kAnswerLimit;
    default:
      return run.verdictLimit;
  }
}

std::size_t checksumAt(const Bytes& frame) {
  const bool boot = frame.size() > 2 && frame[frame.size() - 2] == 0x3E;
  return frame.size() - (boot ? 3 : 2);
}

Bytes joined(const Bytes& first, const Bytes& second) {
  Bytes both = first;
  both.insert(both.end(), second.begin(), second.end());
  return both;
}

/// The same report from the loader of an RF section or a front panel.
Bytes fromOther(const Bytes& frame, int announcement, bool wireless) {
  Bytes other = frame;
  const int step = (subCodeOf(frame) - announcement) & 3;
  const auto subCode = static_cast<std::uint8_t>((wireless ? 48 : 53) + step);
  other[checksumAt(other)] = static_cast<std::uint8_t>((other[checksumAt(other)] + subCode - other[5]) & 0x7F);
  other[5] = subCode;
  return other;
}

Bytes spoiled(const Bytes& frame, Fault fault, const CellWorld& world) {
  Bytes bytes = frame;
  const auto middle = static_cast<std::ptrdiff_t>(frame.size() / 2);
  switch (fault) {
    case Fault::NoiseBefore:
      return joined({0x55, 0xFE, 0x00, 0x3E}, frame);
    case Fault::NoiseInside:
      bytes.insert(bytes.begin() + middle, {0xA5, 0x3E});
      return bytes;
    case Fault::WrongChecksum:
      bytes[checksumAt(bytes)] ^= 1U;
      return bytes;
    case Fault::Twice:
      return joined(frame, frame);
    case Fault::Cut:
      return {frame.begin(), frame.begin() + middle};
    case Fault::OtherProcessor:
      return fromOther(frame, world.announcement(), world.run_.pages != Pages::Velarc2);
    default:
      return frame;
  }
}

/// Spoils the next frame of the run; all others pass.
void spoilFrame(CellWorld& world, Moment moment, Fault fault) {
  const int announcement = world.announcement();
  const bool programming = moment <= Moment::Verdict;
  Micros at = 0;
  if (fault == Fault::JustInTime || fault == Fault::JustTooLate) {
    at = world.time.now() + limitAt(world.run_, moment) + (fault == Fault::JustInTime ? -kMargin : kMargin);
  }
  world.bench.intercept = [&world, announcement, programming, fault, at, spoilt = false](const Bytes& frame, int baud) mutable {
    const int code = subCodeOf(frame);
    const bool concerned =
        !programming || (code >= announcement && code < announcement + 4) || code == kNextBatch || code == kVector;
    if (spoilt || !concerned) {
      return false;
    }
    spoilt = true;
    world.time.at(std::max(at, world.time.now()),
                  [&wire = world.wire, bytes = spoiled(frame, fault, world), baud] { wire.send(bytes, baud); });
    return true;
  };
}

/// A report that nobody has asked for.
void report(CellWorld& world, int subCode) {
  const auto code = static_cast<std::uint8_t>(subCode);
  world.wire.send(sim::unitFrame(sim::FrameEnd::Boot, 0, kReport, ByteSpan(&code, 1)), world.bench.unit.speed());
}

void leave(CellWorld& world, Fault fault) {
  FormHost& host = world.program->host();
  Form& top = *host.onScreen().front();
  if (fault == Fault::Closed) {
    host.close(top);
  } else {
    Control* exit = top.control("cmdQuit");
    host.click(exit != nullptr ? *exit : *host.form("Form1")->control("Command2"));
  }
}

}  // namespace

void inject(CellWorld& world, Moment moment, Fault fault) {
  switch (fault) {
    case Fault::Silence:
      world.bench.unit.faults.silent = true;
      return;
    case Fault::JustInTime:
    case Fault::JustTooLate:
      if (moment == Moment::Announce) {
        world.owner.switchPause = kAnnounceLimit + (fault == Fault::JustInTime ? -kSwitchLead : kMargin);
        return;
      }
      break;
    case Fault::EarlyVerdict:
      return report(world, world.announcement() + 2);
    case Fault::WrongVerdict:
      return report(world, world.announcement() + 3);
    case Fault::HeldLine:
      return world.wire.holdBack(true);
    case Fault::LostLine:
      return world.wire.vanish();
    case Fault::Box:
      world.owner.boxPatience = kSecond * 60;
      return world.wire.send(Bytes{0x02, 0x00, 0x00, 0x00, 0x1F, 0x05, 0x27, 0x3E, 0x3E}, world.bench.unit.speed());
    case Fault::Exit:
    case Fault::Closed:
      return leave(world, fault);
    case Fault::PowerFailure:
      throw PowerLost();
    default:
      break;
  }
  spoilFrame(world, moment, fault);
}

void heal(CellWorld& world) {
  world.bench.unit.faults = {};
  world.bench.intercept = nullptr;
  world.wire.holdBack(false);
  world.wire.openFailure.reset();
  world.owner.boxPatience = kSecond;
  world.owner.switchPause = kSecond;
}

}  // namespace firmlane::test
