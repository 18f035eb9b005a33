// The console's protocol: one command a line in, one answer a line out, in the order of the commands. Commands are served from
// outside of the program's handlers, so they are served while one runs for minutes, and while a message box holds them all.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/console/paths.h"

namespace firmlane {

class ConsoleSession {
 public:
  /// `print` takes each answer; `quit` ends the program at once.
  ConsoleSession(FormHost& host, const RunState& state, const Clock& clock, std::function<void(const Json&)> print,
                 std::function<void()> quit);

  /// Takes a command line and serves what can be served now.
  void take(const std::string& line);
  /// The input has ended: quits when the commands before the end have been served.
  void takeEnd();
  /// Looks again at what a command waits for. Call it now and then while waiting() holds, and whenever something has changed.
  void look();
  [[nodiscard]] bool waiting() const { return wait_.has_value(); }
  /// When a wait is over at the latest; kForever when nothing waits, or without an end.
  [[nodiscard]] Micros deadline() const { return wait_ ? wait_->until : kForever; }
  /// Whether what is waited for can change without anybody telling: a field of the run state.
  [[nodiscard]] bool mustPoll() const { return wait_ && wait_->polls; }
  /// Whether commands have been read that were not served yet, behind one that waited.
  [[nodiscard]] bool behind() const { return !wait_ && (!lines_.empty() || inputEnded_); }
  /// Serves commands that stand behind one that has been answered.
  void serve();

  /// The message box that was up is gone.
  void boxClosed() { boxGone_ = true; }
  /// The program has ended. Answers every command that is left.
  void ended(const std::function<void()>& printEnd);

 private:
  using Words = std::vector<std::string>;
  struct Command;
  static const Command kCommands[];

  /// What holds back the commands behind it.
  struct Wait {
    std::function<bool()> done;
    Micros until = kForever;
    bool timeIsGood = false;          // the end of the time is what was waited for
    std::function<Json()> onTimeout;  // value that is told with a timeout; none when empty
    bool endIsGood = false;           // the end of the program answers it well
    bool polls = false;               // nobody tells when it changes
  };

  void carryOut(const std::string& line);
  void answerAfterTheEnd(const std::string& line);
  void ok() { print_(R"({"ok":true})"); }
  void value(const Json& json) { print_(R"({"ok":true,"value":)" + json + "}"); }
  void error(const std::string& text);
  void bad(const std::string& why) { error("bad command: " + why); }
  void refusedOrOk(const std::optional<std::string>& refusal);
  /// Answers a user action, and holds back the commands behind it until the program has taken it from its queue.
  void act(const std::function<std::optional<std::string>()>& action);
  [[nodiscard]] bool handingOver() const;
  [[nodiscard]] Control* findControl(const std::string& path);
  void begin(Wait wait);
  [[nodiscard]] std::optional<Micros> seconds(const std::string& word);

  void click(const Words& words);
  void choose(const Words& words);
  void type(const Words& words);
  void answer(const Words& words);
  void close(const Words& words);
  void get(const Words& words);
  void dump(const Words& words);
  void forms(const Words& words);
  void wait(const Words& words);
  void waitForBox(const Words& words, bool up);
  void waitForForm(const Words& words, bool shown);
  void waitForValue(const Words& words);
  void sleep(const Words& words);
  void quit(const Words& words);

  FormHost& host_;
  const Clock& clock_;
  Paths paths_;
  std::function<void(const Json&)> print_;
  std::function<void()> quit_;
  std::deque<std::string> lines_;
  std::optional<Wait> wait_;
  std::shared_ptr<bool> taken_;  // whether the program has taken the last user action
  bool inputEnded_ = false;
  bool boxGone_ = false;
  bool ended_ = false;
};

}  // namespace firmlane
