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
  [[nodiscard]] int requests() const { return requests_; }

 private:
  void answer(QTcpSocket& socket) {
    request_ = socket.readAll().toStdString();
    ++requests_;
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
  int requests_ = 0;
};

struct Http : RealGround, testing::Test {
  Server server;
  QtHttpClient client{queue, {.fetch = 400 * kMillisecond, .silence = kSecond, .body = 200000}};
  int asked = 0;
  std::string states;

  Http() {
    client.StateChanged = [this](int state) { states += std::to_string(state) + " "; };
  }
  void execute(const std::string& url) {
    states.clear();
    client.Execute(url);
    ++asked;
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
    ++asked;
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
  server.plan("/endless", "HTTP/1.1 302 Found\r\nLocation: /nolength\r\n\r\n" + std::string(300000, 'x'), false);
  server.plan("/pieces", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\n#li\r\n2\r\nst\r\n0\r\n\r\n");
  server.plan("/full", "HTTP/1.1 200 OK\r\n\r\n" + std::string(kLongestText, 'x'));
  struct Case {
    const char* path;
    std::string body;
    const char* status;
  };
  for (const Case& c :
       {Case{"/nolength", "#list", "200 OK"}, Case{"/error", "<html>", "404 Not Found"}, Case{"/down", "later", "503 Busy"},
        Case{"/empty", "", "200 OK"}, Case{"/moved", "#list", "200 OK"}, Case{"/endless", "#list", "200 OK"},
        Case{"/pieces", "#list", "200 OK"}, Case{"/full", std::string(kLongestText, 'x'), "200 OK"}}) {
    execute(server.url(c.path));
    EXPECT_EQ(states, "3 5 6 8 12 ") << c.path;
    EXPECT_EQ(body(), c.body) << c.path;
    EXPECT_EQ(client.OpenURL(server.url(c.path)), c.body) << c.path;
    EXPECT_EQ(std::to_string(client.statusCode()) + " " + client.statusText(), c.status) << c.path;
    EXPECT_EQ(client.succeeded(), std::string(c.status) == "200 OK");
  }
}

TEST_F(Http, AnswersThatEndAsAFailure) {
  server.plan("/circle", "HTTP/1.1 301 Moved\r\nLocation: /circle\r\nContent-Length: 0\r\n\r\n");
  execute(server.url("/circle"));
  EXPECT_EQ(states, "3 11 ");
  EXPECT_EQ(server.requests(), 11) << "a request and ten redirects";
  asked = server.requests();

  const std::string head = "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n";
  server.plan("/file", "HTTP/1.1 301 Moved\r\nLocation: file:///etc/hostname\r\nContent-Length: 0\r\n\r\n");
  server.plan("/nothing", "");
  server.plan("/head", head);
  server.plan("/cut", head + "\r\nhalf");
  server.plan("/twice", head + "Content-Length: 1000\r\n\r\nhalf");
  server.plan("/piece", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n8\r\nhalf");
  server.plan("/pieces", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nhalf\r\n");
  server.plan("/cuterror", "HTTP/1.1 404 Not Found\r\nContent-Length: 1000\r\n\r\nhalf");
  server.plan("/hangs", head + "\r\nhalf", false);
  for (const char* path :
       {"/file", "/nothing", "/head", "/cut", "/twice", "/piece", "/pieces", "/cuterror", "/hangs", "/endless", "/silent"}) {
    execute(server.url(path));
    EXPECT_TRUE(states.ends_with("11 ")) << path << ": " << states;
    EXPECT_NE(client.errorDescription(), "") << path;
    EXPECT_NE(client.errorDescription(), "Unknown error") << path;
    EXPECT_NE(client.errorNumber(), 0) << path;
    EXPECT_NE(fetchFailure(server.url(path)), "fetched") << path;
    EXPECT_EQ(server.requests(), asked) << path << " was asked for again";
  }
  for (const std::string& url : {std::string("http://127.0.0.1:1/refused"), std::string("nonsense")}) {
    execute(url);
    EXPECT_TRUE(states.ends_with("11 ")) << url << ": " << states;
    EXPECT_NE(fetchFailure(url), "fetched") << url;
  }
  execute(server.url("/file"));
  EXPECT_EQ(client.errorDescription(), "Not a web address: file:///etc/hostname");
  EXPECT_EQ(client.statusCode(), 0);
}

TEST_F(Http, ABodyBeyondTheLimitIsRefusedWhileItArrives) {
  server.plan("/endless", "HTTP/1.1 200 OK\r\n\r\n" + std::string(300000, 'x'), false);
  execute(server.url("/endless"));
  EXPECT_EQ(states, "3 5 6 8 11 ");
  EXPECT_EQ(client.errorDescription(), "The server sends more than this program takes");
  server.plan("/list", "HTTP/1.1 200 OK\r\nContent-Length: 1000000\r\n\r\n" + std::string(40000, '#'), false);
  EXPECT_EQ(client.OpenURL(server.url("/list")), std::string(32768, '#'));
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
