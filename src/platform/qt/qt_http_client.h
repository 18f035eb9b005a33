// The HTTP client over Qt. Requests run in Qt's event loop; their course is told from the event queue alone.
#pragma once

#include <QIODevice>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QUrl>
#include <memory>
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

/// What a request carries in place of a body: nothing, and that only once. A connection that ends before the first byte of the
/// answer has Qt send the request again by itself, and what came of the first answer, its length too, is then lost. A request
/// whose body cannot be sent again it gives up instead.
class OnlyOnce : public QIODevice {
 public:
  OnlyOnce() { open(QIODevice::ReadOnly); }
  [[nodiscard]] bool isSequential() const override { return true; }
  [[nodiscard]] bool atEnd() const override { return true; }
  bool reset() override { return false; }

 protected:
  qint64 readData(char* /*data*/, qint64 /*size*/) override { return -1; }
  qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }
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
  [[nodiscard]] int statusCode() const override { return status_; }
  [[nodiscard]] std::string statusText() const override { return statusText_; }
  Bytes GetChunk(std::size_t size) override;
  [[nodiscard]] std::string errorDescription() const override { return error_ ? error_->description() : std::string(); }
  [[nodiscard]] int errorNumber() const override { return error_ ? error_->number() : 0; }

 private:
  void begin(const std::string& url, bool text);
  void request(const QUrl& url);
  void takeBytes();
  void takeHead();
  void finish();
  void complete();
  void fail(const Failure& failure);
  void followRedirect();
  void tellUpTo(int state);
  void tell(int state);
  void dropReply();

  EventQueue& queue_;
  HttpLimits limits_;
  OnlyOnce onlyOnce_;
  // One for each request, and so a connection for each: one that is kept and that the server ends meanwhile would fail the next.
  std::unique_ptr<QNetworkAccessManager> network_;
  QNetworkReply* reply_ = nullptr;
  Timer silence_;
  Micros lastByteAt_ = 0;
  int request_ = 0;    // counts requests, so events of a dropped one are told no more
  int told_ = 0;       // the state told last
  bool busy_ = false;  // a request is under way and neither complete nor failed
  int redirects_ = 0;
  bool text_ = false;  // the body is a text and of no use beyond kTextCut
  Bytes body_;
  std::size_t read_ = 0;
  QList<QNetworkReply::RawHeaderPair> headers_;
  int status_ = 0;
  std::string statusText_;
  std::optional<Failure> error_;
  QObject context_;  // what the slots belong to; they end with the client
};

}  // namespace firmlane
