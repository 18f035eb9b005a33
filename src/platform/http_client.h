// The HTTP client as the program uses it: one blocking fetch, and one request with state events.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/bytes.h"

namespace firmlane {

/// States of a request, with the numbers that handlers know them by.
namespace http_state {
inline constexpr int kConnecting = 3;
inline constexpr int kRequesting = 5;
inline constexpr int kRequestSent = 6;
inline constexpr int kResponseReceived = 8;
inline constexpr int kError = 11;
inline constexpr int kResponseCompleted = 12;
}  // namespace http_state

/// Bytes that a text fetched at once may have; none that the servers have to tell is longer.
inline constexpr std::size_t kLongestText = 32767;
/// Of a longer one so much is taken, enough to see that it is too long.
inline constexpr std::size_t kTextCut = kLongestText + 1;

class HttpClient {
 public:
  virtual ~HttpClient() = default;

  // A request goes out once and is never repeated by itself. An answer that ends before the length that its head states, or in
  // the middle of its last piece, is a failure and no shorter body.

  /// Fetches a URL with GET and returns the body, whatever the server's status; empty when nothing came, as without a network
  /// or for a host that no name server knows. Passes events while it waits and raises StateChanged as Execute does. Throws
  /// Failure when the server refuses, breaks off, or takes longer than 60 s.
  virtual std::string OpenURL(const std::string& url) = 0;

  /// Starts a GET and returns. StateChanged tells its course from the event queue; after kResponseCompleted the whole body is
  /// here, after kError nothing more comes. 60 s without a byte end in kError. A request under way is dropped.
  virtual void Execute(const std::string& url) = 0;

  /// Drops the request under way, if any, without a further event. A blocking fetch under way ends with a Failure.
  virtual void Cancel() = 0;

  /// A header of the response; empty when the server sent none of that name. Names are compared without regard to case.
  [[nodiscard]] virtual std::string GetHeader(const std::string& name) const = 0;

  /// What the server says of the last answer, such as 404 and "Not Found"; 0 and empty as long as none has come. Any status comes
  /// with its body: whether that is worth having, the caller knows.
  [[nodiscard]] virtual int statusCode() const = 0;
  [[nodiscard]] virtual std::string statusText() const = 0;
  /// Whether the status is a success.
  [[nodiscard]] bool succeeded() const { return statusCode() / 100 == 2; }

  /// Bytes of the body as the head of the answer states them; nothing where it does not, or not as a number.
  [[nodiscard]] std::optional<std::int64_t> statedLength() const;

  /// The next bytes of the body, at most `size`; empty at its end.
  virtual Bytes GetChunk(std::size_t size) = 0;

  /// Why the last request ended with kError.
  [[nodiscard]] virtual std::string errorDescription() const = 0;
  [[nodiscard]] virtual int errorNumber() const = 0;

  /// A state of http_state, raised from the event queue.
  std::function<void(int state)> StateChanged;
};

}  // namespace firmlane
