// One line of a script, taken apart. What a line means is the session's business.
#pragma once

#include <stdexcept>
#include <string>

namespace firmlane {

/// Why a command is not carried out; its text is the error of the answer.
class Refusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// "bad command: " and why.
Refusal badCommand(const std::string& why);

/// Words separated by blanks. A word in double quotes is a JSON string; any other word is what stands there.
class CommandLine {
 public:
  /// Throws Refusal for a command that is too long or not UTF-8.
  explicit CommandLine(std::string line);

  /// Nothing to do: the line is empty or a comment.
  [[nodiscard]] bool isBlank() const;
  [[nodiscard]] bool atEnd() const { return at_ == line_.size(); }
  /// The next word. Throws Refusal when there is none, or when it begins like a JSON string and is none.
  std::string word();
  /// All but the last of the words that are left, as they stand: for JSON values, which may hold blanks.
  std::string allButLastWord();

  /// The longest line that is read.
  static constexpr std::size_t kLongest = std::size_t{1} << 20U;

 private:
  void skipBlanks();
  std::string quotedWord();

  std::string line_;
  std::size_t at_ = 0;
};

}  // namespace firmlane
