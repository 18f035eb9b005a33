#include "web/replay_web.h"

#include <array>

#include "replay/http_reason.h"

namespace firmlane::sim {

namespace {
/// What a server does for a program to say that a request has failed in these words.
struct Break {
  const char* words;
  void (*carryOut)(QTcpSocket& socket);
};
constexpr std::array<Break, 3> kBreaks = {{
    {"ended before the answer began", [](QTcpSocket& socket) { socket.abort(); }},
    {"Connection closed",
     [](QTcpSocket& socket) {
       socket.write("HTTP/1.1 200 OK\r\nContent-Length: 65536\r\n\r\nT");
       socket.disconnectFromHost();
     }},
    {"too long", [](QTcpSocket&) {}},  // the program's own patience ends
}};

std::optional<std::string> breakOff(QTcpSocket& socket, const std::string& words) {
  for (const Break& known : kBreaks) {
    if (words.find(known.words) != std::string::npos) {
      known.carryOut(socket);
      return std::nullopt;
    }
  }
  return "no server on this computer can make a request fail like that; in virtual time the record can be played";
}

}  // namespace

ReplayWeb::ReplayWeb(const Recording& recording, const Shelf& shelf, const Replay& replay, int port)
    : recording_(recording),
      shelf_(shelf),
      replay_(replay),
      listener_(port, [this](QTcpSocket& socket, const std::string& target) {
        asking_ = &socket;
        if (onRequest) {
          onRequest(HttpListener::readable(target));
        }
      }) {}

std::optional<std::string> ReplayWeb::answer(const Entry& entry) {
  if (!asking_) {
    return std::nullopt;  // the program has given the request up
  }
  if (entry.kind != "got") {
    return breakOff(*asking_, entry.failureText());
  }
  const Entry* bodyEntry = replay_.bodyBehind(entry);
  const Bytes* known = bodyEntry == nullptr ? nullptr : shelf_.find(bodyEntry->bytes);
  if (bodyEntry != nullptr && known == nullptr) {
    return "the record does not hold the body in full; --dir names a directory that has the file";
  }
  const Bytes before = known == nullptr ? Bytes() : *known;
  const Bytes body = withOwnName(before);
  QByteArray text = "HTTP/1.1 " + QByteArray::fromStdString(entry.words[0] + " " + httpReason(std::stoi(entry.words[0]))) +
                    "\r\nConnection: close\r\n";
  const std::string& stated = entry.words.back();
  if (stated != "none") {
    const bool right = stated == std::to_string(before.size());
    text += "Content-Length: " + QByteArray::fromStdString(right ? std::to_string(body.size()) : stated) + "\r\n";
  }
  asking_->write(text + "\r\n");
  asking_->write(reinterpret_cast<const char*>(body.data()), static_cast<qint64>(body.size()));
  asking_->disconnectFromHost();
  return std::nullopt;
}

Bytes ReplayWeb::withOwnName(const Bytes& body) const {
  const std::string name = recording_.headOf("server");
  QByteArray text(reinterpret_cast<const char*>(body.data()), static_cast<qsizetype>(body.size()));
  if (!name.empty()) {
    text.replace(QByteArray::fromStdString(name), QByteArray::fromStdString(url()));
  }
  return {text.begin(), text.end()};
}

}  // namespace firmlane::sim
