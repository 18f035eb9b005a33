#include "platform/console/console_session.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "platform/console/command_words.h"
#include "platform/console/console_screen.h"

namespace firmlane {

namespace {
constexpr std::size_t kLongestLine = 1 << 20;
constexpr double kLongestWait = 1e9;  // seconds

std::optional<double> number(const std::string& word) {
  double result = 0;
  const char* end = word.data() + word.size();
  const auto [rest, error] = std::from_chars(word.data(), end, result);
  if (error != std::errc() || rest != end || !std::isfinite(result)) {
    return std::nullopt;
  }
  return result;
}

/// How a value is compared with what a script waits for.
enum class Comparison { Equal, NotEqual, Contains, AtLeast };

std::optional<Comparison> comparisonNamed(const std::string& name) {
  struct Row {
    const char* name;
    Comparison comparison;
  };
  constexpr Row kRows[] = {
      {"==", Comparison::Equal}, {"!=", Comparison::NotEqual}, {"contains", Comparison::Contains}, {">=", Comparison::AtLeast}};
  for (const Row& row : kRows) {
    if (name == row.name) {
      return row.comparison;
    }
  }
  return std::nullopt;
}

bool compare(const QJsonValue& held, Comparison comparison, const QJsonValue& wanted) {
  switch (comparison) {
    case Comparison::Equal:
      return held == wanted;
    case Comparison::NotEqual:
      return held != wanted;
    case Comparison::Contains:
      return held.isString() && held.toString().contains(wanted.toString());
    case Comparison::AtLeast:
      return held.isDouble() && held.toDouble() >= wanted.toDouble();
  }
  return false;
}

/// Whether a comparison can be made between values of these kinds.
bool comparable(const QJsonValue& held, Comparison comparison, const QJsonValue& wanted) {
  if (comparison == Comparison::Contains) {
    return held.isString() && wanted.isString();
  }
  return comparison != Comparison::AtLeast || (held.isDouble() && wanted.isDouble());
}

}  // namespace

/// A command, and how many words stand behind it.
struct ConsoleSession::Command {
  const char* name;
  std::size_t leastWords;
  std::size_t mostWords;
  void (ConsoleSession::*run)(const Words&);
};

const ConsoleSession::Command ConsoleSession::kCommands[] = {
    {"click", 1, 1, &ConsoleSession::click},   {"choose", 2, 2, &ConsoleSession::choose}, {"type", 2, 2, &ConsoleSession::type},
    {"answer", 1, 1, &ConsoleSession::answer}, {"close", 1, 1, &ConsoleSession::close},   {"get", 1, 1, &ConsoleSession::get},
    {"dump", 1, 1, &ConsoleSession::dump},     {"forms", 0, 0, &ConsoleSession::forms},   {"wait", 2, 4, &ConsoleSession::wait},
    {"sleep", 1, 1, &ConsoleSession::sleep},   {"quit", 0, 0, &ConsoleSession::quit},
};

ConsoleSession::ConsoleSession(FormHost& host, const RunState& state, const Clock& clock, std::function<void(const Json&)> print,
                               std::function<void()> quit)
    : host_(host), clock_(clock), paths_(host, state), print_(std::move(print)), quit_(std::move(quit)) {}

void ConsoleSession::take(const std::string& line) {
  lines_.push_back(line);
  serve();
}

void ConsoleSession::takeEnd() {
  inputEnded_ = true;
  serve();
}

bool ConsoleSession::handingOver() const {
  // A message box holds the program's queue; what it asks must be answered before anything is taken from there.
  return taken_ && !*taken_ && !host_.messageBox();
}

void ConsoleSession::serve() {
  while (!wait_ && !lines_.empty() && !handingOver() && !ended_) {
    const std::string line = std::move(lines_.front());
    lines_.pop_front();
    carryOut(line);
  }
  if (inputEnded_ && !wait_ && lines_.empty() && !handingOver() && !ended_) {
    inputEnded_ = false;
    quit_();
  }
}

void ConsoleSession::carryOut(const std::string& line) {
  if (line.size() > kLongestLine) {
    bad("the line is too long");
    return;
  }
  std::string text = line;
  if (!text.empty() && text.back() == '\r') {
    text.pop_back();
  }
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string::npos || text[first] == '#') {
    return;
  }
  const auto words = splitWords(text);
  if (!words) {
    bad("a quote is left open, or the line is not UTF-8");
    return;
  }
  const Words rest(words->begin() + 1, words->end());
  for (const Command& command : kCommands) {
    if (words->front() != command.name) {
      continue;
    }
    if (rest.size() < command.leastWords || rest.size() > command.mostWords) {
      bad(std::string(command.name) + " has the wrong number of words");
    } else {
      (this->*command.run)(rest);
    }
    return;
  }
  bad("there is no such command");
}

void ConsoleSession::error(const std::string& text) { print_(R"({"ok":false,"error":)" + jsonText(text) + "}"); }

void ConsoleSession::refusedOrOk(const std::optional<std::string>& refusal) {
  if (refusal) {
    error(*refusal);
  } else {
    ok();
  }
}

void ConsoleSession::act(const std::function<std::optional<std::string>()>& action) {
  // The mark stands in the queue right before the action: once it has run, the next look at the outside comes behind the
  // action's beginning.
  auto taken = std::make_shared<bool>(false);
  host_.queue().post([taken] { *taken = true; });
  const auto refusal = action();
  if (!refusal) {
    taken_ = std::move(taken);
  }
  refusedOrOk(refusal);
}

Control* ConsoleSession::findControl(const std::string& path) {
  Control* control = paths_.control(path);
  if (control == nullptr) {
    error("no such control");
  }
  return control;
}

std::optional<Micros> ConsoleSession::seconds(const std::string& word) {
  const auto count = number(word);
  if (!count || *count < 0 || *count > kLongestWait) {
    bad("seconds are a number from 0 up");
    return std::nullopt;
  }
  return clock_.now() + static_cast<Micros>(*count * kSecond);
}

void ConsoleSession::click(const Words& words) {
  if (Control* control = findControl(words[0])) {
    act([this, control] { return host_.click(*control); });
  }
}

void ConsoleSession::choose(const Words& words) {
  const auto line = number(words[1]);
  if (!line || *line != std::floor(*line)) {
    bad("the line of a list is a whole number");
    return;
  }
  if (Control* control = findControl(words[0])) {
    act([this, control, line] { return host_.choose(*control, static_cast<int>(std::clamp(*line, -1.0, 1e6))); });
  }
}

void ConsoleSession::type(const Words& words) {
  const auto text = wordText(words[1]);
  if (!text) {
    bad("the text is no JSON string");
    return;
  }
  if (Control* control = findControl(words[0])) {
    act([this, control, text] { return host_.type(*control, *text); });
  }
}

void ConsoleSession::answer(const Words& words) {
  const auto button = buttonNamed(words[0]);
  if (!button) {
    error(host_.messageBox() ? "no such button" : "no message box");
    return;
  }
  if (const auto refusal = host_.answer(*button)) {
    error(*refusal);
    return;
  }
  boxGone_ = false;
  begin({.done = [this] { return boxGone_; }, .onTimeout = nullptr, .endIsGood = true});
}

void ConsoleSession::close(const Words& words) {
  Form* form = paths_.form(words[0]);
  if (form == nullptr) {
    error("no such control");
  } else {
    act([this, form] { return host_.close(*form); });
  }
}

void ConsoleSession::get(const Words& words) {
  const Paths::Reading reading = paths_.read(words[0]);
  if (reading.value) {
    value(*reading.value);
  } else {
    error(reading.error);
  }
}

void ConsoleSession::dump(const Words& words) {
  const Form* form = paths_.form(words[0]);
  if (form == nullptr) {
    error("no such control");
  } else {
    value(Paths::dump(*form));
  }
}

void ConsoleSession::forms(const Words&) {
  std::vector<Json> list;
  for (const Form* form : host_.onScreen()) {
    list.push_back(jsonObject({{"form", jsonText(form->name())}, {"modal", host_.isModal(*form) ? "true" : "false"}}));
  }
  value(jsonList(list));
}

void ConsoleSession::wait(const Words& words) {
  if (words.size() == 4) {
    waitForValue(words);
  } else if (words.size() == 3 && (words[0] == "form" || words[0] == "noform")) {
    waitForForm(words, words[0] == "form");
  } else if (words.size() == 2 && (words[0] == "messagebox" || words[0] == "nomessagebox")) {
    waitForBox(words, words[0] == "messagebox");
  } else if (words.size() == 2 && words[0] == "end") {
    if (const auto until = seconds(words[1])) {
      begin({.done = [] { return false; }, .until = *until, .onTimeout = nullptr, .endIsGood = true});
    }
  } else {
    bad("wait for what?");
  }
}

void ConsoleSession::waitForBox(const Words& words, bool up) {
  if (const auto until = seconds(words[1])) {
    begin({.done = [this, up] { return host_.messageBox().has_value() == up; }, .until = *until, .onTimeout = nullptr});
  }
}

void ConsoleSession::waitForForm(const Words& words, bool shown) {
  const Form* form = paths_.form(words[1]);
  if (form == nullptr) {
    error("no such control");
    return;
  }
  if (const auto until = seconds(words[2])) {
    begin({.done = [form, shown] { return form->Visible.get() == shown; }, .until = *until, .onTimeout = nullptr});
  }
}

void ConsoleSession::waitForValue(const Words& words) {
  const auto comparison = comparisonNamed(words[1]);
  const auto wanted = parseJson(words[2]);
  if (!comparison || !wanted) {
    bad("wait compares by ==, !=, contains or >= with a JSON value");
    return;
  }
  const std::string path = words[0];
  const Paths::Reading reading = paths_.read(path);
  if (!reading.value) {
    error(reading.error);
    return;
  }
  if (!comparable(*parseJson(*reading.value), *comparison, *wanted)) {
    bad("these values cannot be compared so");
    return;
  }
  if (const auto until = seconds(words[3])) {
    const auto held = [this, path] { return paths_.read(path).value.value_or("null"); };
    begin({.done = [held, comparison, wanted] { return compare(*parseJson(held()), *comparison, *wanted); },
           .until = *until,
           .onTimeout = held,
           .polls = path.rfind("RunState.", 0) == 0});
  }
}

void ConsoleSession::sleep(const Words& words) {
  if (const auto until = seconds(words[0])) {
    begin({.done = [] { return false; }, .until = *until, .timeIsGood = true, .onTimeout = nullptr});
  }
}

void ConsoleSession::quit(const Words&) {
  ok();
  lines_.clear();
  quit_();
}

void ConsoleSession::begin(Wait wait) {
  wait_ = std::move(wait);
  look();
}

void ConsoleSession::look() {
  if (!wait_) {
    return;
  }
  if (wait_->done()) {
    wait_.reset();
    ok();
  } else if (clock_.now() >= wait_->until) {
    const Wait over = std::move(*wait_);
    wait_.reset();
    if (over.timeIsGood) {
      ok();
    } else if (over.onTimeout) {
      print_(R"({"ok":false,"error":"timeout","value":)" + over.onTimeout() + "}");
    } else {
      error("timeout");
    }
  }
}

void ConsoleSession::answerAfterTheEnd(const std::string& line) {
  const Words words = splitWords(line).value_or(Words{"?"});
  if (words.empty() || words.front().front() == '#') {
    return;
  }
  if (words.front() == "quit" || (words.front() == "wait" && words.size() == 3 && words[1] == "end")) {
    ok();
  } else {
    error("ended");
  }
}

void ConsoleSession::ended(const std::function<void()>& printEnd) {
  ended_ = true;
  const std::optional<Wait> left = std::exchange(wait_, std::nullopt);
  const bool answered = left && boxGone_ && left->until == kForever;
  if (answered) {
    ok();  // the answer that ended the program
  }
  printEnd();
  if (left && !answered) {
    if (left->endIsGood) {
      ok();
    } else {
      error("ended");
    }
  }
  for (const std::string& line : lines_) {
    answerAfterTheEnd(line);
  }
  lines_.clear();
}

}  // namespace firmlane
