// Listens on loopback for whoever is a web server there, in the thread of whoever makes it, as long as that thread's Qt events
// run.
#pragma once

#include <QTcpServer>
#include <QTcpSocket>
#include <functional>
#include <string>

namespace firmlane::sim {

class HttpListener {
 public:
  /// Gets each request once its head has arrived whole: the target of a GET with its escapes, or an empty one when it is no GET.
  using Answer = std::function<void(QTcpSocket& socket, const std::string& target)>;

  /// Listens at once; port 0 takes a free one. Throws Failure when the port is taken.
  HttpListener(int port, Answer answer);

  /// "http://127.0.0.1:" and the port: what stands in front of each path.
  [[nodiscard]] const std::string& url() const { return url_; }
  /// A target with its escapes undone.
  static std::string readable(const std::string& target);

 private:
  void take(QTcpSocket& socket);

  Answer answer_;
  std::string url_;
  QTcpServer server_;  // last, so that no connection outlives what it answers from
};

}  // namespace firmlane::sim
