#include "console/console_session.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace firmlane {

namespace {

constexpr double kLongestWait = 1e9;  // seconds

/// What a click reaches. A list takes clicks on its lines by "choose".
bool isClickable(ControlKind kind) {
  switch (kind) {
    case ControlKind::CommandButton:
    case ControlKind::OptionButton:
    case ControlKind::CheckBox:
    case ControlKind::PictureBox:
    case ControlKind::Label:
      return true;
    default:
      return false;
  }
}

std::optional<MessageButton> buttonNamed(const std::string& name) {
  for (const MessageButton button : {MessageButton::OK, MessageButton::Cancel, MessageButton::Yes, MessageButton::No}) {
    if (name == buttonName(button)) {
      return button;
    }
  }
  return std::nullopt;
}

template <typename T>
T numberIn(const std::string& word) {
  T number{};
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error != std::errc() || end != word.data() + word.size()) {
    throw badCommand("\"" + word + "\" is not a number");
  }
  return number;
}

void requireEnd(const CommandLine& line) {
  if (!line.atEnd()) {
    throw badCommand("a word too many");
  }
}

/// A word, and no other behind it.
std::string lastWord(CommandLine& line) {
  std::string word = line.word();
  requireEnd(line);
  return word;
}

}  // namespace

struct ConsoleSession::Verb {
  const char* name;
  void (ConsoleSession::*carryOut)(CommandLine& line);
};

const ConsoleSession::Verb ConsoleSession::kVerbs[] = {
    {"click", &ConsoleSession::click},   {"choose", &ConsoleSession::choose}, {"type", &ConsoleSession::type},
    {"answer", &ConsoleSession::answer}, {"close", &ConsoleSession::close},   {"get", &ConsoleSession::get},
    {"dump", &ConsoleSession::dump},     {"forms", &ConsoleSession::forms},   {"wait", &ConsoleSession::wait},
    {"sleep", &ConsoleSession::sleep},   {"quit", &ConsoleSession::quit},
};

void ConsoleSession::take(std::string line) {
  if (ended_) {
    answerEnded(line);
  } else {
    lines_.emplace_back(std::move(line));
  }
}

void ConsoleSession::takeEnd() { lines_.emplace_back(std::nullopt); }

bool ConsoleSession::serve() {
  bool acted = settleHold();
  // A click that is still on its way decides what the next command meets. A message box holds it back, and must be answerable.
  while (!hold_ && !quit_ && !lines_.empty() && (takenUp_ == handedOn_ || host_.messageBox())) {
    const std::optional<std::string> line = std::move(lines_.front());
    lines_.pop_front();
    if (line) {
      carryOut(*line);
    } else {
      quit_ = true;
    }
    settleHold();
    acted = true;
  }
  return acted;
}

void ConsoleSession::answerError(const std::string& error, const std::function<Json()>& value) {
  Json::Object answer{{"ok", false}, {"error", error}};
  if (value) {
    answer.emplace_back("value", value());
  }
  if (stopsAtFailure_ && failure_.empty()) {
    failure_ = "line " + std::to_string(lineNumber_) + " of the script" + (comment_.empty() ? "" : " (" + comment_ + ")") + ", " +
               command_ + ": " + error + (value ? "; it holds " + answer.back().second.text() : "");
    quit_ = true;
  }
  print_(std::move(answer));
}

void ConsoleSession::carryOut(const std::string& text) {
  ++lineNumber_;
  try {
    CommandLine line(text);
    if (line.isBlank()) {
      const std::size_t comment = text.find_first_not_of("# ");
      comment_ = comment == std::string::npos ? comment_ : text.substr(comment);
      return;
    }
    command_ = text;
    const std::string verb = line.word();
    const auto* known = std::find_if(std::begin(kVerbs), std::end(kVerbs), [&verb](const Verb& v) { return verb == v.name; });
    if (known == std::end(kVerbs)) {
      throw badCommand("there is no \"" + verb + "\"");
    }
    (this->*known->carryOut)(line);
  } catch (const Refusal& refusal) {
    answerError(refusal.what());
  }
}

bool ConsoleSession::settleHold() {
  if (!hold_) {
    return false;
  }
  if (hold_->kind == Hold::Kind::Condition && hold_->done()) {
    hold_.reset();
    answerOk();
    return true;
  }
  if (host_.queue().now() < hold_->deadline) {
    return false;
  }
  const Hold hold = *std::exchange(hold_, std::nullopt);
  if (hold.kind == Hold::Kind::Sleep) {
    answerOk();
  } else {
    answerError("timeout", hold.value);
  }
  return true;
}

void ConsoleSession::handOn(const std::function<std::optional<std::string>()>& action) {
  // The queue comes to this right before it comes to the action.
  host_.queue().post([this, number = ++handedOn_] { takenUp_ = number; });
  if (const auto refusal = action()) {
    throw Refusal(*refusal);
  }
  answerOk();
}

void ConsoleSession::click(CommandLine& line) {
  Control& control = reader_.control(lastWord(line));
  if (!isClickable(control.kind())) {
    throw Refusal("no such control");
  }
  handOn([&] { return host_.click(control); });
}

void ConsoleSession::choose(CommandLine& line) {
  const std::string path = line.word();
  const int index = numberIn<int>(lastWord(line));
  Control& list = reader_.control(path);
  handOn([&] { return host_.choose(list, index); });
}

void ConsoleSession::type(CommandLine& line) {
  const std::string path = line.word();
  const std::string text = utf8AsHeld(lastWord(line));
  Control& textBox = reader_.control(path);
  handOn([&] { return host_.type(textBox, text); });
}

void ConsoleSession::close(CommandLine& line) {
  Form& form = reader_.form(lastWord(line));
  handOn([&] { return host_.close(form); });
}

void ConsoleSession::answer(CommandLine& line) {
  const std::optional<MessageButton> button = buttonNamed(lastWord(line));
  if (!host_.messageBox()) {
    throw Refusal("no message box");
  }
  if (!button) {
    throw Refusal("no such button");
  }
  if (const auto refusal = host_.answer(*button)) {
    throw Refusal(*refusal);
  }
  hold_ = Hold{.kind = Hold::Kind::Box, .deadline = kForever, .done = {}, .value = {}};
}

void ConsoleSession::boxClosed() {
  if (hold_ && hold_->kind == Hold::Kind::Box) {
    hold_.reset();
    answerOk();
  }
}

void ConsoleSession::get(CommandLine& line) {
  const std::string path = lastWord(line);
  answerValue(path == "Record" && record_ ? Json(record_()) : reader_.find(path)());
}

void ConsoleSession::dump(CommandLine& line) { answerValue(PathReader::dump(reader_.form(lastWord(line)))); }

void ConsoleSession::forms(CommandLine& line) {
  requireEnd(line);
  answerValue(reader_.forms());
}

void ConsoleSession::wait(CommandLine& line) { hold_ = readWait(line); }

void ConsoleSession::sleep(CommandLine& line) {
  hold_ = Hold{.kind = Hold::Kind::Sleep, .deadline = readDeadline(line), .done = {}, .value = {}};
}

void ConsoleSession::quit(CommandLine& line) {
  requireEnd(line);
  quit_ = true;
  answerOk();
}

Micros ConsoleSession::readDeadline(CommandLine& line) const {
  const double seconds = numberIn<double>(lastWord(line));
  if (!std::isfinite(seconds) || seconds < 0) {
    throw badCommand("seconds are a number from 0");
  }
  return host_.queue().now() + static_cast<Micros>(std::min(seconds, kLongestWait) * static_cast<double>(kSecond));
}

ConsoleSession::Hold ConsoleSession::readWait(CommandLine& line) const {
  const std::string what = line.word();
  if (what == "end") {
    return {.kind = Hold::Kind::End, .deadline = readDeadline(line), .done = {}, .value = {}};
  }
  if (what == "messagebox" || what == "nomessagebox") {
    const bool up = what == "messagebox";
    return {.kind = Hold::Kind::Condition,
            .deadline = readDeadline(line),
            .done = [this, up] { return host_.messageBox().has_value() == up; },
            .value = {}};
  }
  if (what == "form" || what == "noform") {
    const bool on = what == "form";
    const Form& form = reader_.form(line.word());
    return {.kind = Hold::Kind::Condition,
            .deadline = readDeadline(line),
            .done = [&form, on] { return form.Visible.get() == on; },
            .value = {}};
  }
  return readComparison(what, line);
}

ConsoleSession::Hold ConsoleSession::readComparison(const std::string& path, CommandLine& line) const {
  using Comparison = bool (*)(const Json& value, const Json& wanted);
  struct Operator {
    const char* name;
    Comparison holds;
    bool (*fits)(const Json& operand);
  };
  static constexpr std::array<Operator, 4> kOperators = {{
      {"==", [](const Json& value, const Json& wanted) { return value == wanted; }, [](const Json&) { return true; }},
      {"!=", [](const Json& value, const Json& wanted) { return !(value == wanted); }, [](const Json&) { return true; }},
      {"contains",
       [](const Json& value, const Json& wanted) { return value.string()->find(*wanted.string()) != std::string::npos; },
       [](const Json& operand) { return operand.string() != nullptr; }},
      {">=", [](const Json& value, const Json& wanted) { return *value.number() >= *wanted.number(); },
       [](const Json& operand) { return operand.number() != nullptr; }},
  }};
  const std::string name = line.word();
  const auto* found = std::find_if(kOperators.begin(), kOperators.end(), [&name](const Operator& o) { return name == o.name; });
  if (found == kOperators.end()) {
    throw badCommand("there is no comparison \"" + name + "\"");
  }
  const std::optional<Json> wanted = Json::parse(line.allButLastWord());
  if (!wanted) {
    throw badCommand("the value to compare with is not JSON");
  }
  const Micros deadline = readDeadline(line);
  std::function<Json()> read = reader_.find(path);
  if (!found->fits(*wanted) || !found->fits(read())) {
    throw badCommand(name == ">=" ? ">= compares numbers" : "contains compares texts");
  }
  return {.kind = Hold::Kind::Condition,
          .deadline = deadline,
          .done = [read, wanted, holds = found->holds] { return holds(read(), *wanted); },
          .value = read};
}

void ConsoleSession::programEnded() {
  ended_ = true;
  print_(Json::Object{{"event", "end"}});
  if (hold_ && hold_->kind == Hold::Kind::End) {
    answerOk();
  } else if (hold_) {
    answerError("ended");
  }
  hold_.reset();
  for (const auto& line : std::exchange(lines_, {})) {
    if (line) {
      answerEnded(*line);
    }
  }
}

void ConsoleSession::answerEnded(const std::string& text) {
  ++lineNumber_;
  try {
    CommandLine line(text);
    if (line.isBlank()) {
      return;
    }
    command_ = text;
    const std::string verb = line.word();
    // These two got what they asked for.
    if (verb == "quit" || (verb == "wait" && line.word() == "end")) {
      answerOk();
    } else {
      answerError("ended");
    }
  } catch (const Refusal& refusal) {
    answerError(refusal.what());
  }
}

}  // namespace firmlane
