// The program's real HTTP client against the simulated web server, faults included.
#include <gmock/gmock.h>

#include "platform/qt/qt_event_source.h"
#include "platform/qt/qt_http_client.h"
#include "qt_core.h"
#include "web/web_server.h"

namespace firmlane::test {
namespace {

using sim::WebFault;
using testing::StartsWith;

TEST(Web, AnAnswerThatGoesWrongIsAFailureOrTellsBySizeAndStatus) {
  const QtCore core;
  QtEventSource source;
  EventQueue queue{source, source};
  QtHttpClient http{queue, {.fetch = kSecond, .silence = 1500 * kMillisecond}};
  sim::WebServer server;
  const auto fetch = [&] {
    try {
      return http.OpenURL(server.url() + "/LWX/updateV4.txt");
    } catch (const Failure& failure) {
      return "Failure: " + failure.description();
    }
  };
  const std::string list = fetch();
  ASSERT_THAT(list, StartsWith("#"));
  struct Case {
    WebFault fault;
    std::string begin;
    std::size_t size = 0;
    int status = 200;
  };
  for (const Case& c : {Case{WebFault::NoLength, list, list.size()},
                        {WebFault::Slow, list, list.size()},
                        {WebFault::Redirect, list, list.size()},
                        {WebFault::Empty, ""},
                        {WebFault::Long, list, kTextCut},
                        {WebFault::ErrorPage, "<", 0, 404},
                        {WebFault::Cut, "Failure: "},
                        {WebFault::LongerLength, "Failure: "},
                        {WebFault::RedirectCircle, "Failure: "},
                        {WebFault::Never, "Failure: The server takes too long to answer"}}) {
    SCOPED_TRACE(static_cast<int>(c.fault));
    server.setFault(c.fault);
    const std::string answer = fetch();
    EXPECT_THAT(answer, StartsWith(c.begin));
    EXPECT_TRUE(answer.size() == c.size || c.size == 0) << answer.size();
    EXPECT_TRUE(http.statusCode() == c.status || answer.starts_with("Failure")) << http.statusCode();
  }
}

}  // namespace
}  // namespace firmlane::test
