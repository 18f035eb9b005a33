// What the maker's web server holds: update lists of the three products, firmware sets that the simulated units take, documents,
// and installers of the remote-control software.
#pragma once

#include <map>
#include <string>

namespace firmlane::sim {

struct WebPage {
  std::string body;
  std::string type = "application/octet-stream";
};

/// Pages by path. `server` is scheme, host and port under which they will be found; the lists hold whole URLs.
using MakerSite = std::map<std::string, WebPage>;
MakerSite makeMakerSite(const std::string& server);

}  // namespace firmlane::sim
