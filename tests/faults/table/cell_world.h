// The whole program in virtual time, with a set on disk, a unit on port 3 and an owner who works it: what a cell is played in.
#pragma once

#include <memory>

#include "cell.h"
#include "owner.h"
#include "releases.h"
#include "units/virtual_unit.h"
#include "world.h"

namespace firmlane::test {

class CellWorld : public Ground {
 public:
  explicit CellWorld(const Run& run) : run_(run), bench(time, wire, run.model), owner(run, bench.unit) {
    std::filesystem::current_path(directory.path());
    directory.write("sn.wls", Bytes{0xE8, 0x03, 0x00, 0x00});
    if (run.pages == Pages::OldVelarc) {
      constexpr std::size_t kImageSize = 400;
      directory.write("vrc.bin", sim::imageFile(sim::ImageKind::OldVelarc, kOldVelarcRelease, kImageSize));
    } else {
      putOnDisk(directory, line(), releases(line()).front());
    }
    for (const sim::ProcessorState& processor : unit().processors) {
      const std::string_view name = processor.model->name;
      if (name != run.processor && name != run.behind) {
        bench.unit.setVersion(name, wanted(name));
      }
    }
    bench.unit.timing.firstAnnouncement = 100 * kMillisecond;
    bench.unit.timing.announcementGap = 50 * kMillisecond;
    bench.unit.startRunning();
    time.setEnd(4 * 3600 * kSecond);
  }
  ~CellWorld() {
    program.reset();
    std::filesystem::current_path(before_);
  }
  CellWorld(const CellWorld&) = delete;
  CellWorld& operator=(const CellWorld&) = delete;

  const Run& run_;
  VirtualWire& wire = wires.add(3);
  sim::VirtualUnit bench;
  Owner owner;
  std::unique_ptr<Program> program;

  /// Starts the program, or starts it anew.
  void start() {
    program.reset();
    const Platform platform{.queue = queue,
                            .screen = screen,
                            .mainDriver = mainDriver,
                            .versionDriver = versionDriver,
                            .http = http,
                            .desktop = desktop,
                            .files = files,
                            .servers = {kServer, "http://registration.example"}};
    program = std::make_unique<Program>(platform, BuildSwitches{.factoryBuild = run_.pages == Pages::ProductionLine});
    screen.press = [this](MessageButton button) { program->host().answer(button); };
    program->start();
  }
  /// Passes events until an exception ends that, and lets `look` look around a few times a second of virtual time.
  void live(const std::function<void()>& look) {
    look_ = look;
    restfulLooks_ = 0;
    ++life_;  // what an earlier life of the program has planned dies with it
    scheduleLook();
    for (;;) {
      queue.WaitEvents();
      ++turns_;
    }
  }
  /// Nothing runs and nothing is asked: the program waits for the user to press something.
  [[nodiscard]] bool atRest() const { return restfulLooks_ >= 4; }

  [[nodiscard]] const RunState& state() const { return program->state(); }
  [[nodiscard]] const sim::UnitState& unit() const { return bench.unit.state(); }
  /// Every processor runs the set on disk.
  [[nodiscard]] bool unitIsGood() const {
    return std::ranges::all_of(unit().processors, [this](const sim::ProcessorState& processor) {
      return !processor.blank && processor.version == wanted(processor.model->name);
    });
  }
  /// The program says that the procedure is over and went well.
  [[nodiscard]] bool saysSuccess() const {
    const char* const end = run_.pages == Pages::OldVelarc        ? "Congratulations!"
                            : run_.pages == Pages::ProductionLine ? "Serial Number and Preset Load Complete"
                                                                  : "Programming Complete.";
    return Owner::pageText(*program).starts_with(end);
  }
  /// The label that tells how something ended.
  [[nodiscard]] const OutcomeLabel& outcomeLabel() const {
    FormHost& host = program->host();
    Form* top = host.onScreen().empty() ? host.form("Form1") : host.onScreen().front();
    Control* label = top->control("lblOutcome");
    return static_cast<OutcomeLabel&>(label != nullptr ? *label : *host.form("Form1")->control("lblOutcome"));
  }
  /// Sub-code with which the run's processor announces itself.
  [[nodiscard]] int announcement() const { return unit().find(run_.processor)->model->announce; }

 private:
  static constexpr sim::Version kOldVelarcRelease = {5, 3, 0};

  [[nodiscard]] Line line() const { return run_.pages == Pages::Velarc2 ? Line::Velarc2 : Line::Wireless; }

  /// An event of our own shows whether the program's main loop turns, or an operation waits inside it.
  void scheduleLook() {
    queue.post([] {});
    time.after(250 * kMillisecond, [this, life = life_] {
      if (life == life_) {
        restfulLooks_ = turns_ > turnsSeen_ && program && !program->host().messageBox() ? restfulLooks_ + 1 : 0;
        turnsSeen_ = turns_;
        look_();
        scheduleLook();
      }
    });
  }

  [[nodiscard]] sim::Version wanted(std::string_view processor) const {
    if (run_.pages == Pages::OldVelarc) {
      return kOldVelarcRelease;
    }
    const Release& release = releases(line()).front();
    if (processor == "Hub" || processor == "DSP") {
      return processor == "Hub" ? release.hub : release.dsp;
    }
    return processor == "Front" ? release.front : release.rf;
  }

  std::filesystem::path before_ = std::filesystem::current_path();
  std::function<void()> look_;
  int life_ = 0;
  int turns_ = 0;
  int turnsSeen_ = 0;
  int restfulLooks_ = 0;
};

}  // namespace firmlane::test
