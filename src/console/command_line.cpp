#include "console/command_line.h"

#include <algorithm>

#include "console/json.h"

namespace firmlane {

namespace {
constexpr const char* kBlanks = " \t\r";  // an editor may have left a CR anywhere
}  // namespace

Refusal badCommand(const std::string& why) { return Refusal("bad command: " + why); }

CommandLine::CommandLine(std::string line) : line_(std::move(line)) {
  while (!line_.empty() && std::string(kBlanks).find(line_.back()) != std::string::npos) {
    line_.pop_back();
  }
  skipBlanks();
  if (isBlank()) {
    return;  // whatever a comment holds, it is no command and gets no answer
  }
  if (line_.size() > kLongest) {
    throw badCommand("the line is too long");
  }
  if (!isUtf8(line_)) {
    throw badCommand("the line is not UTF-8");
  }
}

bool CommandLine::isBlank() const { return atEnd() || line_[at_] == '#'; }

void CommandLine::skipBlanks() { at_ = std::min(line_.find_first_not_of(kBlanks, at_), line_.size()); }

std::string CommandLine::word() {
  if (atEnd()) {
    throw badCommand("a word is missing");
  }
  if (line_[at_] == '"') {
    return quotedWord();
  }
  const std::size_t end = std::min(line_.find_first_of(kBlanks, at_), line_.size());
  std::string word = line_.substr(at_, end - at_);
  at_ = end;
  skipBlanks();
  return word;
}

std::string CommandLine::quotedWord() {
  std::size_t end = at_ + 1;
  while (end < line_.size() && line_[end] != '"') {
    end += line_[end] == '\\' ? 2 : 1;
  }
  end = std::min(end + 1, line_.size());
  const std::optional<Json> value = Json::parse(line_.substr(at_, end - at_));
  const bool endsThere = end == line_.size() || std::string(kBlanks).find(line_[end]) != std::string::npos;
  if (!value || value->string() == nullptr || !endsThere) {
    throw badCommand("a word in double quotes has to be a JSON string");
  }
  at_ = end;
  skipBlanks();
  return *value->string();
}

std::string CommandLine::allButLastWord() {
  const std::size_t blank = line_.find_last_of(kBlanks);
  if (atEnd() || blank == std::string::npos || blank < at_) {
    throw badCommand("a word is missing");
  }
  std::string text = line_.substr(at_, line_.find_last_not_of(kBlanks, blank) + 1 - at_);
  at_ = blank + 1;
  return text;
}

}  // namespace firmlane
