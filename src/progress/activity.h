// The one record of what is going on: what is waited for or done, since when and with which limit, how far it has come, and how
// the unit's processors stand. Operations tell it, screens and scripts read it; it decides nothing and never changes what an
// operation does. Times are those of the program's clock.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/clock.h"

namespace firmlane {

enum class Doing {
  Nothing,
  ReadingUnit,
  WaitingForSwitch,
  Erasing,
  Sending,
  WaitingForVerdict,
  FetchingList,
  Downloading,
  SearchingPorts,
};
/// "waiting for the power switch": for scripts and records.
const char* nameOf(Doing doing);

enum class ProcessorState { NotSelected, Pending, Running, Done, Failed };
const char* nameOf(ProcessorState state);

/// One processor of the unit. Versions are texts as the wizards show them, empty while not known.
struct ProcessorReport {
  /// FlashTarget of its run.
  std::string target;
  std::string name;
  /// By which the pages count it.
  int number = 0;
  ProcessorState state = ProcessorState::NotSelected;
  /// What the unit told before it was programmed.
  std::string before;
  /// What the chosen set has for it.
  std::string wanted;
  /// What the unit told when it was read again.
  std::string after;

  friend bool operator==(const ProcessorReport&, const ProcessorReport&) = default;
};

class Activity {
 public:
  struct Phase {
    Doing doing = Doing::Nothing;
    Micros since = 0;
    /// How long it may take; 0 for no limit.
    Micros limit = 0;
    /// Bytes so far and in all; a total of 0 is not known.
    std::int64_t done = 0;
    std::int64_t total = 0;
    /// When `done` last grew.
    Micros moved = 0;
    /// Which file or port of how many; 0 where it is not one of several.
    int part = 0;
    int parts = 0;
  };

  explicit Activity(const Clock& clock) : clock_(clock) {}
  Activity(const Activity&) = delete;
  Activity& operator=(const Activity&) = delete;
  ~Activity() = default;

  /// Something goes on for as long as this lives; of several at a time, what began last is told. One inside another of the same
  /// kind is a part of it and says which, unless it knows better.
  class Span {
   public:
    explicit Span(Activity& activity, Doing doing, Micros limit = 0, int part = 0, int parts = 0);
    ~Span();
    Span(const Span&) = delete;
    Span& operator=(const Span&) = delete;

   private:
    Activity& activity_;
    int number_;
  };

  /// The processor of `target` is being programmed for as long as this lives. At the end `succeeded` tells whether it is done or
  /// has failed. A unit of another product line, or none, makes way for the usual processors of this one.
  class Run {
   public:
    Run(Activity& activity, const std::string& productCode, std::string target, std::function<bool()> succeeded);
    ~Run();
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

   private:
    Activity& activity_;
    std::string target_;
    std::function<bool()> succeeded_;
  };

  [[nodiscard]] Phase now() const { return spans_.empty() ? Phase{} : spans_.back().phase; }
  /// Since it began; 0 when nothing goes on.
  [[nodiscard]] Micros elapsed() const { return spans_.empty() ? 0 : clock_.now() - now().since; }
  /// Until its limit, never below 0; 0 without one.
  [[nodiscard]] Micros left() const;
  /// How long sending will still take at the line's speed; nothing before that can be told, nor while the unit takes no bytes.
  [[nodiscard]] std::optional<Micros> estimate() const;
  /// Bytes are to be sent, and for some seconds none has been taken.
  [[nodiscard]] bool stalled() const;
  [[nodiscard]] const Clock& clock() const { return clock_; }

  /// What goes on has come so far. Nothing when nothing goes on.
  void progress(std::int64_t done, std::int64_t total);
  /// What goes on has used so much of its limit: time that passed under a message box does not count.
  void used(Micros ofLimit);

  [[nodiscard]] const std::vector<ProcessorReport>& processors() const { return processors_; }
  /// The processors of the unit, in the order of programming.
  void setProcessors(const std::string& productCode, std::vector<ProcessorReport> processors);
  /// Another unit, or none, comes next.
  void forgetUnit() { setProcessors({}, {}); }

  /// Calls `changed` upon each change for as long as the token lives. It must neither throw nor pass events.
  [[nodiscard]] std::shared_ptr<void> listen(std::function<void()> changed);

 private:
  struct Open {
    int number;
    Phase phase;
    // From where the line's speed is measured: the first byte, and the first after a stall.
    Micros measuredSince = 0;
    std::int64_t measuredFrom = 0;
  };
  void changed();
  void setState(const std::string& target, ProcessorState state);

  const Clock& clock_;
  std::vector<Open> spans_;
  int lastNumber_ = 0;
  std::string productCode_;
  std::vector<ProcessorReport> processors_;
  std::vector<std::weak_ptr<std::function<void()>>> listeners_;
};

}  // namespace firmlane
