// JSON as the console writes and reads it. An object keeps its members in the order in which they were put in, so that a line
// reads the way it is documented. Texts in here are UTF-8; the program's own texts are 8-bit and are converted on the way.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace firmlane {

class Json {
 public:
  using Member = std::pair<std::string, Json>;
  using Array = std::vector<Json>;
  using Object = std::vector<Member>;

  Json() = default;  // null
  // Values turn into JSON by themselves, so a line is written as it will read.
  Json(bool value) : value_(value) {}                      // NOLINT(google-explicit-constructor)
  Json(int value) : value_(static_cast<double>(value)) {}  // NOLINT(google-explicit-constructor)
  Json(double value) : value_(value) {}                    // NOLINT(google-explicit-constructor)
  Json(const char* utf8) : value_(std::string(utf8)) {}    // NOLINT(google-explicit-constructor)
  Json(std::string utf8) : value_(std::move(utf8)) {}      // NOLINT(google-explicit-constructor)
  Json(Array elements) : value_(std::move(elements)) {}    // NOLINT(google-explicit-constructor)
  Json(Object members) : value_(std::move(members)) {}     // NOLINT(google-explicit-constructor)

  /// The value that a text stands for; nothing when it is not exactly one.
  static std::optional<Json> parse(const std::string& utf8);

  /// On one line, without blanks.
  [[nodiscard]] std::string text() const;
  /// The string or number in it; null when it is something else.
  [[nodiscard]] const std::string* string() const { return std::get_if<std::string>(&value_); }
  [[nodiscard]] const double* number() const { return std::get_if<double>(&value_); }

  /// Equal values of one type; the order of members does not count.
  friend bool operator==(const Json& a, const Json& b);

 private:
  void append(std::string& text) const;

  std::variant<std::nullptr_t, bool, double, std::string, Array, Object> value_;
};

/// A text as the program holds it, one character for each byte.
std::string heldAsUtf8(std::string_view held);
/// A text for users, as the windows show it: one that came from the system, such as a path, may be UTF-8 already.
std::string shownAsUtf8(std::string_view text);
/// A typed text as the program holds it; characters outside of its character set become "?".
std::string utf8AsHeld(const std::string& utf8);
bool isUtf8(std::string_view text);

}  // namespace firmlane
