#include "cell_world.h"

namespace firmlane::test {

namespace {

constexpr Micros kLook = 250 * kMillisecond;
constexpr Micros kLongest = 4 * 3600 * kSecond;
constexpr std::size_t kImageSize = 400;
constexpr sim::Version kOldVelarcRelease = {5, 3, 0};

Line lineOf(const Run& run) { return run.pages == Pages::Velarc2 ? Line::Velarc2 : Line::Wireless; }

}  // namespace

CellWorld::CellWorld(const Run& run) : run_(run), bench(time, wire, run.model), owner(run, bench.unit) {
  std::filesystem::current_path(directory.path());
  directory.write("sn.wls", Bytes{0xE8, 0x03, 0x00, 0x00});
  if (run.pages == Pages::OldVelarc) {
    directory.write("vrc.bin", sim::imageFile(sim::ImageKind::OldVelarc, kOldVelarcRelease, kImageSize));
  } else {
    putOnDisk(directory, lineOf(run), releases(lineOf(run)).front());
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
  time.setEnd(kLongest);
}

CellWorld::~CellWorld() {
  program.reset();
  std::filesystem::current_path(before_);
}

void CellWorld::start() {
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

void CellWorld::live(const std::function<void()>& look) {
  look_ = look;
  restfulLooks_ = 0;
  ++life_;  // what an earlier life of the program has planned dies with it
  scheduleLook();
  for (;;) {
    queue.WaitEvents();
    ++turns_;
  }
}

/// An event of our own shows whether the program's main loop turns, or an operation waits inside it.
void CellWorld::scheduleLook() {
  queue.post([] {});
  time.after(kLook, [this, life = life_] {
    if (life != life_) {
      return;
    }
    restfulLooks_ = turns_ > turnsSeen_ && program && !program->host().messageBox() ? restfulLooks_ + 1 : 0;
    turnsSeen_ = turns_;
    look_();
    scheduleLook();
  });
}

sim::Version CellWorld::wanted(std::string_view processor) const {
  if (run_.pages == Pages::OldVelarc) {
    return kOldVelarcRelease;
  }
  const Release& release = releases(lineOf(run_)).front();
  if (processor == "Hub") {
    return release.hub;
  }
  if (processor == "DSP") {
    return release.dsp;
  }
  return processor == "Front" ? release.front : release.rf;
}

bool CellWorld::unitIsGood() const {
  return std::ranges::all_of(unit().processors, [this](const sim::ProcessorState& processor) {
    return !processor.blank && processor.version == wanted(processor.model->name);
  });
}

bool CellWorld::saysSuccess() const {
  const char* const end = run_.pages == Pages::OldVelarc        ? "Congratulations!"
                          : run_.pages == Pages::ProductionLine ? "Serial Number and Preset Load Complete"
                                                                : "Programming Complete.";
  return Owner::pageText(*program).starts_with(end);
}

const OutcomeLabel& CellWorld::outcomeLabel() const {
  FormHost& host = program->host();
  Form* top = host.onScreen().empty() ? host.form("Form1") : host.onScreen().front();
  Control* label = top->control("lblOutcome");
  return static_cast<OutcomeLabel&>(label != nullptr ? *label : *host.form("Form1")->control("lblOutcome"));
}

int CellWorld::announcement() const { return unit().find(run_.processor)->model->announce; }

}  // namespace firmlane::test
