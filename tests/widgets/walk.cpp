#include "walk.h"

#include <QCoreApplication>

namespace firmlane::test {

namespace {
constexpr Micros kLook = 400 * kMillisecond;
constexpr Micros kPatience = 1800 * kSecond;
struct Over {};
}  // namespace

void settleWindows(WidgetScreen& screen) {
  screen.refresh();
  for (int pass = 0; pass < 3; ++pass) {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
  }
  QCoreApplication::sendPostedEvents();  // what a timer of the last pass has set off
}

Walk::Walk(Line line, const std::string& model, Wishes wishes)
    : bench(time, wires.add(3), model),
      program({.queue = queue,
               .screen = windows,
               .mainDriver = mainDriver,
               .versionDriver = versionDriver,
               .http = http,
               .desktop = desktop,
               .files = files,
               .servers = {kServer, "http://registration.example"}}),
      player_(
          program.host(), [this](bool on) { on ? bench.unit.powerOn() : bench.unit.powerOff(); }, std::move(wishes)) {
  serve(http, line);
  windows.attach(program.host(), &program.activity());
  bench.unit.startRunning();
  player_.onText = [this](const std::string&) { show(); };
}

Player::Outcome Walk::play() {
  time.setEnd(time.now() + kPatience);
  time.after(kLook, [this] { look(); });
  try {
    program.start();
    for (;;) {
      queue.WaitEvents();
    }
  } catch (const Over&) {
  }
  return outcome_;
}

void Walk::look() {
  outcome_ = player_.step();
  if (outcome_ != Player::Outcome::Playing) {
    show();
    throw Over();
  }
  time.after(kLook, [this] { look(); });
}

void Walk::show() {
  settleWindows(windows);
  const auto& forms = program.host().onScreen();
  if (!onPage) {
    return;
  }
  if (windows.box() != nullptr) {
    onPage("box", *windows.box());
  } else if (!forms.empty()) {
    onPage(forms.front()->name(), *windows.window(*forms.front()));
  }
}

}  // namespace firmlane::test
