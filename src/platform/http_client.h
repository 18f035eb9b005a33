// The HTTP client as the program uses it: one blocking fetch, and one request with state events.
#pragma once

#include <functional>
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

class HttpClient {
 public:
  virtual ~HttpClient() = default;

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

  /// The next bytes of the body, at most `size`; empty at its end.
  virtual Bytes GetChunk(std::size_t size) = 0;

  /// Why the last request ended with kError.
  [[nodiscard]] virtual std::string errorDescription() const = 0;
  [[nodiscard]] virtual int errorNumber() const = 0;

  /// A state of http_state, raised from the event queue.
  std::function<void(int state)> StateChanged;
};

}  // namespace firmlane
