// The console over a few forms in virtual time: a script goes in, lines come out.
#pragma once

#include <gmock/gmock.h>

#include <sstream>

#include "console/console_source.h"
#include "platform/virtual/virtual_time.h"

namespace firmlane::test {

/// A raw text of several lines, without the line end that it opens with.
inline std::string lines(std::string raw) { return raw.substr(1); }

struct Sheet : Form {
  Sheet(FormHost& formHost, const std::string& name) : Form(formHost, name, "A sheet") {
    for (const char* caption : {"one", "two"}) {
      choice.add(*this, "choice", caption, choice.group);
    }
  }
  Label text{*this, "text"};
  CommandButton next{*this, "next", "Next >>"};
  CheckBox mark{*this, "mark", "mark"};
  Frame box{*this, "box", "Frame"};
  CommandButton inside{*this, "inside", "inside", &box};
  OptionArray choice;
  TextBox field{*this, "field"};
  ListBox list{*this, "list"};
  PictureBox picture{*this, "picture", "lwxpic"};
  ProgressBar bar{*this, "bar", 8};
};

struct ConsoleBench : testing::Test {
  VirtualTime time;
  ConsoleSource source{time};
  EventQueue queue{time, source};
  std::vector<std::string> output;
  PrintLine print = [this](const Json& line) { output.push_back(line.text()); };
  ConsoleScreen screen{print};
  FormHost host{queue, screen};
  RunState state;
  Activity activity{time};
  Sheet sheet{host, "Sheet"};
  Sheet other{host, "Other"};
  ConsoleSession session{host, state, activity, print};
  bool ended = false;

  ConsoleBench() {
    screen.onBoxClosed = [this] { session.boxClosed(); };
    source.attach(session);
    sheet.Show();
    output.clear();
  }

  /// Runs the program on a script, all of which has come at once, for a span of virtual time.
  void run(const std::string& script, Micros span = kMillisecond) {
    std::istringstream lines(script);
    for (std::string line; std::getline(lines, line);) {
      session.take(line);
    }
    try {
      for (const Micros end = queue.now() + span; queue.now() < end;) {
        queue.waitEventsUntil(end);
      }
    } catch (const ProgramEnded&) {
      ended = true;
      session.programEnded();
    }
  }
  /// The output since the last call, a line for each.
  std::string taken() {
    std::string text;
    for (const std::string& line : std::exchange(output, {})) {
      text += line + "\n";
    }
    return text;
  }
  std::string answer(const std::string& line, Micros span = kMillisecond) {
    run(line, span);
    return taken();
  }
};

}  // namespace firmlane::test
