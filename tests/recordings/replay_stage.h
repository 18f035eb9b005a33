// The whole program in virtual time on the stage of a record: the player is its unit, its web server and its user.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "app/details.h"
#include "app/program.h"
#include "record/record.h"
#include "replay/http_reason.h"
#include "replay/replay.h"
#include "replay/shelf.h"
#include "world.h"

namespace firmlane::test {

/// The far end of every port, as the record had it.
class ReplayDriver : public SerialDriver {
 public:
  explicit ReplayDriver(sim::Replay& replay) : replay_(replay) {}
  void open(int number, const LineSettings& settings) override;
  void configure(const LineSettings& /*settings*/) override {}
  void close() override { port_ = 0; }
  void send(ByteSpan bytes) override;
  [[nodiscard]] std::size_t unsent() const override { return 0; }
  void fetch() override {}
  void discard() override {}
  /// The port that is open; 0 for none.
  [[nodiscard]] int port() const { return port_; }
  void vanish(const Failure& failure);

 private:
  sim::Replay& replay_;
  int port_ = 0;
};

/// The web server as the record had it: it answers when the player says so.
class ReplayHttp : public HttpClient {
 public:
  explicit ReplayHttp(EventQueue& queue) : queue_(queue) {}
  /// `got` as the record has it.
  void answer(const sim::Entry& got, const Bytes& body);
  void fail(const Failure& failure, bool offline);

  std::string OpenURL(const std::string& url) override;
  void Execute(const std::string& url) override;
  void Cancel() override;
  [[nodiscard]] std::string GetHeader(const std::string& name) const override;
  [[nodiscard]] int statusCode() const override { return status_; }
  [[nodiscard]] std::string statusText() const override { return sim::httpReason(status_); }
  Bytes GetChunk(std::size_t size) override;
  [[nodiscard]] std::string errorDescription() const override { return error_ ? error_->description() : ""; }
  [[nodiscard]] int errorNumber() const override { return error_ ? error_->number() : 0; }

 private:
  void raise(int state);

  EventQueue& queue_;
  bool underWay_ = false;
  bool offline_ = false;
  int request_ = 0;
  int status_ = 0;
  std::string statedLength_;
  Bytes body_;
  std::size_t read_ = 0;
  std::optional<Failure> error_;
};

/// Virtual time in which a loop that counts passes takes as long as on the computer of a record, where a pass costs more than its
/// rest.
class PacedTime : public EventSource {
 public:
  PacedTime(VirtualTime& time, Micros pass) : time_(time), pass_(pass) {}
  void poll() override { time_.poll(); }
  void sleep(Micros until) override;

 private:
  VirtualTime& time_;
  Micros pass_;
};

class VirtualReplay : private sim::ReplayStage {
 public:
  /// `pass` is how long a pass of a counting loop took on the computer of the record.
  VirtualReplay(const sim::Recording& recording, const sim::Shelf& shelf, Micros pass);
  ~VirtualReplay() override;

  /// Plays the record to its end. Returns the first difference, or an empty text.
  std::string play();
  /// The line of the record that it came to.
  [[nodiscard]] std::size_t reached() const { return reached_; }

 private:
  [[nodiscard]] Micros now() const override { return time_.now(); }
  void after(Micros span, std::function<void()> action) override { time_.after(span, std::move(action)); }
  std::optional<std::string> perform(const sim::Entry& entry) override;
  std::optional<std::string> act(const sim::Entry& entry);
  std::optional<std::string> answer(const sim::Entry& got);
  void observe(const std::string& entry);

  const sim::Recording& recording_;
  const sim::Shelf& shelf_;
  VirtualTime time_;
  PacedTime paced_;
  EventQueue queue_{time_, paced_};
  ScriptedScreen screen_{time_};
  TemporaryDirectory directory_;
  std::filesystem::path before_;  // the current directory, which the serial number file is in
  Record record_{time_};
  Files files_{directory_.path(), record_};
  sim::Replay replay_;
  ReplayDriver mainDriver_{replay_};
  ReplayDriver versionDriver_{replay_};
  ReplayHttp http_{queue_};
  RecordingDesktop desktop_;
  std::unique_ptr<Program> program_;
  std::optional<Details> details_;
  std::size_t reached_ = 0;
};

}  // namespace firmlane::test
