// The web server of a record, on loopback: answers each request as the record's server did, when the player says so. Where a page
// of the record names that server, the one who asks reads the name of this one.
#pragma once

#include <QPointer>
#include <functional>
#include <string>

#include "replay/replay.h"
#include "replay/shelf.h"
#include "web/http_listener.h"

namespace firmlane::sim {

class ReplayWeb {
 public:
  /// Listens at once; port 0 takes a free one. All three outlive it. Throws Failure when the port is taken.
  ReplayWeb(const Recording& recording, const Shelf& shelf, const Replay& replay, int port);

  /// A page is asked for: an address without scheme and host.
  std::function<void(const std::string& url)> onRequest;
  [[nodiscard]] const std::string& url() const { return listener_.url(); }
  /// Sends what an entry says to whoever asked last. Returns why it cannot be done, or nothing.
  std::optional<std::string> answer(const Entry& entry);

 private:
  [[nodiscard]] Bytes withOwnName(const Bytes& body) const;

  const Recording& recording_;
  const Shelf& shelf_;
  const Replay& replay_;
  QPointer<QTcpSocket> asking_;
  HttpListener listener_;
};

}  // namespace firmlane::sim
