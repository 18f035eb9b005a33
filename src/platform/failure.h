// A failure as the user gets to see it: a description and a number. It is thrown where an operation cannot go on and caught at
// that operation's error exit. Expected outcomes (time-out, refusal by a unit) are flags, never failures.
#pragma once

#include <stdexcept>
#include <string>

namespace firmlane {

/// What went wrong, in words for the user, with the number that stands behind "#" in every error box.
class Failure : public std::runtime_error {
 public:
  Failure(int number, const std::string& description) : std::runtime_error(description), number_(number) {}

  [[nodiscard]] int number() const { return number_; }
  [[nodiscard]] std::string description() const { return what(); }

 private:
  int number_;
};

/// Numbers of the failures that the logic itself raises. Failures of the operating system keep the system's own number.
namespace failure_number {
inline constexpr int kInvalidArgument = 5;
inline constexpr int kOverflow = 6;
inline constexpr int kSubscriptOutOfRange = 9;
inline constexpr int kDivisionByZero = 11;
inline constexpr int kTypeMismatch = 13;
inline constexpr int kFileNotFound = 53;
inline constexpr int kInputPastEnd = 62;
inline constexpr int kPathAccess = 75;
inline constexpr int kPortNumber = 8002;
inline constexpr int kPortInUse = 8005;
inline constexpr int kLineHeldBack = 8013;
inline constexpr int kPortClosed = 8018;
inline constexpr int kPortGone = 8020;
}  // namespace failure_number

/// "context", the description, " (#", the number, ")": the one form in which failures are told.
inline std::string failureText(const std::string& context, const Failure& failure) {
  return context + failure.description() + " (#" + std::to_string(failure.number()) + ")";
}

}  // namespace firmlane
