// A network and a desktop for tests: answers are planned, requests and documents are recorded.
#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/desktop.h"
#include "platform/event_queue.h"
#include "platform/http_client.h"
#include "platform/virtual/virtual_time.h"

namespace firmlane {

/// What the server does with a request.
struct ScriptedAnswer {
  std::string body;
  std::map<std::string, std::string> headers;  // names in lower case
  int status = 200;
  std::string reason = "OK";
  std::optional<Failure> failure;    // the transfer fails after `delay` instead
  Micros delay = 50 * kMillisecond;  // from the request to the end of the answer; kForever for none at all
};

class ScriptedHttp : public HttpClient {
 public:
  ScriptedHttp(EventQueue& queue, VirtualTime& time) : queue_(queue), time_(time) {}

  /// Plans the answer for a URL. A Content-Length header is added unless `withLength` is false. Others fail as unreachable.
  void answer(const std::string& url, const std::string& body, bool withLength = true);
  void answer(const std::string& url, ScriptedAnswer answer) { answers_[url] = std::move(answer); }
  /// The URLs asked for so far.
  [[nodiscard]] const std::vector<std::string>& requests() const { return requests_; }

  std::string OpenURL(const std::string& url) override;
  void Execute(const std::string& url) override;
  void Cancel() override { ++generation_; }
  [[nodiscard]] std::string GetHeader(const std::string& name) const override;
  [[nodiscard]] int statusCode() const override { return answered() ? current_.status : 0; }
  [[nodiscard]] std::string statusText() const override { return answered() ? current_.reason : ""; }
  Bytes GetChunk(std::size_t size) override;
  [[nodiscard]] std::string errorDescription() const override { return error_ ? error_->description() : ""; }
  [[nodiscard]] int errorNumber() const override { return error_ ? error_->number() : 0; }

 private:
  void begin(const std::string& url);
  void raise(int state);
  [[nodiscard]] bool answered() const { return over_ && !current_.failure; }

  EventQueue& queue_;
  VirtualTime& time_;
  std::map<std::string, ScriptedAnswer> answers_;
  std::vector<std::string> requests_;
  ScriptedAnswer current_;
  std::size_t read_ = 0;
  std::optional<Failure> error_;
  bool over_ = true;
  int generation_ = 0;
};

class RecordingDesktop : public Desktop {
 public:
  void openDocument(const std::string& document) override;
  void runProgram(const std::string& path) override;

  std::vector<std::string> documents;
  std::vector<std::string> programs;
  /// Met by the next call instead of success.
  std::optional<Failure> failure;
};

}  // namespace firmlane
