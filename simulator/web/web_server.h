// The maker's web server and the registration server, both on one port of the loopback interface, in the thread of whoever starts
// them. They run as long as that thread's Qt events do.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "web/http_listener.h"
#include "web/web_reply.h"

namespace firmlane::sim {

class WebServer {
 public:
  /// Listens at once; port 0 takes a free one. Throws Failure when the port is taken.
  explicit WebServer(int port = 0);

  /// "http://127.0.0.1:" and the port: what stands in front of each path.
  [[nodiscard]] const std::string& url() const { return listener_.url(); }
  /// What it holds; pages may be changed and added.
  MakerSite& site() { return site_; }

  /// How requests for `path` go wrong from now on; without a path, all requests for which no path says otherwise.
  void setFault(WebFault fault, const std::string& path = {}) { faults_[path] = fault; }
  void clearFaults() { faults_.clear(); }

  /// Told of each request: its target with escapes undone, such as "/Firmlane/FLusers.asp?e=a@b,Ann,Lee,Velarc".
  std::function<void(const std::string& target)> onRequest;

 private:
  void answer(QTcpSocket& socket, const std::string& target);
  [[nodiscard]] WebFault faultFor(const std::string& path) const;

  MakerSite site_;
  std::map<std::string, WebFault> faults_;
  HttpListener listener_;  // last, so that no connection outlives what it answers from
};

}  // namespace firmlane::sim
