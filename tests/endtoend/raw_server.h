// A web server byte by byte: what goes out for a request, and how the connection ends, the test decides. It runs on a thread of
// its own, as the test waits for the program meanwhile.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace firmlane::test {

class RawServer {
 public:
  /// How an answer goes out.
  struct Answer {
    std::string bytes;
    /// The connection ends by a reset instead of in good order.
    bool reset = false;
    /// Before the answer goes out, and behind its end; on the server's thread.
    std::function<void()> before;
    std::function<void()> after;
  };

  RawServer();
  ~RawServer();
  RawServer(const RawServer&) = delete;
  RawServer& operator=(const RawServer&) = delete;

  /// What a target such as "/LWX/updateV4.txt" gets. Called on the server's thread; a second call takes the first one's place.
  void onRequest(std::function<Answer(const std::string& target)> answer);
  [[nodiscard]] int requests() const { return requests_; }
  /// Waits for so many requests since the start; false when they do not come.
  [[nodiscard]] bool awaitRequests(int count) const;
  [[nodiscard]] std::string url() const { return "http://127.0.0.1:" + std::to_string(port_); }

  /// An answer with this body in full.
  static Answer whole(const std::string& body);

 private:
  void serve();
  void serve(int connection);

  int listener_;
  int port_ = 0;
  std::atomic<int> requests_ = 0;
  std::mutex mutex_;
  std::function<Answer(const std::string&)> answer_;
  std::thread thread_;
};

}  // namespace firmlane::test
