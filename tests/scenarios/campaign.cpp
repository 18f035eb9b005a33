#include "campaign.h"

#include <algorithm>

namespace firmlane::test {

namespace {

struct RunOver {};

constexpr Micros kRunLength = 450 * kSecond;
// Longer than any limit in the program, so what can end has ended.
constexpr Micros kCalm = 200 * kSecond;

constexpr const char* kFaults[] = {
    "silent", "wrong-checksum", "late-answer", "late-erase", "late-verdict", "refuses", "refuses-erase", "drops-acknowledgements",
    "dies",   "early-verdict",  "no-verdict",  "holds-line", "noise"};

const std::vector<const char*>& models(Line line) {
  static const std::vector<const char*> wireless = {"lwx51", "lwx52", "lwx51qdr", "lwx52qdr", "lwx9600"};
  static const std::vector<const char*> velarc2 = {"velarc2", "velarc2b", "velarc2-old-dsp"};
  return line == Line::Wireless ? wireless : velarc2;
}

int asNumber(const sim::ProcessorState* processor) {
  if (processor == nullptr || processor->blank) {
    return 0;
  }
  const sim::Version& version = processor->version;
  return (version.first * 128 + version.second) * 128 + version.third;
}

int asNumber(const sim::Version& version) { return (version.first * 128 + version.second) * 128 + version.third; }

}  // namespace

RandomRun::RandomRun(Line line, std::uint32_t seed) : stage(line, models(line)[seed % models(line).size()]), random_(seed) {
  for (const Release& release : releases(line)) {
    for (const SetFile& file : setFiles(line, release)) {
      whole_[file.name].insert(std::string(file.content.begin(), file.content.end()));
    }
  }
  if (chance(60)) {
    putOnDisk(stage.directory, line, oneOf(releases(line)));
  }
  stage.screen.onChange = [this](const Control& control) {
    if (&control == &stage.form().lblMain && stage.form().lblMain.Caption.get().starts_with("Programming Complete.")) {
      checkVerdict();
    }
  };
}

void RandomRun::play() {
  stage.start();
  end_ = stage.time.now() + kRunLength;
  stage.time.setEnd(end_ + 2 * kCalm);
  next();
  try {
    for (;;) {
      stage.queue.WaitEvents();
      checkAtRest();
    }
  } catch (const RunOver&) {
    checkSomethingPossible();
  } catch (const ProgramEnded&) {
    // A user can always leave.
  }
  stage.program.reset();
  if (stage.wire.isOpen()) {
    fail("the port is open behind the program's end");
  }
  checkFiles();
}

void RandomRun::next() {
  const Micros pause = (chance(20) ? 5 : 1) * static_cast<Micros>(random_() % 2000 + 50) * kMillisecond;
  stage.time.after(pause, [this] {
    if (stage.time.now() >= end_) {
      rest();
      return;
    }
    act();
    next();
  });
}

/// The troubles end, the user sits back, and what has a limit runs into it.
void RandomRun::rest() {
  stage.unit().faults = {};
  serve(stage.http, stage.line);
  stage.time.after(kCalm, [] { throw RunOver(); });
}

void RandomRun::act() {
  if (stage.state().AutoPage != page_) {
    page_ = stage.state().AutoPage;
    checkFiles();
  }
  if (chance(3)) {
    troubleUnit();
  }
  if (chance(3)) {
    troubleServer();
  }
  if (chance(1)) {
    swapUnit();
  }
  FormHost& host = stage.program->host();
  if (host.messageBox()) {
    answerBox();
    return;
  }
  if (host.onScreen().empty()) {
    return;
  }
  const std::string top = host.onScreen().front()->name();
  if (top == "frmPort") {
    workPort();
  } else if (top == "frmRecover") {
    constexpr const char* kButtons[] = {"btnRecover", "btnRecover", "btnComPort", "btnComPort", "Label1"};
    click(chance(2) ? "btnExit" : oneOf(kButtons));
  } else if (top == "Form1") {
    click("Command3");
  } else {
    workPower();
    workWizard();
  }
}

void RandomRun::answerBox() {
  const std::vector<MessageButton> buttons = buttonsOf(stage.program->host().messageBox()->buttons);
  stage.program->host().answer(chance(70) ? buttons.front() : oneOf(buttons));
}

void RandomRun::workPort() {
  if (chance(5)) {
    stage.program->host().close(*stage.program->host().onScreen().front());
    return;
  }
  constexpr const char* kButtons[] = {"Command3", "Option1(2)", "Option1(2)", "Option1(4)", "Command1", "Command1"};
  click(chance(5) ? "Command2" : oneOf(kButtons));
}

void RandomRun::workWizard() {
  AutoForm& form = stage.form();
  if (form.ChkOffline.Visible && (!form.btnNext.Enabled || chance(20))) {
    click(chance(50) ? "ChkOffline" : "chkReceiver");
    return;
  }
  if (form.VersionList.Visible && form.VersionList.ListCount() > 0 && chance(40)) {
    stage.program->host().choose(form.VersionList, static_cast<int>(random_()) & 1);
    return;
  }
  constexpr const char* kButtons[] = {"btnNext", "btnNext", "btnNext", "btnNext",    "btnNext", "btnNext",
                                      "btnNext", "btnMore", "btnMore", "btnRelNote", "btnBack"};
  const std::string button = chance(1) && chance(20) ? "cmdQuit" : oneOf(kButtons);
  click(button);
  if (chance(10)) {
    click(button);
  }
}

void RandomRun::workPower() {
  sim::Unit& unit = stage.unit();
  const bool told =
      stage.form().lblReset.Visible && stage.form().lblReset.Caption.get().find("turn it back on") != std::string::npos;
  if (!unit.isOn()) {
    if (chance(80)) {
      unit.powerOn();
    }
  } else if (chance(told && unit.state().phase != sim::Phase::Starting ? 60 : 1)) {
    unit.powerOff();
  }
}

void RandomRun::troubleUnit() { sim::setFault(stage.unit().faults, chance(60) ? "none" : oneOf(kFaults)); }

void RandomRun::troubleServer() {
  serve(stage.http, stage.line);
  if (chance(60)) {
    return;
  }
  std::vector<std::string> urls = {updateListUrl(stage.line)};
  for (const SetFile& file : setFiles(stage.line, oneOf(releases(stage.line)))) {
    urls.push_back(file.url);
  }
  const std::string& url = oneOf(urls);
  const ScriptedAnswer troubles[] = {{.failure = Failure(12030, "The connection was broken"), .delay = 3 * kSecond},
                                     {.failure = Failure(12002, "Too slow"), .delay = kForever}};
  if (url == urls.front() && chance(50)) {
    stage.http.answer(url, chance(50) ? "" : "<html>");
  } else {
    stage.http.answer(url, oneOf(troubles));
  }
}

/// Another unit takes the place of the one that hangs there, as long as nothing is being written.
void RandomRun::swapUnit() {
  if (!stage.wire.isOpen()) {
    stage.connect(oneOf(models(stage.line)));
    stage.unit().startRunning();
  }
}

void RandomRun::click(const std::string& name) {
  FormHost& host = stage.program->host();
  if (Control* control = host.onScreen().front()->control(name)) {
    host.click(*control);
  }
}

void RandomRun::checkAtRest() {
  const AutoForm& form = stage.form();
  const int page = stage.state().AutoPage;
  const bool readout = stage.program->host().form("frmVersion")->Loaded;
  if (stage.wire.isOpen() && !(readout && page == 19)) {
    fail("a port is open at rest");
  }
  const bool goesOn = (form.btnNext.Visible && form.btnNext.Enabled) || (form.btnBack.Visible && form.btnBack.Enabled) ||
                      form.ChkOffline.Visible || page == 19;
  if (form.Visible && !goesOn) {
    fail("at rest with nothing but Exit");
  }
}

void RandomRun::checkFiles() {
  for (const auto& [name, contents] : whole_) {
    if (stage.directory.has(name) && !contents.contains(stage.directory.read(name))) {
      fail("half written: " + name);
    }
  }
}

void RandomRun::checkSomethingPossible() {
  const FormHost& host = stage.program->host();
  if (host.messageBox()) {
    return;
  }
  for (const Form* form : host.onScreen()) {
    for (const Control* control : form->controls()) {
      if (control->kind() == ControlKind::CommandButton && !host.refusal(*control)) {
        return;
      }
    }
  }
  fail("the user can do nothing");
}

void RandomRun::checkVerdict() {
  reachedEnd_ = true;
  const RunState& state = stage.state();
  const bool wireless = stage.line == Line::Wireless;
  const std::string chosen = (wireless ? state.LwxSysFile : state.VrcSysFile)[0].SystemVersion.trimmed();
  const auto& all = releases(stage.line);
  const auto release = std::find_if(all.begin(), all.end(), [&](const Release& r) { return r.system == chosen; });
  if (release == all.end()) {
    return;  // nothing on disk and nothing chosen: there is nothing to be behind
  }
  const sim::UnitState& unit = stage.unit().state();
  const auto behind = [&unit](const char* processor, const sim::Version& wanted) {
    return unit.find(processor) != nullptr && asNumber(unit.find(processor)) < asNumber(wanted);
  };
  bool good = true;
  if (!wireless || state.LegacyLink) {
    good = asNumber(unit.find("DSP")) == asNumber(release->dsp);
  }
  if (!wireless) {
    good = good && !behind("Hub", release->hub);
  } else if (!state.LegacyLink) {
    good = !behind("Hub", release->hub) && !behind("RF1", release->rf) && !behind("RF2", release->rf) &&
           !behind("Front", release->front);
  }
  if (!good) {
    fail("a verdict that is not true, for " + chosen + ": " + versionsOf(stage.unit()));
  }
}

void RandomRun::fail(const std::string& what) {
  if (fault_.empty()) {
    fault_ = what + "\non the screen: " + (stage.program ? stage.screenText() : "nothing");
  }
}

}  // namespace firmlane::test
