#include "web/http_listener.h"

#include "platform/failure.h"

namespace firmlane::sim {

namespace {

constexpr qint64 kLongestRequest = 16384;

std::string targetOf(const QByteArray& head) {
  const QList<QByteArray> words = head.left(head.indexOf("\r\n")).split(' ');
  constexpr qsizetype kWords = 3;
  return words.size() == kWords && words[0] == "GET" ? words[1].toStdString() : std::string();
}

}  // namespace

HttpListener::HttpListener(int port, Answer answer) : answer_(std::move(answer)) {
  if (!server_.listen(QHostAddress::LocalHost, static_cast<quint16>(port))) {
    throw Failure(static_cast<int>(server_.serverError()),
                  "Cannot listen on port " + std::to_string(port) + ": " + server_.errorString().toStdString());
  }
  url_ = "http://127.0.0.1:" + std::to_string(server_.serverPort());
  QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] {
    while (QTcpSocket* socket = server_.nextPendingConnection()) {
      QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { take(*socket); });
      QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }
  });
}

std::string HttpListener::readable(const std::string& target) {
  return QByteArray::fromPercentEncoding(QByteArray::fromStdString(target)).toStdString();
}

void HttpListener::take(QTcpSocket& socket) {
  const QByteArray head = socket.peek(kLongestRequest);
  if (!head.contains("\r\n\r\n") && head.size() < kLongestRequest) {
    return;  // more is to come
  }
  socket.readAll();
  answer_(socket, targetOf(head));
}

}  // namespace firmlane::sim
