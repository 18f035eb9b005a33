#include "console_app.h"

#include <algorithm>
#include <iostream>

#include "platform/qt/qt_desktop.h"

namespace firmlane {

namespace {

constexpr double kPollMilliseconds = 10;
constexpr double kLongestAlarm = 60'000;

void print(const Json& line) { std::cout << line << std::endl; }

void printEvent(const char* name, const char* key, const std::string& value) {
  print(jsonObject({{"event", jsonText(name)}, {key, jsonText(value)}}));
}

}  // namespace

void TellingDesktop::openDocument(const std::string& document) { printEvent("open", "document", document); }

void TellingDesktop::runProgram(const std::string& path) {
  QtDesktop::makeStartable(path);
  printEvent("run", "program", path);
}

ConsoleApp::ConsoleApp(const ConsoleOptions& options, const std::string& directory)
    : platform_({.directory = directory, .ports = options.ports, .timeScale = options.timeScale}),
      timeScale_(options.timeScale),
      screen_(print),
      program_({.queue = platform_.queue,
                .screen = screen_,
                .mainDriver = platform_.mainDriver,
                .versionDriver = platform_.versionDriver,
                .http = platform_.http,
                .desktop = desktop_,
                .files = platform_.files,
                .servers = options.servers},
               options.switches),
      session_(program_.host(), program_.state(), platform_.source, print, [this] { platform_.source.requestEnd(); }) {
  screen_.onChange = [this] { changed(); };
  screen_.onBoxClosed = [this] { session_.boxClosed(); };
  alarm_.setSingleShot(true);
  alarm_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&alarm_, &QTimer::timeout, [this] {
    session_.look();
    session_.serve();
    arm();
  });
}

void ConsoleApp::changed() {
  if (session_.waiting()) {
    session_.look();
    arm();
  }
}

void ConsoleApp::arm() {
  if (session_.behind()) {
    alarm_.start(1);
  } else if (session_.waiting()) {
    const double scaled = kPollMilliseconds / timeScale_;
    double milliseconds = session_.mustPoll() ? scaled : kLongestAlarm;
    if (session_.deadline() != kForever) {
      const double left = static_cast<double>(session_.deadline() - platform_.source.now()) / kMillisecond / timeScale_;
      milliseconds = std::min(milliseconds, left);
    }
    alarm_.start(static_cast<int>(std::clamp(milliseconds + 1, 1.0, kLongestAlarm)));
  }
}

void ConsoleApp::run() {
  const StandardInput input(
      [this](const std::string& line) {
        session_.take(line);
        arm();
      },
      [this] {
        session_.takeEnd();
        arm();
      },
      StandardInput::EndOfFile::Ends);
  try {
    program_.start();
    program_.run();
  } catch (const ProgramEnded&) {
    // ended before the start form stood
  }
  session_.ended([] { print(R"({"event":"end"})"); });
}

}  // namespace firmlane
