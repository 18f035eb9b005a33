// What must hold in a random run.
#include <algorithm>
#include <array>

#include "platform_over.h"
#include "state/pages.h"
#include "wanderer.h"

namespace firmlane::test {

namespace {

constexpr Micros kAfterBox = 5 * kSecond;
constexpr Micros kLateCount = 20 * kSecond;

int asNumber(const sim::Version& version) { return (version.first * 128 + version.second) * 128 + version.third; }
int asNumber(const sim::ProcessorState* processor) {
  return processor == nullptr || processor->blank ? 0 : asNumber(processor->version);
}

}  // namespace

void Wanderer::checkRest() {
  const bool readout = program_->host().form("frmVersion")->Loaded && program_->state().AutoPage == auto_page::kVerdict;
  if (wire_.isOpen() && !readout) {
    fail("a port is open at rest");
  }
}

void Wanderer::checkSomethingPossible() {
  const FormHost& host = program_->host();
  for (const Form* form : host.onScreen()) {
    for (const Control* control : form->controls()) {
      if (control->kind() == ControlKind::CommandButton && control->name() != "Command2" && !host.refusal(*control)) {
        return;
      }
    }
  }
  if (!host.messageBox()) {
    fail("at rest with nothing but Exit");
  }
}

void Wanderer::checkFiles() {
  for (const auto& [name, contents] : whole_) {
    if (directory.has(name) && !contents.contains(directory.read(name))) {
      fail("half written: " + name);
    }
  }
}

/// A wizard says that all went well only of a unit that is not behind its set.
void Wanderer::checkWizardsVerdict() {
  reachedEnd_ = true;
  const RunState& state = program_->state();
  const bool wireless = way_ == Way::Wireless;
  const std::string chosen = (wireless ? state.LwxSysFile : state.VrcSysFile)[0].SystemVersion.trimmed();
  const auto& all = releases(line());
  const auto release = std::find_if(all.begin(), all.end(), [&](const Release& r) { return r.system == chosen; });
  if (release == all.end()) {
    return;  // nothing on disk and nothing chosen: there is nothing to be behind
  }
  const sim::UnitState& unit = unit_->unit.state();
  const auto behind = [&unit](const char* processor, const sim::Version& wanted) {
    return unit.find(processor) != nullptr && asNumber(unit.find(processor)) < asNumber(wanted);
  };
  bool good = (wireless && !state.LegacyLink) || asNumber(unit.find("DSP")) == asNumber(release->dsp);
  good = good && (state.LegacyLink || !behind("Hub", release->hub));
  if (wireless && !state.LegacyLink) {
    good = good && !behind("RF1", release->rf) && !behind("RF2", release->rf) && !behind("Front", release->front);
  }
  if (!good) {
    fail("a verdict that is not true, for " + chosen + ": " + versionsOf(unit_->unit));
  }
}

/// Told that all went well, the unit runs what lies on disk.
void Wanderer::checkVerdict(const std::string& words) {
  if (wizards() && words.starts_with("Programming Complete.")) {
    checkWizardsVerdict();
  }
  if (way_ != Way::OlderVelarc || !words.starts_with("Congratulations!")) {
    return;
  }
  reachedEnd_ = true;
  const sim::ProcessorState* dsp = unit_->unit.state().find("DSP");
  const Bytes image = sim::imageFile(sim::ImageKind::OldVelarc, dsp->version, kVelarcImageSize);
  const bool onDisk = !dsp->blank && directory.read("vrc.bin") == std::string(image.begin(), image.end());
  if (!onDisk) {
    fail("congratulations for a unit that does not run what lies on disk");
  }
}

/// Only a unit that has just announced itself is told to program; behind a box the answer may come late.
void Wanderer::listen(std::uint8_t byte) {
  constexpr std::array<std::uint8_t, 5> kWant = {0x02, 0x00, 0x00, 0x00, 0x1E};
  wants_ = byte == kWant.at(wants_) ? wants_ + 1 : byte == kWant[0] ? 1 : 0;
  if (wants_ == kWant.size()) {
    wants_ = 0;
    if (unit_->unit.state().phase == sim::Phase::Running && time.now() - boxAt_ > kAfterBox) {
      fail("a unit that runs is told to program");
    }
  }
}

/// No two units ever get one number.
void Wanderer::noteSerial(const std::string& words) {
  constexpr std::string_view kStart = "serial number ";
  if (!words.starts_with(kStart)) {
    return;
  }
  reachedEnd_ = true;
  const std::int32_t number = std::stoi(words.substr(kStart.size()));
  const auto [known, isNew] = numbers_.try_emplace(number, units_);
  if (!isNew && known->second != units_) {
    fail("two units with the number " + std::to_string(number));
  }
  if (countsLate) {
    const std::string ahead = directory.read("sn.wls");
    directory.write("sn.wls", Bytes{static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(number >> 8U), 0, 0});
    disk_->plan(FaultyDisk::Fault::None, 0);
    time.after(kLateCount, [this, ahead, life = end_] {
      if (life == end_) {  // else the computer has lost power meanwhile
        directory.write("sn.wls", ahead);
        disk_->plan(FaultyDisk::Fault::None, 0);
      }
    });
  }
}

}  // namespace firmlane::test
