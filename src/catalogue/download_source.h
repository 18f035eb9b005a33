// Where a file of the maker's web server lies and how it is called here. A name that comes out of a list is taken only when it is
// plain and nobody else's: the list comes over the network, and the file lands beside the program.
#pragma once

#include <optional>
#include <string>

#include "platform/http_client.h"
#include "state/run_state.h"

namespace firmlane {

struct DownloadSource {
  std::string url;
  std::string name;  // of the file in the program's directory
};

/// The firmware file behind a line of List1, `location` being what the list says of it. Throws Failure when there is no name for
/// it, or none that may be used.
DownloadSource firmwareSource(const RunState& state, int line, const std::string& location, const std::string& server);

/// What a user reads when the server has not answered with a success, such as "The server answered 404 Not Found for RFSL.s19";
/// nothing when it has.
std::optional<std::string> statusWords(const HttpClient& http, const std::string& url);

/// Throws Failure when less of a body has come than the server stated.
void throwIfShort(const HttpClient& http, std::size_t received);

/// The installer at a location of the list. Throws Failure as above.
DownloadSource softwareSource(const std::string& location);

}  // namespace firmlane
