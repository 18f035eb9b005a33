#include "web/web_server.h"

#include <QTcpSocket>
#include <QTimer>

#include "platform/failure.h"

namespace firmlane::sim {

namespace {

constexpr qint64 kLongestRequest = 16384;
constexpr qsizetype kSlowPiece = 512;
constexpr int kSlowInterval = 50;  // ms

/// The target of a GET whose head has arrived whole; empty when it is no such thing.
std::string targetOf(const QByteArray& head) {
  const QList<QByteArray> words = head.left(head.indexOf("\r\n")).split(' ');
  constexpr qsizetype kWords = 3;
  return words.size() == kWords && words[0] == "GET" ? words[1].toStdString() : std::string();
}

/// Sends a body piece by piece, then ends the connection.
class SlowBody : public QObject {
 public:
  SlowBody(QTcpSocket& socket, QByteArray body) : QObject(&socket), socket_(socket), body_(std::move(body)) {
    timer_.callOnTimeout(this, [this] { sendPiece(); });
    timer_.start(kSlowInterval);
  }

 private:
  void sendPiece() {
    socket_.write(body_.mid(sent_, kSlowPiece));
    sent_ += kSlowPiece;
    if (sent_ >= body_.size()) {
      timer_.stop();
      socket_.disconnectFromHost();
    }
  }

  QTcpSocket& socket_;
  QByteArray body_;
  qsizetype sent_ = 0;
  QTimer timer_;
};

void send(QTcpSocket& socket, const WebReply& reply) {
  if (reply.never) {
    return;
  }
  socket.write(QByteArray::fromStdString(reply.head()));
  const QByteArray body(reply.body.data(), static_cast<qsizetype>(reply.sent));
  if (reply.slow) {
    new SlowBody(socket, body);  // the socket owns it
    return;
  }
  socket.write(body);
  socket.disconnectFromHost();
}

}  // namespace

WebServer::WebServer(int port) {
  if (!server_.listen(QHostAddress::LocalHost, static_cast<quint16>(port))) {
    throw Failure(static_cast<int>(server_.serverError()),
                  "Cannot listen on port " + std::to_string(port) + ": " + server_.errorString().toStdString());
  }
  url_ = "http://127.0.0.1:" + std::to_string(server_.serverPort());
  site_ = makeMakerSite(url_);
  QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] {
    while (QTcpSocket* socket = server_.nextPendingConnection()) {
      QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { answer(*socket); });
      QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }
  });
}

void WebServer::answer(QTcpSocket& socket) {
  const QByteArray head = socket.peek(kLongestRequest);
  if (!head.contains("\r\n\r\n") && head.size() < kLongestRequest) {
    return;  // more is to come
  }
  socket.readAll();
  const std::string target = targetOf(head);
  if (target.empty()) {
    socket.disconnectFromHost();
    return;
  }
  if (onRequest) {
    onRequest(QByteArray::fromPercentEncoding(QByteArray::fromStdString(target)).toStdString());
  }
  send(socket, replyTo(site_, target, faultFor(pathOf(target))));
}

WebFault WebServer::faultFor(const std::string& path) const {
  for (const std::string& key : {path, std::string()}) {
    if (const auto fault = faults_.find(key); fault != faults_.end()) {
      return fault->second;
    }
  }
  return WebFault::None;
}

}  // namespace firmlane::sim
