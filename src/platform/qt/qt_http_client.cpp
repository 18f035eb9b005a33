#include "platform/qt/qt_http_client.h"

#include <QNetworkProxyFactory>
#include <QNetworkRequest>
#include <algorithm>
#include <array>
#include <cctype>

#include "platform/failure.h"
#include "platform/qt/qt_text.h"

namespace firmlane {

namespace {

constexpr Micros kLongestSilenceCheck = kSecond;
constexpr int kMostRedirects = 10;

// The states before the response, in their order.
constexpr std::array kCourse = {http_state::kConnecting, http_state::kRequesting, http_state::kRequestSent,
                                http_state::kResponseReceived};

bool isWebAddress(const QUrl& url) {
  return url.isValid() && !url.host().isEmpty() &&
         (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
}

int statusOf(const QNetworkReply& reply) { return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(); }

/// Whether the server has answered in full, if only with an error page: then its body is what was asked for.
bool serverAnswered(const QNetworkReply& reply) {
  constexpr int kFirstErrorStatus = 400;
  return reply.error() == QNetworkReply::NoError ||
         (statusOf(reply) >= kFirstErrorStatus && reply.error() >= QNetworkReply::ContentAccessDenied);
}

Failure connectionEnded(const std::string& when) {
  return {QNetworkReply::RemoteHostClosedError, "The connection to the server ended " + when};
}

Failure failureOf(const QNetworkReply& reply) {
  if (reply.error() == QNetworkReply::ContentReSendError) {  // see OnlyOnce
    return connectionEnded("before the answer began");
  }
  return {reply.error(), fromQt(reply.errorString())};
}

bool isRedirect(const QNetworkReply& reply) {
  constexpr std::array kRedirects = {301, 302, 303, 307, 308};
  return std::find(kRedirects.begin(), kRedirects.end(), statusOf(reply)) != kRedirects.end() && reply.hasRawHeader("Location");
}

/// Whether an error says that this computer has no way out, which a user mends by connecting it: no answer came, none was
/// refused.
bool isOffline(int error) {
  constexpr std::array kOffline = {QNetworkReply::HostNotFoundError, QNetworkReply::TemporaryNetworkFailureError,
                                   QNetworkReply::NetworkSessionFailedError, QNetworkReply::UnknownNetworkError};
  return std::find(kOffline.begin(), kOffline.end(), error) != kOffline.end();
}

bool isHexDigit(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }

/// The program's texts are 8-bit and go out as they stand: bytes beyond ASCII are no UTF-8, a "#" ends nothing, and a "%" that
/// stands alone does not undo the escapes beside it.
QUrl webAddress(const std::string& url) {
  QByteArray text;
  for (std::size_t i = 0; i < url.size(); ++i) {
    const char c = url[i];
    const bool escape = c == '%' && i + 2 < url.size() && isHexDigit(url[i + 1]) && isHexDigit(url[i + 2]);
    const bool plain = static_cast<signed char>(c) >= 0 && c != '#' && c != '%';
    text += plain || escape ? QByteArray(1, c) : '%' + QByteArray(1, c).toHex().toUpper();
  }
  return QUrl::fromEncoded(text);
}

/// Without a proxy Qt reads from sockets that keep no bytes, and loses its place when an answer and the end of the connection
/// come together. A choice of proxy that may still turn out to be none has it read as from a proxy.
class ReadsAsFromProxy : public QNetworkProxyFactory {
 public:
  QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& /*query*/) override {
    return {QNetworkProxy(QNetworkProxy::DefaultProxy)};
  }
};

Failure timeout(const std::string& what) { return {QNetworkReply::TimeoutError, what}; }

}  // namespace

QtHttpClient::QtHttpClient(EventQueue& queue, const HttpLimits& limits) : queue_(queue), limits_(limits), silence_(queue) {
  silence_.OnTimer = [this] {
    if (busy_ && queue_.now() - lastByteAt_ > limits_.silence) {
      fail(timeout("The server has sent nothing for too long"));
    }
  };
}

QtHttpClient::~QtHttpClient() {
  if (reply_ != nullptr) {
    QObject::disconnect(reply_, nullptr, &context_, nullptr);
  }
}

std::string QtHttpClient::OpenURL(const std::string& url) {
  const Micros deadline = queue_.now() + limits_.fetch;
  begin(url, true);
  const int mine = request_;
  while (busy_ && request_ == mine && queue_.now() < deadline) {
    queue_.waitEventsUntil(deadline);
  }
  if (request_ != mine) {
    throw Failure(QNetworkReply::OperationCanceledError, "The request was given up for another one");
  }
  if (busy_) {
    Cancel();
    throw timeout("The server takes too long to answer");
  }
  if (error_ && isOffline(error_->number())) {
    return {};
  }
  if (error_) {
    throw *error_;
  }
  return {body_.begin(), body_.end()};
}

void QtHttpClient::Execute(const std::string& url) { begin(url, false); }

void QtHttpClient::Cancel() {
  ++request_;
  busy_ = false;
  silence_.stop();
  dropReply();
}

std::string QtHttpClient::GetHeader(const std::string& name) const {
  const QByteArray wanted = QByteArray::fromStdString(name);
  const auto found = std::find_if(headers_.begin(), headers_.end(), [&wanted](const auto& header) {
    return header.first.compare(wanted, Qt::CaseInsensitive) == 0;
  });
  return found == headers_.end() ? std::string() : found->second.toStdString();
}

Bytes QtHttpClient::GetChunk(std::size_t size) {
  const std::size_t count = std::min(size, body_.size() - read_);
  const auto first = body_.begin() + static_cast<std::ptrdiff_t>(read_);
  read_ += count;
  return {first, first + static_cast<std::ptrdiff_t>(count)};
}

void QtHttpClient::begin(const std::string& url, bool text) {
  Cancel();
  text_ = text;
  body_.clear();
  read_ = 0;
  headers_.clear();
  status_ = 0;
  statusText_.clear();
  error_.reset();
  told_ = 0;
  redirects_ = 0;
  busy_ = true;
  lastByteAt_ = queue_.now();
  silence_.start(static_cast<int>(std::min(limits_.silence / 4, kLongestSilenceCheck) / kMillisecond));
  request(webAddress(url));
}

void QtHttpClient::request(const QUrl& url) {
  tellUpTo(http_state::kConnecting);
  if (!isWebAddress(url)) {
    fail(Failure(QNetworkReply::ProtocolUnknownError, "Not a web address: " + fromQt(url.toString())));
    return;
  }
  QNetworkRequest request(url);
  // Redirects are followed here, where http may lead to https and back, and a circle comes to an end. A body is taken as it is
  // stored, never packed for the way, so the length told is the length that comes.
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
  request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
  request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
  request.setHeader(QNetworkRequest::ContentLengthHeader, 0);
  request.setRawHeader("Accept-Encoding", "identity");
  request.setRawHeader("Connection", "close");
  network_ = std::make_unique<QNetworkAccessManager>();
  network_->setProxyFactory(std::make_unique<ReadsAsFromProxy>().release());  // the manager owns it
  reply_ = network_->sendCustomRequest(request, "GET", &onlyOnce_);
  QObject::connect(reply_, &QNetworkReply::readyRead, &context_, [this] { takeBytes(); });
  QObject::connect(reply_, &QNetworkReply::metaDataChanged, &context_, [this] { takeBytes(); });
  QObject::connect(reply_, &QNetworkReply::finished, &context_, [this] { finish(); });
}

void QtHttpClient::takeBytes() {
  if (isRedirect(*reply_)) {
    followRedirect();  // whatever its body says, and however long that is
    return;
  }
  lastByteAt_ = queue_.now();
  takeHead();
  const QByteArray bytes = reply_->readAll();
  body_.insert(body_.end(), bytes.begin(), bytes.end());
  tellUpTo(http_state::kResponseReceived);
  if (text_ && body_.size() >= kTextCut) {
    body_.resize(kTextCut);
    complete();
  } else if (body_.size() > limits_.body) {
    fail(Failure(failure_number::kOverflow, "The server sends more than this program takes"));
  }
}

void QtHttpClient::takeHead() {
  headers_ = reply_->rawHeaderPairs();
  status_ = statusOf(*reply_);
  statusText_ = fromQt(reply_->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString());
}

void QtHttpClient::finish() {
  const QNetworkReply* const finished = reply_;
  takeBytes();
  if (reply_ != finished) {
    return;  // it was too much, or leads elsewhere
  }
  if (!serverAnswered(*reply_)) {
    fail(failureOf(*reply_));
  } else if (statedLength().value_or(0) > static_cast<std::int64_t>(body_.size())) {
    // Qt takes the end of the connection for the end of a body whose length it cannot read.
    fail(connectionEnded("after " + std::to_string(body_.size()) + " of " + GetHeader("Content-Length") + " bytes"));
  } else {
    complete();
  }
}

void QtHttpClient::complete() {
  tellUpTo(http_state::kResponseReceived);
  tell(http_state::kResponseCompleted);
  busy_ = false;
  silence_.stop();
  dropReply();
}

void QtHttpClient::fail(const Failure& failure) {
  error_ = failure;
  tell(http_state::kError);
  busy_ = false;
  silence_.stop();
  dropReply();
}

void QtHttpClient::followRedirect() {
  const QUrl target = reply_->url().resolved(QUrl::fromEncoded(reply_->rawHeader("Location")));
  dropReply();
  if (++redirects_ > kMostRedirects) {
    fail(Failure(QNetworkReply::TooManyRedirectsError, "The server sends the request round in a circle"));
  } else {
    request(target);
  }
}

void QtHttpClient::tellUpTo(int state) {
  for (const int step : kCourse) {
    if (step > told_ && step <= state) {
      tell(step);
    }
  }
}

void QtHttpClient::tell(int state) {
  told_ = state;
  queue_.post([this, state, mine = request_] {
    if (mine == request_ && StateChanged) {
      StateChanged(state);
    }
  });
}

void QtHttpClient::dropReply() {
  if (reply_ == nullptr) {
    return;
  }
  QObject::disconnect(reply_, nullptr, &context_, nullptr);
  reply_->abort();
  reply_ = nullptr;
  network_.release()->deleteLater();  // with its reply, whose slot may be on the stack
}

}  // namespace firmlane
