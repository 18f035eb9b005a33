// Plays a record: does what came from outside in it (the unit, the web server, the user), at the record's times and only once
// the program has done what stands before, and compares what the program does with what the record holds. It knows neither lines
// nor windows: a stage carries out what it wants and tells it what happens.
//
// Times are taken from the entry before: what the unit said 20 ms behind a command comes 20 ms behind that command, whenever that
// is.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "platform/failure.h"
#include "replay/questions.h"
#include "replay/recording.h"

namespace firmlane::sim {

/// What a player stands on.
class ReplayStage {
 public:
  virtual ~ReplayStage() = default;
  [[nodiscard]] virtual Micros now() const = 0;
  virtual void after(Micros span, std::function<void()> action) = 0;
  /// Does what an entry tells of the outside world. Returns why it cannot be done, or nothing.
  virtual std::optional<std::string> perform(const Entry& entry) = 0;
  /// Whether the program has done with its port what this entry says; with that it is told, and what it has done next is asked
  /// for next. Only of a stage that sees ports from outside, as are the other two.
  virtual bool takes(const Entry& /*entry*/) { return true; }
  /// What the program has done with this port that was not asked for, once nothing it sent before can come any more, as the
  /// record would say it; empty for nothing.
  [[nodiscard]] virtual std::string movedOn(int /*port*/) const { return {}; }
};

/// Which entries are played and compared. The rest is passed over.
enum class ReplayPart {
  Everything,  // the player is unit, web server and user
  LineAndWeb   // somebody else works the program; the state of its ports is looked at, not told
};

class Replay {
 public:
  /// Recording and stage outlive it.
  Replay(const Recording& recording, ReplayStage& stage, ReplayPart part);
  ~Replay();
  Replay(const Replay&) = delete;
  Replay& operator=(const Replay&) = delete;

  void start();
  /// The program has done something: an entry without its time. Those of the outside world are passed over.
  void observe(const std::string& text);
  /// The program has asked for a page.
  void observeRequest(const std::string& url);
  /// The program has sent bytes.
  void hear(int port, ByteSpan bytes);
  /// The line may have changed, and what has come before is heard; for a stage that sees ports from outside.
  void look();

  /// Called, from within one of the stage's actions or of the calls above, when nothing is left to play or a difference was
  /// found.
  std::function<void()> onOver;
  [[nodiscard]] bool over() const { return over_; }
  /// The first difference between the record and now, with the number of the line; empty when there was none.
  [[nodiscard]] const std::string& difference() const { return difference_; }
  /// The program has ended, or can do nothing any more: a difference unless all was played.
  void end(const std::string& how);
  /// The entry that is waited for or about to be done; null behind the last.
  [[nodiscard]] const Entry* next() const;
  /// The failure with which the next opening of this port ends in the record, if it does.
  [[nodiscard]] std::optional<Failure> refusalOf(int port) const;
  /// What the server sent behind this entry: the body's entry, or null.
  [[nodiscard]] const Entry* bodyBehind(const Entry& got) const;

 private:
  enum class Role { PassedOver, Output, Input, LineState };

  [[nodiscard]] Role roleOf(const Entry& entry) const;
  void advance();
  void waitFor(const Entry& entry);
  void plan(const Entry& entry);
  void perform();
  void matched(const Entry& entry);
  void comeToTraffic();
  [[nodiscard]] std::optional<Question> questionsNext() const;
  bool skipReading();
  std::size_t hearQuestion(int port, ByteSpan bytes);
  [[nodiscard]] std::size_t hearPart(ByteSpan bytes);
  void completeStream(const Entry& entry);
  void differ(const Entry& entry, const std::string& how);
  void finish();

  const Recording& recording_;
  ReplayStage& stage_;
  ReplayPart part_;
  std::size_t at_ = 0;             // the entry that is next
  bool planned_ = false;           // it is an input, and its time is set
  std::size_t heard_ = 0;          // bytes of it that have come, when it is a stream
  RecordSum sum_ = kSumOfNothing;  // of them
  Bytes tail_;                     // the last of them
  Bytes early_;                    // bytes of a stream that goes on over an answer, which has not come yet
  bool streaming_ = false;         // the entry before was a long stream
  bool asking_ = false;            // the last that was sent were questions of a reading
  std::set<std::string> told_;     // what was heard in it
  Micros anchor_ = 0;              // when the entry before was done
  Micros anchorTime_ = 0;          // and when the record did it
  std::shared_ptr<char> life_ = std::make_shared<char>();  // planned actions die with the player
  bool over_ = false;
  std::string difference_;
};

}  // namespace firmlane::sim
