// The protocol of the console: commands in, one answer each, in their order. Commands are served from below the event queue, so
// they work while a handler runs for minutes and while a message box holds the program. Acting goes through FormHost, under the
// rules that bind every user.
#pragma once

#include <deque>
#include <optional>
#include <string>

#include "console/command_line.h"
#include "console/console_screen.h"
#include "console/path_reader.h"

namespace firmlane {

class ConsoleSession {
 public:
  ConsoleSession(FormHost& host, const RunState& state, const Activity& activity, PrintLine print)
      : host_(host), reader_(host, state, activity), print_(std::move(print)) {}
  ConsoleSession(const ConsoleSession&) = delete;
  ConsoleSession& operator=(const ConsoleSession&) = delete;
  ~ConsoleSession() = default;

  /// What `get Record` reads. Before the program starts.
  void setRecord(std::function<std::string()> record) { record_ = std::move(record); }

  /// From now on the first command that fails ends the console, as "quit" would. Before the program starts.
  void stopAtFailure() { stopsAtFailure_ = true; }
  /// The command that failed, with its number among the lines of the script, the comment above it and the error; empty when none
  /// has, or when the console does not stop at it.
  [[nodiscard]] const std::string& failure() const { return failure_; }

  /// A line of the script has come; it is carried out when those before it are. After the end it is answered at once.
  void take(std::string line);
  /// The script has come to its end, which counts as "quit".
  void takeEnd();

  /// Carries out what can be carried out now. True when it has done anything, so that a sleep has to be looked at anew. Runs no
  /// handler.
  bool serve();
  /// The time of the program's clock at which serve has something to do at the latest.
  [[nodiscard]] Micros deadline() const { return hold_ ? hold_->deadline : kForever; }
  /// The script has asked for the end.
  [[nodiscard]] bool quitRequested() const { return quit_; }

  /// The message box has gone.
  void boxClosed();
  /// The program has ended: tells it, and answers whatever still waits. The forms may be gone by then.
  void programEnded();

 private:
  /// A command that is not answered yet and holds back those behind it.
  struct Hold {
    enum class Kind { Condition, Sleep, End, Box };
    Kind kind;
    Micros deadline = kForever;
    std::function<bool()> done;   // of a condition
    std::function<Json()> value;  // told when it runs out; may be empty
  };

  struct Verb;
  static const Verb kVerbs[];

  void carryOut(const std::string& line);
  void answerEnded(const std::string& line);
  bool settleHold();

  void click(CommandLine& line);
  void choose(CommandLine& line);
  void type(CommandLine& line);
  void answer(CommandLine& line);
  void close(CommandLine& line);
  void get(CommandLine& line);
  void dump(CommandLine& line);
  void forms(CommandLine& line);
  void wait(CommandLine& line);
  void sleep(CommandLine& line);
  void quit(CommandLine& line);

  [[nodiscard]] Hold readWait(CommandLine& line) const;
  [[nodiscard]] Hold readComparison(const std::string& path, CommandLine& line) const;
  [[nodiscard]] Micros readDeadline(CommandLine& line) const;

  void handOn(const std::function<std::optional<std::string>()>& action);
  void answerOk() { print_(Json::Object{{"ok", true}}); }
  void answerValue(Json value) { print_(Json::Object{{"ok", true}, {"value", std::move(value)}}); }
  void answerError(const std::string& error, const std::function<Json()>& value = {});

  FormHost& host_;
  PathReader reader_;
  PrintLine print_;
  std::function<std::string()> record_;
  std::deque<std::optional<std::string>> lines_;  // nothing stands for the end of the script
  std::optional<Hold> hold_;
  int handedOn_ = 0;  // actions given to the queue
  int takenUp_ = 0;   // the last of them that the queue has come to
  bool quit_ = false;
  bool ended_ = false;
  bool stopsAtFailure_ = false;
  std::size_t lineNumber_ = 0;
  std::string command_;  // the last that was taken up
  std::string comment_;  // above it
  std::string failure_;
};

}  // namespace firmlane
