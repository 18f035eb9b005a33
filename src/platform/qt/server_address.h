// A web server as an option of the command line names it.
#pragma once

#include <QString>
#include <optional>
#include <string>

namespace firmlane {

/// Scheme and host, such as "http://127.0.0.1:8080", without the slash that may stand behind it; nothing for anything else.
std::optional<std::string> serverAddress(const QString& text);

}  // namespace firmlane
