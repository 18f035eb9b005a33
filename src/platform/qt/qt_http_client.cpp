#include "platform/qt/qt_http_client.h"

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

int status(const QNetworkReply& reply) { return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(); }

/// Whether the server has answered in full, if only with an error page: then its body is what was asked for.
bool serverAnswered(const QNetworkReply& reply) {
  constexpr int kFirstErrorStatus = 400;
  return reply.error() == QNetworkReply::NoError ||
         (status(reply) >= kFirstErrorStatus && reply.error() >= QNetworkReply::ContentAccessDenied);
}

bool isRedirect(const QNetworkReply& reply) {
  constexpr std::array kRedirects = {301, 302, 303, 307, 308};
  return std::find(kRedirects.begin(), kRedirects.end(), status(reply)) != kRedirects.end() && reply.hasRawHeader("Location");
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

Failure timeout(const std::string& what) { return {QNetworkReply::TimeoutError, what}; }

}  // namespace

QtHttpClient::QtHttpClient(EventQueue& queue, const HttpLimits& limits) : queue_(queue), limits_(limits), silence_(queue) {
  silence_.OnTimer = [this] {
    if (busy_ && queue_.now() - lastByteAt_ > limits_.silence) {
      fail(timeout("The server has sent nothing for too long"));
    }
  };
}

QtHttpClient::~QtHttpClient() { QtHttpClient::Cancel(); }

std::string QtHttpClient::OpenURL(const std::string& url) {
  const Micros deadline = queue_.now() + limits_.fetch;
  begin(url);
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

void QtHttpClient::Execute(const std::string& url) { begin(url); }

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

void QtHttpClient::begin(const std::string& url) {
  Cancel();
  body_.clear();
  read_ = 0;
  headers_.clear();
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
  request.setRawHeader("Accept-Encoding", "identity");
  if (!network_) {
    network_.emplace();  // only now: most runs of the program need no network, and it costs time and memory
  }
  reply_ = network_->get(request);
  QObject::connect(reply_, &QNetworkReply::requestSent, &context_, [this] { tellUpTo(http_state::kRequestSent); });
  QObject::connect(reply_, &QNetworkReply::readyRead, &context_, [this] { takeBytes(); });
  QObject::connect(reply_, &QNetworkReply::metaDataChanged, &context_, [this] { takeBytes(); });
  QObject::connect(reply_, &QNetworkReply::finished, &context_, [this] { finish(); });
}

void QtHttpClient::takeBytes() {
  lastByteAt_ = queue_.now();
  const QByteArray bytes = reply_->readAll();
  if (!isRedirect(*reply_)) {
    headers_ = reply_->rawHeaderPairs();
    body_.insert(body_.end(), bytes.begin(), bytes.end());
    tellUpTo(http_state::kResponseReceived);
  }
  if (body_.size() > limits_.body) {
    fail(Failure(failure_number::kOverflow, "The server sends more than this program takes"));
  }
}

void QtHttpClient::finish() {
  takeBytes();
  if (!busy_) {
    return;
  }
  if (!serverAnswered(*reply_)) {
    fail(Failure(reply_->error(), fromQt(reply_->errorString())));
  } else if (isRedirect(*reply_)) {
    followRedirect();
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
  QNetworkReply* reply = std::exchange(reply_, nullptr);
  QObject::disconnect(reply, nullptr, &context_, nullptr);
  reply->abort();
  reply->deleteLater();
}

}  // namespace firmlane
