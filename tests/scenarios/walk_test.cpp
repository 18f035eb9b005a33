// Walks through every page: tests/walks/NAME.txt is what a user does, line by line, and what changes on the forms at that. A
// change of a page shows in the diff of its walk. FIRMLANE_WALKS=1 writes the files anew instead of comparing them.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "platform_over.h"
#include "releases.h"

namespace firmlane::test {
namespace {

constexpr Micros kPause = 2 * kSecond;
struct WalkOver {};

/// What of the run state a walk tells. The versions and records stand on the forms.
constexpr const char* kTold =
    "AutoDriving AutoPage CatalogueReady ComPort ContactBlank DebugView ErrorText FactoryBuild FactoryFirstPass FileSerial "
    "FinalCheckFailed FlashPhase FlashTarget FrontStreaming GetVersionsSent GotId HasRf2 ImageDone InAutoWizard InHouseBuild "
    "InVrcAutoWizard LegacyLink MatchedSystem MicAck OldVelarc OptionsShown PortChosen PortFound PortSearching ProductCode "
    "ProgressSized ReadTimedOut RecoverChosen SelectedSystem SerialAnswerTaken SerialNumber SerialOnly SerialRead SerialStep "
    "SystemCount TimedOut UnitIsVrc2 UnitModel VersionPicked VersionsCompared VersionsComplete VersionsRead VrcOldDsp WizardPage";

std::string replaced(std::string text, const std::string& what, const std::string& by) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
    text.replace(at, what.size(), by);
  }
  return text;
}

std::string inQuotes(const std::string& text) { return "\"" + replaced(replaced(text, "\r", "\\r"), "\n", "\\n") + "\""; }

struct Written {
  std::string operator()(bool value) const { return value ? "yes" : "no"; }
  std::string operator()(std::int32_t value) const { return std::to_string(value); }
  std::string operator()(const std::string& value) const { return inQuotes(value); }
  std::string operator()(const std::vector<std::string>& lines) const {
    std::string text;
    for (const std::string& line : lines) {
      text += (text.empty() ? "" : ", ") + inQuotes(line);
    }
    return "{" + text + "}";
  }
  std::string operator()(const std::vector<SystemRecord>&) const { return ""; }
};

/// What old hands read about the frames goes with the bytes, not with the pages.
bool isDiagnosis(const std::string& name) {
  return name.starts_with("msg") || name == "txtstat" || name == "txtlen" || name == "txtQtime" || name == "txtSent";
}

/// What shows how far an operation is, other than where it begins and where it ends.
bool isUnderWay(const Control& control) {
  const auto* bar = dynamic_cast<const ProgressBar*>(&control);
  return bar != nullptr ? bar->Value > 0 && bar->Value < bar->Max : control.name() == "lblProgressInfo";
}

std::string wordsOf(const Activity& activity) {
  const Activity::Phase phase = activity.now();
  std::string text = nameOf(phase.doing);
  text += phase.parts > 0 ? " " + std::to_string(phase.part) + "/" + std::to_string(phase.parts) : "";
  text += phase.limit > 0 ? ", " + std::to_string(phase.limit / kSecond) + " s" : "";
  for (const ProcessorReport& one : activity.processors()) {
    text += "; " + std::to_string(one.number) + " " + one.name + " " + nameOf(one.state) + " " + one.before + ">" + one.wanted +
            ">" + one.after;
  }
  return text;
}

std::string wordsOf(const LineSettings& settings) {
  return std::to_string(settings.baud) + ", handshake " + std::to_string(static_cast<int>(settings.handshake));
}

std::string wordsOf(const Timer& timer) {
  return (timer.enabled() ? "on, " : "off, ") + std::to_string(timer.interval()) + " ms";
}

/// The program and a user who reads his steps from a walk's file.
class Walk : Ground {
 public:
  Walk(const Walk&) = delete;
  Walk& operator=(const Walk&) = delete;
  explicit Walk(std::istream& file) {
    std::filesystem::current_path(directory.path());  // the serial numbers stand where the program is started
    for (std::string line; std::getline(file, line);) {
      if (line.starts_with("# ") || line.empty()) {
        told_ << line << "\n";
      } else if (line.starts_with("! ")) {
        told_ << line << "\n";
        prepare(line.substr(2));
      } else if (line.starts_with("> ")) {
        steps_.push_back(line.substr(2));
      }
    }
  }

  ~Walk() { std::filesystem::current_path(before_); }

  std::string play() {
    program_ = std::make_unique<Program>(platformOver(*this), build_);
    screen.press = [this](MessageButton button) { program_->host().answer(button); };
    screen.onChange = [this](Control& control) { tellChange(control); };
    const auto listening = program_->activity().listen([this] { tellState(); });
    tellAll(false);
    time.after(kPause, [this] { step(); });
    try {
      program_->start();
      for (;;) {
        queue.WaitEvents();
      }
    } catch (const WalkOver&) {
    } catch (const ProgramEnded&) {
      tellAll();
      say("the program has ended");
    }
    return withoutDirectory(told_.str());
  }

 private:
  void prepare(const std::string& what) {
    std::istringstream words(what);
    std::string verb;
    std::string name;
    words >> verb >> name;
    if (verb == "unit") {
      int port = 1;
      words >> port;
      bench_.reset();
      bench_ = std::make_unique<sim::VirtualUnit>(time, wires.add(port), name);
      bench_->unit.startRunning();
    } else if (verb == "set") {
      const Line line = name == "wireless" ? Line::Wireless : Line::Velarc2;
      putOnDisk(directory, line, releases(line).front());
    } else if (verb == "server") {
      serve(http, name == "wireless" ? Line::Wireless : Line::Velarc2);
    } else if (verb == "page") {  // page ADDRESS TEXT: what the server has there; ~ ends a line
      std::string text;
      std::getline(words >> std::ws, text);
      http.answer(kServer + name, replaced(text, "~", "\r\n"));
    } else if (verb == "half-page") {  // it breaks off in its middle
      http.answer(kServer + name, ScriptedAnswer{.body = "1234", .headers = {{"content-length", "8"}}});
    } else if (verb == "no-page") {
      http.answer(kServer + name, ScriptedAnswer{.failure = Failure(104, "Broken")});
    } else if (verb == "file") {
      directory.write(name, bytes(what.substr(what.rfind(' '))));
    } else if (verb == "gone") {
      std::filesystem::remove(directory.path() / name);
    } else if (verb == "image") {
      directory.write("vrc.bin", sim::imageFile(sim::ImageKind::OldVelarc, {4, 91, 0}, 400));
    } else if (verb == "build") {
      build_ = {.factoryBuild = name == "factory", .inHouseBuild = name == "in-house", .debugView = name == "debug"};
    }
  }

  /// Each run has a directory of its own, and each system its own sign between names.
  [[nodiscard]] std::string withoutDirectory(const std::string& text) const {
    return replaced(replaced(text, directory.path().string(), "DIRECTORY"), "DIRECTORY\\", "DIRECTORY/");
  }

  void step() {
    tellAll();
    if (steps_.empty()) {
      throw WalkOver();
    }
    const std::string step = steps_.front();
    steps_.pop_front();
    say("> " + step);
    pause_ = kPause;
    act(step);
    time.after(pause_, [this] { this->step(); });
  }

  void act(const std::string& step) {
    std::istringstream words(step);
    std::string verb;
    std::string name;
    std::string rest;
    words >> verb >> name;
    std::getline(words >> std::ws, rest);
    FormHost& host = program_->host();
    Control* control = host.onScreen().empty() ? nullptr : host.onScreen().front()->control(name);
    std::optional<std::string> refused;
    if (verb == "click" && control != nullptr) {
      refused = host.click(*control);
    } else if (verb == "press") {  // in code, which reaches hidden buttons too
      queue.post([control] { control->Click(); });
    } else if (verb == "choose") {
      refused = host.choose(*control, std::stoi(rest));
    } else if (verb == "type") {
      refused = host.type(*control, rest);
    } else if (verb == "answer") {
      refused = host.answer(name == "OK"    ? MessageButton::OK
                            : name == "Yes" ? MessageButton::Yes
                            : name == "No"  ? MessageButton::No
                                            : MessageButton::Cancel);
    } else if (verb == "close") {
      refused = host.close(*host.onScreen().front());
    } else if (verb == "off") {
      bench_->unit.powerOff();
    } else if (verb == "on") {
      bench_->unit.powerOn();
    } else if (verb == "fault") {
      sim::setFault(bench_->unit.faults, name);
    } else if (constexpr std::string_view kPreparing = " unit server set page half-page no-page gone image file ";
               kPreparing.find(" " + verb + " ") != std::string_view::npos) {
      prepare(step);
    } else if (verb == "unplug") {
      wires.find(1)->vanish();
    } else if (verb == "plug") {
      wires.find(1)->openFailure.reset();
    } else if (verb == "wait") {
      pause_ = std::stoi(name) * kSecond;
    } else {
      refused = "no such thing on the screen";
    }
    if (refused) {
      say("refused: " + *refused);
    }
  }

  /// A change is told as it happens and in its order, all but the steps of a bar: what had changed before goes first.
  void tellChange(const Control& control) {
    if (isUnderWay(control)) {
      tellValue(control.form().name() + "." + control.name() + ".visible", RunStateValue(control.Visible.get()), true);
    } else if (!isDiagnosis(control.name())) {
      tellState();
      tellProperties(control, true);
    }
  }

  void tellAll(bool aloud = true) {
    tellState(aloud);
    for (const Form* form : program_->host().forms()) {
      for (const PropertyBase* property : form->properties()) {
        tellValue(form->name() + "." + property->name(), held(*property), aloud);
      }
      for (const Control* control : form->controls()) {
        if (!isDiagnosis(control->name())) {
          tellProperties(*control, aloud);
        }
      }
    }
  }

  void tellState(bool aloud = true) {
    std::istringstream fields(kTold);
    for (std::string field; fields >> field;) {
      tellValue(field, *runStateField(program_->state(), field), aloud);
    }
    tellValue("activity", wordsOf(program_->activity()), aloud);
    for (const int port : {1, 2}) {
      if (const VirtualWire* wire = wires.find(port)) {
        tellValue("port " + std::to_string(port), wire->isOpen() ? wordsOf(*wire->settings()) : "closed", aloud);
      }
    }
    for (const Form* form : program_->host().forms()) {
      tellTimers(*form, aloud);
    }
    for (; shown_ < screen.log().size(); ++shown_) {
      say(screen.log()[shown_]);
    }
    tellValue("unit", bench_ ? versionsOf(bench_->unit) : "", aloud);
    const auto& box = program_->host().messageBox();
    tellValue("box", box ? RunStateValue(textOf(*box)) : RunStateValue(false), aloud);
    tellValue("asked the server for", http.requests().empty() ? "" : http.requests().back(), aloud);
    tellValue("opened", desktop.documents.empty() ? "" : desktop.documents.back(), aloud);
    tellValue("started", desktop.programs.empty() ? "" : desktop.programs.back(), aloud);
  }

  void tellTimers(const Form& form, bool aloud) {
    if (const auto* form1 = dynamic_cast<const Form1*>(&form)) {
      tellValue("Form1.Watchdog", wordsOf(form1->Watchdog), aloud);
      tellValue("Form1.Timer1", wordsOf(form1->Timer1), aloud);
      tellValue("Form1.Timer3", wordsOf(form1->Timer3), aloud);
    } else if (const auto* wizard = dynamic_cast<const AutoForm*>(&form)) {
      tellValue(form.name() + ".Watch", wordsOf(wizard->Watch), aloud);
    } else if (const auto* version = dynamic_cast<const FrmVersion*>(&form)) {
      tellValue("frmVersion.Timer1", wordsOf(version->Timer1), aloud);
    }
  }

  /// What went out before goes first.
  void say(const std::string& line) {
    constexpr std::size_t kFrame = 30;
    for (const int port : {1, 2}) {
      const VirtualWire* wire = wires.find(port);
      if (wire != nullptr && sent_[port] < wire->sent().size()) {
        const ByteSpan more = ByteSpan(wire->sent()).subspan(sent_[port]);
        told_ << "sent on port " << port << ": " << (more.size() < kFrame ? hex(more) : std::to_string(more.size()) + " bytes")
              << "\n";
        sent_[port] = wire->sent().size();
      }
    }
    told_ << line << "\n";
  }

  void tellProperties(const Control& control, bool aloud) {
    for (const PropertyBase* property : control.properties()) {
      tellValue(control.form().name() + "." + control.name() + "." + property->name(), held(*property), aloud);
    }
  }

  static RunStateValue held(const PropertyBase& property) {
    return std::visit([](const auto& value) { return RunStateValue(value); }, property.value());
  }

  void tellValue(const std::string& name, RunStateValue value, bool aloud) {
    RunStateValue& last = last_[name];
    if (aloud && last != value) {
      say(name + " = " + std::visit(Written{}, value));
    }
    last = std::move(value);
  }

  static std::string textOf(const MessageBox& box) {
    return "[" + box.title + "] " + box.text + ", icon " + std::to_string(static_cast<int>(box.icon)) + ", sign " +
           std::to_string(static_cast<int>(box.sign)) + ", " + std::to_string(buttonsOf(box.buttons).size()) + " buttons";
  }

  std::filesystem::path before_ = std::filesystem::current_path();
  std::unique_ptr<sim::VirtualUnit> bench_;
  BuildSwitches build_;
  std::deque<std::string> steps_;
  std::unique_ptr<Program> program_;
  std::map<std::string, RunStateValue> last_;
  std::map<int, std::size_t> sent_;  // of that, told
  std::size_t shown_ = 0;
  std::ostringstream told_;
  Micros pause_ = 0;
};

std::vector<std::string> walks() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(WALKS)) {
    names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

class Walks : public testing::TestWithParam<std::string> {};

TEST_P(Walks, EveryPageComesAsItsWalkTells) {
  const std::string path = WALKS "/" + GetParam() + ".txt";
  std::ifstream file(path, std::ios::binary);
  const std::string told = Walk(file).play();
  if (std::getenv("FIRMLANE_WALKS") != nullptr) {
    std::ofstream(path, std::ios::binary) << told;
  }
  EXPECT_EQ(told, Files::readText(path)) << "with FIRMLANE_WALKS=1 the test writes the walk anew";
}

INSTANTIATE_TEST_SUITE_P(Pages, Walks, testing::ValuesIn(walks()), [](const auto& walk) {
  std::string name = walk.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

}  // namespace
}  // namespace firmlane::test
