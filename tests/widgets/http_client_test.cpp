// The HTTP client against a small server that answers as told.
#include <gmock/gmock.h>

#include <QTcpServer>
#include <QTcpSocket>
#include <map>

#include "platform/qt/qt_http_client.h"
#include "real_ground.h"

namespace firmlane::test {
namespace {

/// Answers each path with raw bytes, then closes the connection unless told to keep it.
class Server {
 public:
  Server() {
    server_.listen(QHostAddress::LocalHost);
    QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] {
      QTcpSocket* socket = server_.nextPendingConnection();
      QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { answer(*socket); });
      QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    });
  }
  void plan(const std::string& path, const std::string& raw, bool thenClose = true) { answers_[path] = {raw, thenClose}; }
  [[nodiscard]] std::string url(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(server_.serverPort()) + path;
  }
  [[nodiscard]] const std::string& lastRequest() const { return request_; }

 private:
  void answer(QTcpSocket& socket) {
    request_ = socket.readAll().toStdString();
    const std::size_t start = request_.find(' ') + 1;
    const auto found = answers_.find(request_.substr(start, request_.find(' ', start) - start));
    if (found != answers_.end()) {
      socket.write(QByteArray::fromStdString(found->second.first));
      if (found->second.second) {
        socket.disconnectFromHost();
      }
    }
  }

  QTcpServer server_;
  std::map<std::string, std::pair<std::string, bool>> answers_;
  std::string request_;
};

struct Http : RealGround, testing::Test {
  Server server;
  QtHttpClient client{queue, {.fetch = 400 * kMillisecond, .silence = kSecond, .body = 200000}};
  std::string states;

  Http() {
    client.StateChanged = [this](int state) { states += std::to_string(state) + " "; };
  }
  void execute(const std::string& url) {
    states.clear();
    client.Execute(url);
    runUntil([this] { return states.ends_with("12 ") || states.ends_with("11 "); });
  }
  std::string body() {
    std::string all;
    for (Bytes chunk = client.GetChunk(512); !chunk.empty(); chunk = client.GetChunk(512)) {
      EXPECT_LE(chunk.size(), 512U);
      all.append(chunk.begin(), chunk.end());
    }
    return all;
  }
  std::string fetchFailure(const std::string& url) {
    try {
      client.OpenURL(url);
    } catch (const Failure& failure) {
      return failure.description();
    }
    return "fetched";
  }
};

TEST_F(Http, ABodyComesWholeWithItsHeadersAndStates) {
  std::string image(100000, '\0');
  for (std::size_t i = 0; i < image.size(); ++i) {
    image[i] = static_cast<char>(i * 31);
  }
  server.plan("/wls.bin", "HTTP/1.1 200 OK\r\nContent-Length: 100000\r\nX-Note: a\r\n\r\n" + image);
  execute(server.url("/wls.bin"));
  EXPECT_EQ(states, "3 5 6 8 12 ");
  EXPECT_EQ(client.GetHeader("content-LENGTH"), "100000");
  EXPECT_EQ(client.GetHeader("X-None"), "");
  EXPECT_TRUE(body() == image);
  EXPECT_THAT(server.lastRequest(), testing::HasSubstr("Accept-Encoding: identity")) << "a packed body has another length";
}

TEST_F(Http, AnswersThatEndAsABody) {
  server.plan("/nolength", "HTTP/1.1 200 OK\r\n\r\n#list");
  server.plan("/error", "HTTP/1.1 404 Not Found\r\nContent-Length: 6\r\n\r\n<html>");
  server.plan("/down", "HTTP/1.1 503 Busy\r\nContent-Length: 5\r\n\r\nlater");
  server.plan("/empty", "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
  server.plan("/moved", "HTTP/1.1 302 Found\r\nLocation: /nolength\r\nContent-Length: 4\r\n\r\ngone");
  for (const auto& [path, text] : std::map<std::string, std::string>{
           {"/nolength", "#list"}, {"/error", "<html>"}, {"/down", "later"}, {"/empty", ""}, {"/moved", "#list"}}) {
    execute(server.url(path));
    EXPECT_EQ(states, "3 5 6 8 12 ") << path;
    EXPECT_EQ(body(), text) << path;
    EXPECT_EQ(client.OpenURL(server.url(path)), text) << path;
  }
}

TEST_F(Http, AnswersThatEndAsAFailure) {
  server.plan("/circle", "HTTP/1.1 301 Moved\r\nLocation: /circle\r\nContent-Length: 0\r\n\r\n");
  server.plan("/file", "HTTP/1.1 301 Moved\r\nLocation: file:///etc/hostname\r\nContent-Length: 0\r\n\r\n");
  server.plan("/cut", "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nhalf");
  server.plan("/hangs", "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nhalf", false);
  server.plan("/endless", "HTTP/1.1 200 OK\r\n\r\n" + std::string(300000, 'x'), false);
  for (const std::string& url :
       {server.url("/circle"), server.url("/file"), server.url("/cut"), server.url("/hangs"), server.url("/endless"),
        server.url("/silent"), std::string("http://127.0.0.1:1/refused"), std::string("nonsense")}) {
    execute(url);
    EXPECT_TRUE(states.ends_with("11 ")) << url << ": " << states;
    EXPECT_NE(client.errorDescription(), "") << url;
    EXPECT_NE(client.errorNumber(), 0) << url;
    EXPECT_NE(fetchFailure(url), "fetched") << url;
  }
  execute(server.url("/file"));
  EXPECT_EQ(client.errorDescription(), "Not a web address: file:///etc/hostname");
}

TEST_F(Http, ABlockingFetchPassesEventsAndEndsAtItsLimit) {
  int ticks = 0;
  Timer timer(queue);
  timer.OnTimer = [&] { ++ticks; };
  timer.start(50);
  const Micros before = queue.now();
  EXPECT_EQ(fetchFailure(server.url("/silent")), "The server takes too long to answer");
  EXPECT_LT(queue.now() - before, 2 * kSecond);
  EXPECT_GE(ticks, 3);
  const std::string seen = states;
  run(100 * kMillisecond);
  EXPECT_EQ(states, seen) << "a request that was given up is told no more";
}

TEST_F(Http, AddressesGoOutByteForByte) {
  const std::string answer = "HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\n1";
  server.plan("/e?e=a@b,J%FCrgen,%23%201%25%20,Velarc", answer);
  EXPECT_EQ(client.OpenURL(server.url("/e?e=a@b,J\xFCrgen,# 1% ,Velarc")), "1") << server.lastRequest();
}

TEST_F(Http, ASecondRequestTakesTheFirstOnesPlace) {
  server.plan("/b", "HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\nb");
  client.Execute(server.url("/silent"));
  run(50 * kMillisecond);
  execute(server.url("/b"));
  EXPECT_EQ(states, "3 5 6 8 12 ");
  EXPECT_EQ(body(), "b");
}

}  // namespace
}  // namespace firmlane::test
