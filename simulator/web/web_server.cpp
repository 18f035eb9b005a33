#include "web/web_server.h"

#include <QTimer>

namespace firmlane::sim {

namespace {

constexpr qsizetype kSlowPiece = 512;
constexpr int kSlowInterval = 50;  // ms

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

WebServer::WebServer(int port)
    : listener_(port, [this](QTcpSocket& socket, const std::string& target) { answer(socket, target); }) {
  site_ = makeMakerSite(url());
}

void WebServer::answer(QTcpSocket& socket, const std::string& target) {
  if (target.empty()) {
    socket.disconnectFromHost();
    return;
  }
  if (onRequest) {
    onRequest(HttpListener::readable(target));
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
