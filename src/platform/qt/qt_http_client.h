// The HTTP client over Qt. Requests run in Qt's event loop; their course is told from the event queue alone.
#pragma once

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QUrl>
#include <optional>

#include "platform/event_queue.h"
#include "platform/http_client.h"

namespace firmlane {

/// Limits of the client; times are on the program's clock.
struct HttpLimits {
  /// A blocking fetch as a whole.
  Micros fetch = 60 * kSecond;
  /// A request during which not one byte comes.
  Micros silence = 60 * kSecond;
  /// Bytes of a body. It is held in memory, and a server may go on sending for ever.
  std::size_t body = std::size_t{512} << 20U;
};

class QtHttpClient : public HttpClient {
 public:
  explicit QtHttpClient(EventQueue& queue, const HttpLimits& limits = {});
  ~QtHttpClient() override;
  QtHttpClient(const QtHttpClient&) = delete;
  QtHttpClient& operator=(const QtHttpClient&) = delete;

  std::string OpenURL(const std::string& url) override;
  void Execute(const std::string& url) override;
  void Cancel() override;
  [[nodiscard]] std::string GetHeader(const std::string& name) const override;
  Bytes GetChunk(std::size_t size) override;
  [[nodiscard]] std::string errorDescription() const override { return error_ ? error_->description() : std::string(); }
  [[nodiscard]] int errorNumber() const override { return error_ ? error_->number() : 0; }

 private:
  void begin(const std::string& url);
  void request(const QUrl& url);
  void takeBytes();
  void finish();
  void complete();
  void fail(const Failure& failure);
  void followRedirect();
  void tellUpTo(int state);
  void tell(int state);
  void dropReply();

  EventQueue& queue_;
  HttpLimits limits_;
  std::optional<QNetworkAccessManager> network_;
  QNetworkReply* reply_ = nullptr;
  Timer silence_;
  Micros lastByteAt_ = 0;
  int request_ = 0;    // counts requests, so events of a dropped one are told no more
  int told_ = 0;       // the state told last
  bool busy_ = false;  // a request is under way and neither complete nor failed
  int redirects_ = 0;
  Bytes body_;
  std::size_t read_ = 0;
  QList<QNetworkReply::RawHeaderPair> headers_;
  std::optional<Failure> error_;
  QObject context_;  // what the slots belong to; they end with the client
};

}  // namespace firmlane
