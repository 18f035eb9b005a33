#include "console_app.h"

#include <cstdio>

#include "platform/qt/qt_desktop.h"
#include "platform/qt/standard_input.h"
#include "platform/qt/surroundings.h"
#include "platform/system_path.h"

namespace firmlane {

namespace {
// The answer to the click that ended the program and the "wait end" that a script sends upon it may cross each other.
constexpr int kLastCommandsMilliseconds = 100;
}  // namespace

void TellingDesktop::openDocument(const std::string& document) {
  print_(Json::Object{{"event", "open"}, {"document", shownAsUtf8(document)}});
}

void TellingDesktop::runProgram(const std::string& path) {
  QtDesktop::makeStartable(path);
  print_(Json::Object{{"event", "run"}, {"program", shownAsUtf8(path)}});
}

ConsoleApp::ConsoleApp(const ConsoleOptions& options, const std::string& directory)
    : world_(options.timeScale),
      ports_(systemPath(directory), options.ports),
      files_(systemPath(directory), record_),
      screen_([this](const Json& line) { print(line); }),
      desktop_([this](const Json& line) { print(line); }),
      program_(std::make_unique<Program>(Platform{.queue = queue_,
                                                  .screen = screen_,
                                                  .mainDriver = mainDriver_,
                                                  .versionDriver = versionDriver_,
                                                  .http = http_,
                                                  .desktop = desktop_,
                                                  .files = files_,
                                                  .servers = options.servers,
                                                  .recorder = record_},
                                         options.switches)),
      details_(record_, *program_, options.servers, options.switches,
               {qtVersionInUse(), systemInUse(), files_.programDirectory(), [this](int port) { return ports_.device(port); }}),
      session_(program_->host(), program_->state(), program_->activity(), [this](const Json& line) { print(line); }) {
  screen_.onBoxClosed = [this] { session_.boxClosed(); };
  source_.attach(session_);
  if (options.stopAtFailure) {
    session_.stopAtFailure();
  }
  session_.setRecord([this] { return details_.text(); });
  if (!options.recordFile.empty()) {
    recordFile_.emplace(options.recordFile, queue_, record_, details_.head());
  }
}

void ConsoleApp::print(const Json& line) {
  const std::string text = line.text() + "\n";
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
    world_.requestEnd();  // nobody is left who works the program
  }
}

std::string ConsoleApp::run() {
  StandardInput input([this](const std::string& line) { session_.take(line); }, [this] { session_.takeEnd(); },
                      StandardInput::EndOfFile::Ends);
  program_->start();
  program_->run();
  recordFile_.reset();  // what goes as the program goes is no part of the run
  program_.reset();     // a script that reads of the end finds the ports free
  session_.programEnded();
  if (!session_.quitRequested()) {
    input.drain(kLastCommandsMilliseconds);
  }
  return session_.failure();
}

}  // namespace firmlane
