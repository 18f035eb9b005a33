#include "replay/entry_reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "platform/failure.h"
#include "record/record_text.h"

namespace firmlane::sim {

namespace {

constexpr std::size_t kMostBytesOfEntry = std::size_t{1} << 16U;
constexpr Micros kLatest = Micros{1000} * 3600 * kSecond;
constexpr int kHighestPort = 16;

[[noreturn]] void refuse(const std::string& why) { throw Failure(failure_number::kInvalidArgument, why); }

/// What stands behind a kind's name, a letter for each word:
///   n a name, p a port number, i a number, s a text in double quotes, f the number of a failure, w a plain word;
///   ? what follows may be missing, + the last one may be repeated, b bytes up to the end, t either a text or bytes.
struct Kind {
  std::string_view name;
  std::string_view words;
};
constexpr std::array<Kind, 25> kKinds = {{
    {"show", "n?w"},    {"hide", "n"},    {"unload", "n"},  {"gone", "n"},  {"says", "no"},  {"lists", "ns+"}, {"box", "wssw+"},
    {"answer", "w"},    {"click", "n"},   {"choose", "ni"}, {"type", "nk"}, {"close", "n"},  {"open", "piw"},  {"set", "piw"},
    {"refused", "pfs"}, {"closed", "p"},  {"lost", "pfs"},  {"sent", "pb"}, {"heard", "pb"}, {"get", "s"},     {"got", "iwv"},
    {"body", "t"},      {"failed", "fs"}, {"dropped", ""},  {"doing", "s"},
}};

/// The words of a line, one after another.
class Words {
 public:
  explicit Words(std::string_view line) : rest_(line) { skipBlanks(); }

  [[nodiscard]] bool atEnd() const { return rest_.empty(); }
  [[nodiscard]] bool atText() const { return !rest_.empty() && rest_.front() == '"'; }
  [[nodiscard]] std::string_view rest() const { return rest_; }

  std::string word() {
    if (atEnd()) {
      refuse("a word is missing");
    }
    if (atText()) {
      refuse("a text stands where a word belongs");
    }
    const std::size_t end = std::min(rest_.find(' '), rest_.size());
    std::string word(rest_.substr(0, end));
    rest_.remove_prefix(end);
    skipBlanks();
    return word;
  }

  std::string text() {
    if (!atText()) {
      refuse("a text in double quotes is missing");
    }
    std::string result;
    std::size_t at = 1;
    for (; at < rest_.size() && rest_[at] != '"'; ++at) {
      result += rest_[at] == '\\' ? escaped(at) : rest_[at];
    }
    if (at >= rest_.size()) {
      refuse("a text does not end");
    }
    rest_.remove_prefix(at + 1);
    skipBlanks();
    return result;
  }

 private:
  void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size())); }

  /// The character that an escape at `at` stands for; `at` moves to its last sign.
  char escaped(std::size_t& at) const {
    ++at;
    const char sign = at < rest_.size() ? rest_[at] : '\0';
    switch (sign) {
      case 'r':
        return '\r';
      case 'n':
        return '\n';
      case 't':
        return '\t';
      case '"':
      case '\\':
        return sign;
      case 'x': {
        unsigned value = 0;
        const std::string_view digits = rest_.substr(std::min(at + 1, rest_.size()), 2);
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
        if (error == std::errc() && digits.size() == 2 && end == digits.data() + 2) {
          at += 2;
          return static_cast<char>(value);
        }
        break;
      }
      default:
        break;
    }
    refuse("a text holds an escape that is none");
  }

  std::string_view rest_;
};

template <typename T>
T numberIn(std::string_view word, int base = 10) {
  T number{};
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number, base);
  if (error != std::errc() || end != word.data() + word.size()) {
    refuse("\"" + std::string(word) + "\" is not a number");
  }
  return number;
}

Micros timeIn(const std::string& word) {
  const std::size_t point = word.find('.');
  constexpr std::size_t kDigits = 6;
  if (point == std::string::npos || word.size() != point + 1 + kDigits) {
    refuse("\"" + word + "\" is not a time");
  }
  const auto seconds = numberIn<std::uint32_t>(word.substr(0, point));
  const Micros time = Micros{seconds} * kSecond + numberIn<std::uint32_t>(word.substr(point + 1));
  if (time > kLatest) {
    refuse("\"" + word + "\" is later than any record");
  }
  return time;
}

/// "1F", or "FF*12"
void takeHex(std::string_view word, Bytes& bytes) {
  const std::size_t star = std::min(word.find('*'), word.size());
  if (star != 2) {
    refuse("\"" + std::string(word) + "\" is not a byte");
  }
  const auto byte = numberIn<std::uint8_t>(word.substr(0, star), 16);
  const auto count = star == word.size() ? std::size_t{1} : numberIn<std::size_t>(word.substr(star + 1));
  if (count > kMostBytesOfEntry - bytes.size()) {
    refuse("more bytes than a record holds");
  }
  bytes.insert(bytes.end(), count, byte);
}

Bytes takeHexUpTo(Words& words, std::string_view stop) {
  Bytes bytes;
  while (!words.atEnd()) {
    const std::string word = words.word();
    if (word == stop) {
      return bytes;
    }
    takeHex(word, bytes);
  }
  if (!stop.empty()) {
    refuse("\"" + std::string(stop) + "\" is missing");
  }
  return bytes;
}

RecordedBytes inFull(Bytes all) {
  RecordedBytes bytes;
  bytes.size = all.size();
  bytes.sum = recordSum(all);
  bytes.first = std::move(all);
  return bytes;
}

/// "02 00 1F", or "24000 bytes 02 00 .. 1F 1A sum 0123456789ABCDEF in 12.500000"
RecordedBytes takeBytes(Words& words) {
  const std::size_t mark = words.rest().find(" bytes ");
  if (mark == std::string_view::npos) {
    return inFull(takeHexUpTo(words, ""));
  }
  RecordedBytes bytes;
  bytes.size = numberIn<std::size_t>(words.word());
  bytes.inFull = false;
  words.word();
  bytes.first = takeHexUpTo(words, "..");
  bytes.last = takeHexUpTo(words, "sum");
  bytes.sum = numberIn<RecordSum>(words.word(), 16);
  if (!words.atEnd()) {
    words.word();
    timeIn(words.word());
  }
  if (bytes.first.size() + bytes.last.size() > bytes.size) {
    refuse("more bytes are given than there were");
  }
  return bytes;
}

std::string takePort(Words& words) {
  std::string word = words.word();
  if (!word.empty() && word.back() == ':') {
    word.pop_back();
  }
  const int port = numberIn<int>(word);
  if (port < 1 || port > kHighestPort) {
    refuse("a port has a number from 1 to 16");
  }
  return word;
}

std::string takeFailureNumber(Words& words) {
  const std::string word = words.word();
  if (word.front() != '#') {
    refuse("the number of a failure is missing");
  }
  numberIn<int>(word.substr(1));
  return word.substr(1);
}

std::string takeNumber(Words& words) {
  std::string word = words.word();
  numberIn<int>(word);
  return word;
}

void takeBody(Words& words, Entry& entry) {
  if (words.atText()) {
    const std::string text = words.text();
    entry.bytes = inFull({text.begin(), text.end()});
  } else {
    entry.bytes = takeBytes(words);
  }
}

/// `"wls.bin" 24000 bytes sum 0123456789ABCDEF`, `"sn.wls": DB 05 00 00`, `"sn.wls" missing`
void takeFile(Words& words, Entry& entry) {
  entry.words.push_back(words.text());
  if (entry.words.back().find_first_of("/\\:") != std::string::npos || entry.words.back().starts_with('.')) {
    refuse("a file has a plain name");  // it may be written as one
  }
  const std::string word = words.word();
  if (word == ":") {
    entry.bytes = inFull(takeHexUpTo(words, ""));
    entry.words.emplace_back("whole");
    return;
  }
  if (word.front() < '0' || word.front() > '9') {
    entry.words.push_back(word);
    return;
  }
  entry.bytes.size = numberIn<std::size_t>(word);
  entry.bytes.inFull = false;
  words.word();
  entry.words.emplace_back("sum");
  if (!words.atEnd() && words.word() == "sum") {
    entry.bytes.sum = numberIn<RecordSum>(words.word(), 16);
  }
}

void takeWords(std::string_view pattern, Words& words, Entry& entry) {
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const bool repeated = pattern.substr(i + 1).starts_with('+');
    do {
      switch (pattern[i]) {
        case '?':
          if (words.atEnd()) {
            return;
          }
          break;
        case 'p':
          entry.words.push_back(takePort(words));
          break;
        case 'i':
          entry.words.push_back(takeNumber(words));
          break;
        case 'f':
          entry.words.push_back(takeFailureNumber(words));
          break;
        case 's':
          entry.words.push_back(words.text());
          break;
        case 'o':  // an outcome has its kind in front of the text
          entry.words.push_back(words.atText() ? std::string() : words.word());
          entry.words.push_back(words.text());
          break;
        case 'k':  // what was typed, or that it is not kept
          entry.words.push_back(words.atText() ? words.text() : words.word() + " " + words.word());
          break;
        case 'v':  // a length as the server stated it, or none
          entry.words.push_back(words.atText() ? words.text() : words.word());
          break;
        case 'b':
          entry.bytes = takeBytes(words);
          break;
        case 't':
          takeBody(words, entry);
          break;
        case '+':
          break;
        default:
          entry.words.push_back(words.word());
          break;
      }
    } while (repeated && !words.atEnd());
  }
}

}  // namespace

int Entry::port() const { return numberIn<int>(words.front()); }

int Entry::failureNumber() const { return numberIn<int>(words[words.size() - 2]); }

Entry readEntry(std::string_view line) {
  Words words(line);
  Entry entry;
  entry.time = timeIn(words.word());
  entry.text = words.rest();
  entry.kind = words.word();
  if (entry.kind == "file") {
    takeFile(words, entry);
    return entry;
  }
  const auto* kind = std::find_if(kKinds.begin(), kKinds.end(), [&entry](const Kind& known) { return known.name == entry.kind; });
  if (kind == kKinds.end()) {
    refuse("there is no entry \"" + entry.kind + "\"");
  }
  takeWords(kind->words, words, entry);
  if (!words.atEnd()) {
    refuse("a word too many");
  }
  return entry;
}

std::string unescaped(std::string_view text) {
  const std::string quoted = '"' + std::string(text) + '"';
  return Words(quoted).text();
}

}  // namespace firmlane::sim
