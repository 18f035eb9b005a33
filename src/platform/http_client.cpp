#include "platform/http_client.h"

#include <algorithm>
#include <charconv>

namespace firmlane {

std::optional<std::int64_t> HttpClient::statedLength() const {
  const std::string header = GetHeader("Content-Length");
  const std::size_t start = std::min(header.find_first_not_of(" \t"), header.size());
  std::int64_t length = 0;
  const auto [end, error] = std::from_chars(header.data() + start, header.data() + header.size(), length);
  const std::size_t behind = header.find_first_not_of(" \t", static_cast<std::size_t>(end - header.data()));
  // Some servers state it twice, which comes as a list.
  const bool whole = behind == std::string::npos || header[behind] == ',';
  return error == std::errc() && whole && length >= 0 ? std::optional(length) : std::nullopt;
}

}  // namespace firmlane
