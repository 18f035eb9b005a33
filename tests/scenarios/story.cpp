#include "story.h"

#include <gtest/gtest.h>

#include <sstream>

namespace firmlane::test {

namespace {

constexpr Micros kLook = 100 * kMillisecond;
constexpr Micros kPatience = 1800 * kSecond;
struct StoryOver {};

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

std::optional<MessageButton> buttonNamed(const std::string& name) {
  const std::pair<const char*, MessageButton> buttons[] = {
      {"OK", MessageButton::OK}, {"Cancel", MessageButton::Cancel}, {"Yes", MessageButton::Yes}, {"No", MessageButton::No}};
  for (const auto& [text, button] : buttons) {
    if (name == text) {
      return button;
    }
  }
  return std::nullopt;
}

}  // namespace

Story::Story(Line productLine, const std::string& model) : line(productLine) {
  connect(model);
  unit().startRunning();
  serve(http, line);
  const Platform platform{.queue = queue,
                          .screen = screen,
                          .mainDriver = mainDriver,
                          .versionDriver = versionDriver,
                          .http = http,
                          .desktop = desktop,
                          .files = files,
                          .servers = {kServer, "http://registration.example"}};
  program = std::make_unique<Program>(platform);
  screen.press = [this](MessageButton button) { program->host().answer(button); };
  screen.onChange = [this](Control& control) { note(control); };
}

Story::~Story() = default;

void Story::connect(const std::string& model) {
  bench.reset();
  bench = std::make_unique<sim::VirtualUnit>(time, wire, model);
}

std::string Story::versions() const {
  std::string text;
  for (const sim::ProcessorState& processor : bench->unit.state().processors) {
    text += (text.empty() ? "" : " ") + std::string(processor.model->name) + "=" +
            bench->unit.state().versionOf(processor.model->name);
  }
  return text;
}

AutoForm& Story::form() const {
  return *static_cast<AutoForm*>(program->host().form(line == Line::Wireless ? "frmAuto" : "frmVRCAuto"));
}

void Story::play(std::vector<Step> steps) {
  steps_.assign(steps.begin(), steps.end());
  time.setEnd(time.now() + kPatience);
  time.after(kLook, [this] { look(); });
  try {
    if (!started_) {
      started_ = true;
      program->start();
    }
    for (;;) {
      queue.WaitEvents();
      checkRest();
    }
  } catch (const StoryOver&) {
    return;
  } catch (const ProgramEnded&) {
    ended_ = true;
  } catch (const NothingCanHappen&) {
    ADD_FAILURE() << "the story stopped at: " << (steps_.empty() ? "its end" : steps_.front().sees)
                  << "\non the screen: " << screenText();
    return;
  }
  if (!steps_.empty()) {
    ADD_FAILURE() << "the program has ended before: " << steps_.front().sees;
  }
}

/// Looks at the screen and does the next thing, from outside of the program.
void Story::look() {
  if (!actions_.empty()) {
    const std::string action = actions_.front();
    actions_.pop_front();
    if (action.starts_with("wait ")) {
      time.after(std::stoi(action.substr(5)) * kSecond, [this] { look(); });
      return;
    }
    EXPECT_TRUE(act(action)) << "cannot " << action << "\non the screen: " << screenText();
  } else if (steps_.empty()) {
    throw StoryOver();
  } else if (has(screenText(), steps_.front().sees)) {
    perform(steps_.front().does);
    steps_.pop_front();
  } else if (habits_) {
    followHabits();
  }
  time.after(kLook, [this] { look(); });
}

void Story::note(const Control& control) {
  const AutoForm& wizard = form();
  const auto* label = dynamic_cast<const Label*>(&control);
  if (label != &wizard.lblMain && label != &wizard.lblReset && label != &wizard.lblTotal) {
    return;
  }
  std::string& last = captions_[label];
  if (last != label->Caption.get()) {
    last = label->Caption;
    seen.push_back(last);
  }
}

std::vector<std::string> Story::seenOf(const std::string& start) const {
  std::vector<std::string> texts;
  std::copy_if(seen.begin(), seen.end(), std::back_inserter(texts),
               [&start](const std::string& text) { return text.starts_with(start); });
  return texts;
}

void Story::perform(const std::string& actions) {
  std::istringstream list(actions);
  for (std::string action; std::getline(list, action, ';');) {
    action = action.substr(std::min(action.size(), action.find_first_not_of(' ')));
    if (action == "cycle") {
      actions_.insert(actions_.end(), {"off", "wait 1", "on"});
    } else if (!action.empty()) {
      actions_.push_back(action);
    }
  }
}

bool Story::act(const std::string& action) {
  std::istringstream words(action);
  std::string verb;
  std::string name;
  int number = 0;
  words >> verb >> name >> number;
  FormHost& host = program->host();
  if (verb == "answer") {
    return buttonNamed(name) && !host.answer(*buttonNamed(name));
  }
  if (verb == "off") {
    unit().powerOff();
    return true;
  }
  if (verb == "on") {
    unit().powerOn();
    return true;
  }
  if (verb == "port") {
    wire.openFailure = Failure(13, "Serial port COM 3 is in use");
    return true;
  }
  if (verb == "fault") {
    return sim::setFault(unit().faults, name);
  }
  if (verb == "habits") {
    habits_ = false;
    return true;
  }
  if (verb == "connect") {
    connect(name);
    unit().startRunning();
    return true;
  }
  if (host.onScreen().empty()) {
    return false;
  }
  Form& top = *host.onScreen().front();
  if (verb == "close") {
    return !host.close(top);
  }
  Control* control = top.control(name);
  return control != nullptr && !(verb == "choose" ? host.choose(*control, number) : host.click(*control));
}

bool Story::followHabits() {
  FormHost& host = program->host();
  if (host.messageBox() || host.onScreen().empty()) {
    return false;
  }
  const Form& top = *host.onScreen().front();
  if (top.name() == "frmPort") {
    perform("click Command3; click Option1(2); click Command1");
    return true;
  }
  const std::string instruction = form().lblReset.Visible ? form().lblReset.Caption.get() : "";
  const bool isNew = instruction != instruction_;
  instruction_ = instruction;
  if (has(instruction, "turn it back on") && isNew) {
    perform("cycle");
    return true;
  }
  return has(instruction, "Click Next") && &top == &form() && form().btnNext.Enabled && act("click btnNext");
}

std::string Story::screenText() const {
  const FormHost& host = program->host();
  if (host.messageBox()) {
    return "[" + host.messageBox()->title + "] " + host.messageBox()->text;
  }
  if (host.onScreen().empty()) {
    return "";
  }
  std::string text = host.onScreen().front()->name() + " page " + std::to_string(state().AutoPage);
  for (const Control* control : host.onScreen().front()->controls()) {
    const auto* label = dynamic_cast<const Label*>(control);
    if (label != nullptr && label->Visible) {
      text += "\n" + label->Caption.get();
    }
  }
  return text;
}

/// The program waits for a user action: no port is open, but the one of the readout behind a verdict.
void Story::checkRest() {
  const bool verdict = state().AutoPage == 19 && program->host().form("frmVersion")->Loaded;
  if (wire.isOpen() && !verdict && !restless_) {
    restless_ = true;
    ADD_FAILURE() << "a port is open while the program waits at: " << screenText();
  }
}

std::vector<Step> toOptions(Line line) {
  return {{"Welcome to the Tolvex Firmlane", "click Command3"},
          {"Please select the product", line == Line::Wireless ? "click LWXButton" : "click VRCButton"},
          {"What would you like to do?", "click Command3"},
          {"There are 2 main steps in upgrading", "click btnNext"}};
}

std::vector<Step> operator+(std::vector<Step> first, const std::vector<Step>& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

}  // namespace firmlane::test
