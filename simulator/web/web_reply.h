// What the web server answers, faults included: as data, so that how it is sent is another matter.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "web/maker_site.h"

namespace firmlane::sim {

enum class WebFault : std::uint8_t {
  None,
  Empty,           // an answer without a body
  ErrorPage,       // 404 and a page of HTML
  NoLength,        // no Content-Length; the end of the connection ends the body
  Slow,            // half a kilobyte every 50 ms
  Cut,             // the connection breaks off in mid-body
  LongerLength,    // states more than it sends
  ShorterLength,   // states half of what it sends
  NegativeLength,  // states -5
  Long,            // a body of at least 40,000 characters: the page's own, then x
  Bytes0,          // bodies of a set size
  Bytes1024,
  Megabytes8,
  Redirect,        // to the same page under another address
  RedirectCircle,  // to itself
  Never,           // takes the request and never answers
  Refuse           // the registration server takes no entry
};

/// The fault of that name, "none" included; nothing for an unknown name.
std::optional<WebFault> findWebFault(std::string_view name);
std::vector<std::string_view> webFaultNames();

/// An answer on its way.
struct WebReply {
  int status = 200;
  std::string reason = "OK";
  std::string type = "text/html";
  std::string body;
  std::optional<std::string> contentLength;  // as stated
  std::string location;                      // of a redirect
  std::size_t sent = 0;                      // bytes of the body that go out before the connection ends
  bool slow = false;
  bool never = false;

  /// Status line and headers, with the blank line behind them.
  [[nodiscard]] std::string head() const;
};

/// The path of a request's target, without the query.
std::string pathOf(const std::string& target);
inline constexpr std::string_view kRegistrationPath = "/Firmlane/FLusers.asp";

/// What `site` answers to a target such as "/LWX/updateV4.txt", or the registration server to the contact form.
WebReply replyTo(const MakerSite& site, const std::string& target, WebFault fault);

}  // namespace firmlane::sim
