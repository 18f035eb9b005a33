#include "stage.h"

namespace firmlane::test {

Platform platformOver(Ground& ground) {
  return {.queue = ground.queue,
          .screen = ground.screen,
          .mainDriver = ground.mainDriver,
          .versionDriver = ground.versionDriver,
          .http = ground.http,
          .desktop = ground.desktop,
          .files = ground.files,
          .servers = {kServer, "http://registration.example"}};
}

std::string versionsOf(const sim::Unit& unit) {
  std::string text;
  for (const sim::ProcessorState& processor : unit.state().processors) {
    text += (text.empty() ? "" : " ") + std::string(processor.model->name) + "=" + unit.state().versionOf(processor.model->name);
  }
  return text;
}

Stage::Stage(Line productLine, const std::string& model) : line(productLine) {
  connect(model);
  unit().startRunning();
  serve(http, line);
  program = std::make_unique<Program>(platformOver(*this));
  screen.press = [this](MessageButton button) { program->host().answer(button); };
}

void Stage::connect(const std::string& model) {
  bench.reset();
  bench = std::make_unique<sim::VirtualUnit>(time, wire, model);
}

AutoForm& Stage::form() const {
  return static_cast<AutoForm&>(*program->host().form(line == Line::Wireless ? "frmAuto" : "frmVRCAuto"));
}

void Stage::start() {
  struct Ready {};
  Micros at = 0;
  for (const char* button : {"Command3", line == Line::Wireless ? "LWXButton" : "VRCButton", "Command3", "btnNext"}) {
    after(at += kSecond, [this, button] {
      FormHost& host = program->host();
      host.click(*host.onScreen().front()->control(button));
    });
  }
  after(at + kSecond, [] { throw Ready(); });
  try {
    program->start();
    for (;;) {
      queue.WaitEvents();
    }
  } catch (const Ready&) {
    return;
  }
}

std::string Stage::screenText() const {
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

}  // namespace firmlane::test
