#include "web/web_console.h"

#include <sstream>

namespace firmlane::sim {

WebConsole::WebConsole(WebServer& server, std::function<void(const QJsonObject&)> print)
    : server_(server), print_(std::move(print)) {
  server_.onRequest = [this](const std::string& target) {
    print_({{"event", "request"}, {"text", QString::fromStdString(target)}});
  };
}

WebConsole::~WebConsole() { server_.onRequest = nullptr; }

bool WebConsole::command(const std::string& line) {
  std::istringstream words(line);
  std::string web;
  std::string verb;
  std::string name;
  std::string path;
  words >> web >> verb >> name >> path;
  if (web != "web") {
    return false;
  }
  const std::optional<WebFault> fault = findWebFault(name);
  if (verb != "fault") {
    print_({{"ok", false}, {"error", QString::fromStdString("bad command: web " + verb)}});
  } else if (!fault) {
    print_({{"ok", false}, {"error", "no such fault"}});
  } else {
    if (*fault == WebFault::None && path.empty()) {
      server_.clearFaults();
    }
    server_.setFault(*fault, path);
    print_({{"ok", true}});
  }
  return true;
}

}  // namespace firmlane::sim
