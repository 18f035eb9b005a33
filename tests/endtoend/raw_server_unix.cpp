#include "raw_server.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

namespace firmlane::test {

RawServer::RawServer() : listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  constexpr int kBacklog = 16;
  if (::bind(listener_, reinterpret_cast<sockaddr*>(&address), size) != 0 || ::listen(listener_, kBacklog) != 0 ||
      ::getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error("no port for the server");
  }
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { serve(); });
}

RawServer::~RawServer() {
  ::shutdown(listener_, SHUT_RDWR);
  thread_.join();
  ::close(listener_);
}

void RawServer::onRequest(std::function<Answer(const std::string& target)> answer) {
  const std::lock_guard guard(mutex_);
  answer_ = std::move(answer);
}

bool RawServer::awaitRequests(int count) const {
  constexpr int kLooks = 100000;
  for (int look = 0; requests_ < count && look < kLooks; ++look) {
    ::usleep(100);
  }
  return requests_ >= count;
}

RawServer::Answer RawServer::whole(const std::string& body) {
  return {.bytes = "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body};
}

void RawServer::serve() {
  for (;;) {
    const int connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (connection < 0) {
      return;
    }
    serve(connection);
    ::close(connection);
  }
}

void RawServer::serve(int connection) {
  std::string head;
  while (head.find("\r\n\r\n") == std::string::npos) {
    char piece[4096];
    const ssize_t size = ::recv(connection, piece, sizeof piece, 0);
    if (size <= 0) {
      return;
    }
    head.append(piece, static_cast<std::size_t>(size));
  }
  ++requests_;
  const std::size_t start = head.find(' ') + 1;
  Answer answer;
  {
    const std::lock_guard guard(mutex_);
    answer = answer_(head.substr(start, head.find(' ', start) - start));
  }
  if (answer.before) {
    answer.before();
  }
  ::send(connection, answer.bytes.data(), answer.bytes.size(), MSG_NOSIGNAL);
  if (answer.reset) {
    const linger now{1, 0};
    ::setsockopt(connection, SOL_SOCKET, SO_LINGER, &now, sizeof now);
  }
  if (answer.after) {
    if (!answer.reset) {
      ::shutdown(connection, SHUT_WR);
    }
    answer.after();
  }
}

}  // namespace firmlane::test
