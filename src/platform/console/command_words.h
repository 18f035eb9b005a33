// A command line taken apart into words.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace firmlane {

/// Words are separated by blanks; a blank inside double quotes or brackets does not separate. Each word stands as written, quotes
/// included. Nothing when a quote is left open or the line is not UTF-8.
std::optional<std::vector<std::string>> splitWords(const std::string& line);

/// What a word says, as Latin-1: a JSON string when it is in quotes, else the word itself. Nothing for a malformed JSON string.
std::optional<std::string> wordText(const std::string& word);

}  // namespace firmlane
