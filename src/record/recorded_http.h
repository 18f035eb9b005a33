// An HTTP client that reports what it is asked for and what comes of it, and leaves the work to another one.
#pragma once

#include "platform/http_client.h"
#include "platform/recorder.h"

namespace firmlane {

class RecordedHttp : public HttpClient {
 public:
  /// Both outlive it. From now on the client's StateChanged is taken.
  RecordedHttp(HttpClient& client, Recorder& recorder);
  ~RecordedHttp() override { client_.StateChanged = nullptr; }
  RecordedHttp(const RecordedHttp&) = delete;
  RecordedHttp& operator=(const RecordedHttp&) = delete;

  std::string OpenURL(const std::string& url) override;
  void Execute(const std::string& url) override;
  void Cancel() override;
  [[nodiscard]] std::string GetHeader(const std::string& name) const override { return client_.GetHeader(name); }
  [[nodiscard]] int statusCode() const override { return client_.statusCode(); }
  [[nodiscard]] std::string statusText() const override { return client_.statusText(); }
  Bytes GetChunk(std::size_t size) override;
  [[nodiscard]] std::string errorDescription() const override { return client_.errorDescription(); }
  [[nodiscard]] int errorNumber() const override { return client_.errorNumber(); }

 private:
  void begin(const std::string& url);
  void report(int state);
  void tellAnswer();

  HttpClient& client_;
  Recorder& recorder_;
  bool underWay_ = false;
  bool fetching_ = false;  // a blocking fetch, which reports its end itself
};

}  // namespace firmlane
