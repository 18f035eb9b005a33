#include "wanderer.h"

#include <algorithm>

namespace firmlane::test {

namespace {

struct RunOver {};
struct PowerLost {};

constexpr Micros kLife = 300 * kSecond;
// Longer than any limit in the program, so what can end has ended.
constexpr Micros kCalm = 200 * kSecond;
constexpr std::int32_t kFirstNumber = 1000;

constexpr const char* kFaults[] = {"silent",        "wrong-checksum", "late-answer", "late-erase", "late-verdict",    "refuses",
                                   "refuses-erase", "dies",           "no-verdict",  "holds-line", "wrong-read-back", "noise"};
constexpr sim::Version kVelarcVersions[] = {{5, 4, 0}, {5, 3, 0}};
constexpr const char* kInstallers[] = {"Remote51", "Remote50"};

std::string text(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }
bool has(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

const std::vector<const char*>& modelsOf(Way way) {
  static const std::vector<const char*> wireless = {"lwx51", "lwx52", "lwx51qdr", "lwx52qdr", "lwx9600"};
  static const std::vector<const char*> velarc2 = {"velarc2", "velarc2b", "velarc2-old-dsp"};
  static const std::vector<const char*> older = {"velarc"};
  static const std::vector<const char*> factory = {"lwx51"};
  return way == Way::Wireless ? wireless : way == Way::Velarc2 ? velarc2 : way == Way::OlderVelarc ? older : factory;
}

}  // namespace

Wanderer::Wanderer(Way way, std::uint32_t seed) : way_(way), random_(seed) {
  std::filesystem::current_path(directory.path());
  if (way == Way::ProductionLine) {
    putOnDisk(directory, Line::Wireless, releases(Line::Wireless).front());
    directory.write("sn.wls", Bytes{kFirstNumber & 0xFF, kFirstNumber >> 8, 0, 0});
  }
  if (wizards()) {
    if (chance(60)) {
      putOnDisk(directory, line(), oneOf(releases(line())));
    }
    offered_[updateListUrl(line())] = updateList(line());
    for (const Release& release : releases(line())) {
      for (const SetFile& file : setFiles(line(), release)) {
        offer(file.url, file.name, text(file.content));
      }
    }
  }
  disk_->plan(FaultyDisk::Fault::None, 0);
  serve();
  connectUnit();
}

Wanderer::~Wanderer() {
  program_.reset();
  std::filesystem::current_path(before_);
}

void Wanderer::offer(const std::string& url, const std::string& name, const std::string& content) {
  offered_[url] = content;
  whole_[name].insert(content);
  http.answer(url, content);
}

void Wanderer::serve() {
  if (wizards()) {
    firmlane::test::serve(http, line());
    return;
  }
  std::string list = "#Updates\r\n";
  for (const sim::Version& version : kVelarcVersions) {
    const std::string url = std::string(kServer) + "/Velarc/firmware/" + std::to_string(version.second) + "/vrc.bin";
    list += "VRC|DSP V5." + std::to_string(version.second) + "-2026|" + url + "\r\n";
    offer(url, "vrc.bin", text(sim::imageFile(sim::ImageKind::OldVelarc, version, kVelarcImageSize)));
  }
  for (const char* name : kInstallers) {
    const std::string url = std::string(kServer) + "/Velarc/remote/" + name + ".exe";
    list += std::string("REMOTE|") + name + "|" + url + "\r\n";
    offer(url, name + std::string(".exe"), std::string(3000, name[7]));
  }
  for (const char* path : {"/Velarc/update.txt", "/lwx/updatev4.txt"}) {
    http.answer(std::string(kServer) + path, list);
  }
}

void Wanderer::connectUnit() {
  unit_.reset();
  unit_ = std::make_unique<sim::VirtualUnit>(time, wire_, oneOf(modelsOf(way_)));
  ++units_;
  unit_->unit.onHappening = [this](const sim::Happening& happening) {
    if (happening.what == "stored") {
      noteSerial(happening.text);
    }
  };
  wire_.heard = [this, unit = wire_.heard](std::uint8_t byte) {
    listen(byte);
    unit(byte);
  };
  unit_->unit.startRunning();
}

void Wanderer::play() {
  bool alive = true;
  for (int lives = 0; alive && lives < 3; ++lives) {
    alive = false;
    end_ = time.now() + kLife;
    time.setEnd(end_ + 2 * kCalm);
    try {
      live();
    } catch (const RunOver&) {
      checkSomethingPossible();
    } catch (const PowerLost&) {
      alive = true;
    } catch (const PowerFailed&) {
      alive = true;
    } catch (const ProgramEnded&) {
      reachedEnd_ = reachedEnd_ || !desktop.programs.empty();
    } catch (const NothingCanHappen&) {
      fail("a wait that nothing can end");
    }
    program_.reset();
    if (wire_.isOpen()) {
      fail("the port is open behind the program's end");
    }
    if (alive) {
      disk_->reboot(random_);
    }
    checkFiles();
  }
}

void Wanderer::live() {
  const Platform platform{.queue = queue,
                          .screen = screen,
                          .mainDriver = driverInstead != nullptr ? *driverInstead : mainDriver,
                          .versionDriver = versionDriver,
                          .http = httpInstead != nullptr ? *httpInstead : http,
                          .desktop = desktop,
                          .files = filesOnDisk_,
                          .servers = {kServer, "http://registration.example"}};
  program_ = std::make_unique<Program>(platform, BuildSwitches{.factoryBuild = way_ == Way::ProductionLine});
  screen.press = [this](MessageButton button) { program_->host().answer(button); };
  screen.onChange = [this](Control& control) {
    if (control.name() == "lblTop" || control.name() == "lblMain") {
      checkVerdict(static_cast<Label&>(control).Caption);
    }
  };
  onProgram(*program_);
  program_->start();
  next();
  for (;;) {
    queue.WaitEvents();
    checkRest();
  }
}

void Wanderer::next() {
  const Micros pause = (chance(20) ? 5 : 1) * static_cast<Micros>(random_() % 1500 + 50) * kMillisecond;
  time.after(pause, [this, end = end_] {
    if (end != end_) {
      return;  // of a life that the computer lost power in
    }
    if (time.now() >= end_) {
      rest();
      return;
    }
    if (random_() % 400 == 0 || disk_->withoutPower()) {
      throw PowerLost();
    }
    act();
    next();
  });
}

/// The troubles end, the user sits back, and what has a limit runs into it.
void Wanderer::rest() {
  disk_->plan(FaultyDisk::Fault::None, 0);
  unit_->unit.faults = {};
  serve();
  time.after(kCalm, [] { throw RunOver(); });
}

void Wanderer::act() {
  if (chance(3)) {
    troubleUnit();
  }
  if (chance(3)) {
    troubleServer();
  }
  if (chance(2)) {
    troubleDisk();
  }
  FormHost& host = program_->host();
  if (host.messageBox()) {
    boxAt_ = time.now();
    answerBox();
    return;
  }
  if (host.onScreen().empty()) {
    return;
  }
  Form& top = *host.onScreen().front();
  if (top.name() == "frmPort") {
    workPort();
    return;
  }
  workPower(screenText());
  workForm(top);
}

void Wanderer::answerBox() {
  FormHost& host = program_->host();
  const std::vector<MessageButton> buttons = buttonsOf(host.messageBox()->buttons);
  if (host.messageBox()->title == "Warning") {  // whether to quit
    host.answer(chance(10) ? MessageButton::OK : MessageButton::Cancel);
    return;
  }
  host.answer(chance(70) ? buttons.front() : oneOf(buttons));
}

void Wanderer::workPort() {
  Form& form = *program_->host().onScreen().front();
  if (chance(5)) {
    program_->host().close(form);
    return;
  }
  constexpr const char* kButtons[] = {"Command3", "Option1(1)", "Option1(1)", "Option1(4)", "Command1", "Command1"};
  click(form, chance(5) ? "Command2" : oneOf(kButtons));
}

void Wanderer::workPower(const std::string& text) {
  sim::Unit& unit = unit_->unit;
  // Nobody puts another receiver in the place of the one that is at work, such as between two tries of one number.
  const Form& top = *program_->host().onScreen().front();
  const auto closed = [&top](const char* name) { return top.control(name) != nullptr && !top.control(name)->Enabled; };
  const bool busy = closed("Command3") || closed("btnNext");
  const bool told = has(text, "Please turn on the power switch") || has(text, "cycle the power") || has(text, "turn it back on");
  if (!unit.isOn()) {
    if (chance(80)) {
      unit.powerOn();
    }
  } else if (chance(told && unit.state().phase != sim::Phase::Starting ? 40 : 1)) {
    unit.powerOff();
  } else if (!wire_.isOpen() && !busy && chance(2)) {
    connectUnit();
  }
}

/// Mostly Next; sometimes twice, as an impatient user does.
bool Wanderer::workWizard(Form& form) {
  if (form.name() == "Form1") {
    click(form, chance(50) ? "Command3" : way_ == Way::Wireless ? "LWXButton" : "VRCButton");
    return true;
  }
  if (form.name() == "frmRecover") {
    constexpr const char* kButtons[] = {"btnRecover", "btnRecover", "btnComPort", "btnComPort", "Label1"};
    click(form, chance(2) ? "btnExit" : oneOf(kButtons));
    return true;
  }
  auto* wizard = dynamic_cast<AutoForm*>(&form);
  if (wizard == nullptr) {
    return false;
  }
  if (wizard->ChkOffline.Visible && (!wizard->btnNext.Enabled || chance(20))) {
    click(form, chance(50) ? "ChkOffline" : "chkReceiver");
  } else if (wizard->VersionList.Visible && wizard->VersionList.ListCount() > 0 && chance(40)) {
    program_->host().choose(wizard->VersionList, static_cast<int>(random_() % 2));
  } else if (!chance(10)) {
    click(form, "btnNext");
    click(form, chance(10) ? "btnNext" : "btnMore");
  } else {
    click(form, chance(2) ? "cmdQuit" : chance(50) ? "btnBack" : "btnRelNote");
  }
  return true;
}

void Wanderer::workForm(Form& form) {
  if (wizards() && workWizard(form)) {
    return;
  }
  FormHost& host = program_->host();
  if (chance(50) && form.control("Command3") != nullptr) {
    click(form, "Command3");
    return;
  }
  if (way_ == Way::Software && form.control("Option6") != nullptr && !host.refusal(*form.control("Option6")) && chance(70)) {
    click(form, "Option6");
    return;
  }
  std::vector<Control*> possible;
  for (Control* control : form.controls()) {
    // A number that is edited down on purpose may go out twice; that is the user's wish.
    if (!host.refusal(*control) && control->name() != "btnDown" && control->name() != "Text1") {
      possible.push_back(control);
    }
  }
  if (possible.empty()) {
    return;
  }
  Control& control = *oneOf(possible);
  if (auto* list = dynamic_cast<ListBox*>(&control)) {
    if (list->ListCount() > 0) {
      host.choose(control, static_cast<int>(random_() % static_cast<unsigned>(list->ListCount())));
    }
  } else if (control.kind() == ControlKind::TextBox) {
    host.type(control, chance(50) ? "" : "somebody");
  } else if (control.OnClick || control.kind() == ControlKind::OptionButton) {
    host.click(control);
  }
}

void Wanderer::troubleUnit() { sim::setFault(unit_->unit.faults, chance(60) ? "none" : oneOf(kFaults)); }

void Wanderer::troubleServer() {
  serve();
  if (chance(50)) {
    return;
  }
  auto one = offered_.begin();
  std::advance(one, random_() % offered_.size());
  const std::string half = one->second.substr(0, one->second.size() / 2);
  const ScriptedAnswer troubles[] = {
      {.failure = Failure(12030, "The connection was broken"), .delay = 3 * kSecond},
      {.failure = Failure(12002, "Too slow"), .delay = kForever},
      {.body = half, .headers = {{"content-length", std::to_string(one->second.size())}}},
  };
  http.answer(one->first, oneOf(troubles));
}

void Wanderer::troubleDisk() {
  using Fault = FaultyDisk::Fault;
  constexpr Fault kTroubles[] = {Fault::None, Fault::None, Fault::Error, Fault::FullLater, Fault::Power};
  disk_->plan(oneOf(kTroubles), static_cast<int>(random_() % 8));
}

void Wanderer::click(Form& form, const char* name) {
  if (Control* control = form.control(name)) {
    program_->host().click(*control);
  }
}

std::string Wanderer::screenText() const {
  const FormHost& host = program_->host();
  if (host.messageBox()) {
    return host.messageBox()->text;
  }
  std::string text;
  if (!host.onScreen().empty()) {
    for (const Control* control : host.onScreen().front()->controls()) {
      const auto* label = dynamic_cast<const Label*>(control);
      if (label != nullptr && label->Visible) {
        text += label->Caption.get() + "\n";
      }
    }
  }
  return text;
}

void Wanderer::fail(const std::string& what) {
  if (fault_.empty()) {
    fault_ = what + "\non the screen: " + (program_ ? screenText() : "nothing");
  }
}

}  // namespace firmlane::test
