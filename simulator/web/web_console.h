// The web server worked over text lines: commands in, JSON lines out.
#pragma once

#include <QJsonObject>
#include <functional>
#include <string>

#include "web/web_server.h"

namespace firmlane::sim {

class WebConsole {
 public:
  /// Tells `print` of every request. Both must outlive this.
  WebConsole(WebServer& server, std::function<void(const QJsonObject&)> print);
  ~WebConsole();
  WebConsole(const WebConsole&) = delete;
  WebConsole& operator=(const WebConsole&) = delete;

  /// Carries out a line such as "web fault slow /LWX/updateV4.txt" and prints its answer. False for a line that is not for the
  /// web server.
  bool command(const std::string& line);

 private:
  WebServer& server_;
  std::function<void(const QJsonObject&)> print_;
};

}  // namespace firmlane::sim
