#include "replay/recording.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>

#include "platform/failure.h"
#include "record/record.h"
#include "record/record_text.h"
#include "replay/entry_reader.h"

namespace firmlane::sim {

namespace {

/// Lines of a text without their ends and without the quote signs of a mail.
class Lines {
 public:
  explicit Lines(std::string_view text) : rest_(text) {}

  bool next() {
    if (rest_.empty()) {
      return false;
    }
    const std::size_t end = std::min(rest_.find('\n'), rest_.size());
    line_ = rest_.substr(0, end);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    ++number_;
    while (line_.starts_with("> ")) {
      line_.remove_prefix(2);
    }
    while (!line_.empty() && (line_.back() == '\r' || line_.back() == ' ')) {
      line_.remove_suffix(1);
    }
    return true;
  }
  [[nodiscard]] std::string_view line() const { return line_; }
  [[nodiscard]] std::size_t number() const { return number_; }

 private:
  std::string_view rest_;
  std::string_view line_;
  std::size_t number_ = 0;
};

constexpr std::size_t kMostEntries = 100'000;
constexpr std::size_t kMostOfHead = 100;
constexpr std::size_t kLongestLine = Record::kCapacity;
constexpr std::size_t kMostBytes = std::size_t{16} << 20U;

[[noreturn]] void refuse(std::size_t line, const std::string& why) {
  throw Failure(failure_number::kInvalidArgument, "Line " + std::to_string(line) + " of the record: " + why);
}

void findTitle(Lines& lines) {
  const std::string_view title = Record::kTitle;
  const std::string_view name = title.substr(0, title.rfind(' ') + 1);
  while (lines.next()) {
    if (lines.line() == title) {
      return;
    }
    const std::string_view version = lines.line().starts_with(name) ? lines.line().substr(name.size()) : std::string_view();
    if (!version.empty() && std::all_of(version.begin(), version.end(), [](char c) { return c >= '0' && c <= '9'; })) {
      refuse(lines.number(), "it is of version " + std::string(version) + ", and this program reads version 1");
    }
  }
  refuse(std::max<std::size_t>(lines.number(), 1), "no line says \"" + std::string(title) + "\": this is no record");
}

bool isEntry(std::string_view line) { return line.front() >= '0' && line.front() <= '9'; }

void takeHead(Recording& recording, const Lines& lines) {
  const std::size_t colon = lines.line().find(": ");
  if (colon == std::string_view::npos) {
    refuse(lines.number(), "neither an entry nor a line of the head");
  }
  if (recording.head.size() == kMostOfHead) {
    refuse(lines.number(), "more than " + std::to_string(kMostOfHead) + " lines of the head");
  }
  const std::string value(lines.line().substr(colon + 2));
  if (lines.line().starts_with("missing: ")) {
    std::from_chars(value.data(), value.data() + value.size(), recording.dropped);
  }
  const std::string name(lines.line().substr(0, colon));
  try {
    recording.head[name] = name == "directory" ? unescaped(value) : value;
  } catch (const Failure& failure) {
    refuse(lines.number(), failure.description());
  }
}

}  // namespace

std::string Recording::headOf(const std::string& name) const {
  const auto found = head.find(name);
  return found == head.end() ? std::string() : found->second;
}

std::vector<const Entry*> Recording::filesAtFirst() const {
  std::vector<const Entry*> files;
  std::set<std::string> met;
  for (const Entry& entry : entries) {
    if (entry.kind == "file" && met.insert(entry.words.front()).second && entry.words.back() != "missing" &&
        entry.words.back() != "not") {
      files.push_back(&entry);
    }
  }
  return files;
}

std::string Recording::asInItsDirectory(std::string entry, const std::string& mine) const {
  const std::string own = escaped(mine);
  const std::string recorded = escaped(headOf("directory"));
  if (own.empty() || recorded.empty()) {
    return entry;
  }
  // Between a directory and a name each system has its own separator.
  const std::string ownSeparator = mine.front() == '/' ? "/" : escaped("\\");
  const std::string separator = recorded.front() == '/' ? "/" : escaped("\\");
  for (std::size_t at = entry.find(own); at != std::string::npos; at = entry.find(own, at)) {
    const bool named = entry.compare(at + own.size(), ownSeparator.size(), ownSeparator) == 0;
    entry.replace(at, own.size() + (named ? ownSeparator.size() : 0), recorded + (named ? separator : ""));
    at += recorded.size();
  }
  return entry;
}

Recording readRecording(std::string_view text) {
  Lines lines(text);
  findTitle(lines);
  Recording recording;
  std::size_t bytes = 0;
  while (lines.next()) {
    if (lines.line().empty()) {
      continue;
    }
    if (lines.line().size() > kLongestLine) {
      refuse(lines.number(), "it is longer than a whole record");
    }
    if (lines.line() == Record::kEnd) {
      recording.complete = true;
      break;
    }
    if (!isEntry(lines.line())) {
      if (!recording.entries.empty()) {
        refuse(lines.number(), "it does not begin with a time; has a mail broken a line in two?");
      }
      takeHead(recording, lines);
      continue;
    }
    try {
      recording.entries.push_back(readEntry(lines.line()));
    } catch (const Failure& failure) {
      refuse(lines.number(), failure.description());
    }
    if (recording.entries.size() > kMostEntries) {
      refuse(lines.number(), "more than " + std::to_string(kMostEntries) + " entries are no record of a few minutes");
    }
    Entry& entry = recording.entries.back();
    entry.line = lines.number();
    bytes += entry.bytes.first.size();
    if (bytes > kMostBytes) {
      refuse(lines.number(), "more bytes than a record holds");
    }
    if (recording.entries.size() > 1 && entry.time < recording.entries[recording.entries.size() - 2].time) {
      refuse(lines.number(), "its time lies before that of the line above");
    }
  }
  return recording;
}

}  // namespace firmlane::sim
