#include "platform/console/command_words.h"

#include <QString>
#include <QStringDecoder>

#include "platform/console/json_text.h"

namespace firmlane {

namespace {

bool isUtf8(const std::string& text) {
  QStringDecoder decoder(QStringDecoder::Utf8);
  const QString decoded = decoder(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
  return !decoder.hasError() && decoded.size() <= static_cast<qsizetype>(text.size());
}

}  // namespace

std::optional<std::vector<std::string>> splitWords(const std::string& line) {
  if (!isUtf8(line)) {
    return std::nullopt;
  }
  std::vector<std::string> words;
  std::string word;
  bool quoted = false;
  int depth = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (!quoted && depth == 0 && (c == ' ' || c == '\t')) {
      if (!word.empty()) {
        words.push_back(std::move(word));
      }
      word.clear();
      continue;
    }
    word += c;
    if (quoted && c == '\\' && i + 1 < line.size()) {
      word += line[++i];
    } else if (c == '"') {
      quoted = !quoted;
    } else if (!quoted && (c == '[' || c == '{')) {
      ++depth;
    } else if (!quoted && depth > 0 && (c == ']' || c == '}')) {
      --depth;
    }
  }
  if (quoted) {
    return std::nullopt;
  }
  if (!word.empty()) {
    words.push_back(std::move(word));
  }
  return words;
}

std::optional<std::string> wordText(const std::string& word) {
  if (word.empty() || word.front() != '"') {
    return QString::fromStdString(word).toLatin1().toStdString();
  }
  const auto value = parseJson(word);
  if (!value || !value->isString()) {
    return std::nullopt;
  }
  return latin1Of(*value);
}

}  // namespace firmlane
