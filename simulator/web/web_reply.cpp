#include "web/web_reply.h"

#include <algorithm>
#include <array>

namespace firmlane::sim {

namespace {

constexpr std::size_t kLongList = 40000;
constexpr std::size_t kKilobyte = 1024;
constexpr std::size_t kEightMegabytes = 8 * kKilobyte * kKilobyte;
constexpr std::string_view kRedirected = "redirected";

void setBody(WebReply& reply, std::string body) {
  reply.body = std::move(body);
  reply.sent = reply.body.size();
  reply.contentLength = std::to_string(reply.body.size());
}

/// Bytes that differ from each other, so that a piece that is lost or doubled shows.
std::string pattern(std::size_t size) {
  constexpr unsigned kPrime = 251;
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) {
    bytes[i] = static_cast<char>((i % kPrime) ^ (i >> 8U));
  }
  return bytes;
}

void redirect(WebReply& reply, const std::string& location) {
  reply.status = 302;
  reply.reason = "Found";
  reply.location = location;
  setBody(reply, "");
}

struct FaultRow {
  const char* name;
  WebFault fault;
  void (*apply)(WebReply& reply, const std::string& target);
};

constexpr std::array<FaultRow, 17> kFaults = {{
    {"none", WebFault::None, [](WebReply&, const std::string&) {}},
    {"empty", WebFault::Empty, [](WebReply& reply, const std::string&) { setBody(reply, ""); }},
    {"error-page", WebFault::ErrorPage,
     [](WebReply& reply, const std::string&) {
       reply = {.status = 404, .reason = "Not Found"};
       setBody(reply, "<html><title>404</title><h1>Not found</h1></html>\n");
     }},
    {"no-length", WebFault::NoLength, [](WebReply& reply, const std::string&) { reply.contentLength.reset(); }},
    {"slow", WebFault::Slow, [](WebReply& reply, const std::string&) { reply.slow = true; }},
    {"cut", WebFault::Cut, [](WebReply& reply, const std::string&) { reply.sent = reply.body.size() / 2; }},
    {"longer-length", WebFault::LongerLength,
     [](WebReply& reply, const std::string&) { reply.contentLength = std::to_string(reply.body.size() + kKilobyte); }},
    {"shorter-length", WebFault::ShorterLength,
     [](WebReply& reply, const std::string&) { reply.contentLength = std::to_string(reply.body.size() / 2); }},
    {"negative-length", WebFault::NegativeLength, [](WebReply& reply, const std::string&) { reply.contentLength = "-5"; }},
    {"long", WebFault::Long,
     [](WebReply& reply, const std::string&) {
       setBody(reply, reply.body + std::string(kLongList - std::min(kLongList, reply.body.size()), 'x'));
     }},
    {"bytes-0", WebFault::Bytes0, [](WebReply& reply, const std::string&) { setBody(reply, ""); }},
    {"bytes-1024", WebFault::Bytes1024, [](WebReply& reply, const std::string&) { setBody(reply, pattern(kKilobyte)); }},
    {"megabytes-8", WebFault::Megabytes8, [](WebReply& reply, const std::string&) { setBody(reply, pattern(kEightMegabytes)); }},
    {"redirect", WebFault::Redirect,
     [](WebReply& reply, const std::string& target) {
       if (!target.ends_with(kRedirected)) {
         redirect(reply, target + (target.find('?') == std::string::npos ? "?" : "&") + std::string(kRedirected));
       }
     }},
    {"redirect-circle", WebFault::RedirectCircle, [](WebReply& reply, const std::string& target) { redirect(reply, target); }},
    {"never", WebFault::Never, [](WebReply& reply, const std::string&) { reply.never = true; }},
    {"refuse", WebFault::Refuse,
     [](WebReply& reply, const std::string& target) {
       if (pathOf(target) == kRegistrationPath) {
         setBody(reply, "0");
       }
     }},
}};

}  // namespace

std::optional<WebFault> findWebFault(std::string_view name) {
  const auto* const row =
      std::find_if(kFaults.begin(), kFaults.end(), [name](const FaultRow& known) { return known.name == name; });
  return row == kFaults.end() ? std::nullopt : std::optional(row->fault);
}

std::vector<std::string_view> webFaultNames() {
  std::vector<std::string_view> names;
  names.reserve(kFaults.size());
  for (const FaultRow& row : kFaults) {
    names.emplace_back(row.name);
  }
  return names;
}

std::string WebReply::head() const {
  std::string text =
      "HTTP/1.1 " + std::to_string(status) + " " + reason + "\r\nConnection: close\r\nContent-Type: " + type + "\r\n";
  if (contentLength) {
    text += "Content-Length: " + *contentLength + "\r\n";
  }
  if (!location.empty()) {
    text += "Location: " + location + "\r\n";
  }
  return text + "\r\n";
}

std::string pathOf(const std::string& target) { return target.substr(0, target.find('?')); }

WebReply replyTo(const MakerSite& site, const std::string& target, WebFault fault) {
  const auto apply = [&target](WebReply& reply, WebFault what) {
    std::find_if(kFaults.begin(), kFaults.end(), [what](const FaultRow& row) { return row.fault == what; })->apply(reply, target);
  };
  WebReply reply;
  const std::string path = pathOf(target);
  if (const auto page = site.find(path); page != site.end()) {
    reply.type = page->second.type;
    setBody(reply, page->second.body);
  } else if (path == kRegistrationPath) {
    reply.type = "text/plain";
    setBody(reply, "1");
  } else {
    apply(reply, WebFault::ErrorPage);
  }
  apply(reply, fault);
  return reply;
}

}  // namespace firmlane::sim
