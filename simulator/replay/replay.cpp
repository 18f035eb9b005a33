#include "replay/replay.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/failure.h"
#include "record/record_text.h"

namespace firmlane::sim {

namespace {

// Longer than any limit of the program: what has not come by then does not come.
constexpr Micros kPatience = 200 * kSecond;
// By so much the last question before an answer may come earlier than it did.
constexpr Micros kRhythm = kSecond;
constexpr std::size_t kEnds = 16;
constexpr std::size_t kMostEarly = 4096;

constexpr std::array<std::string_view, 9> kInputs = {"click", "choose", "type", "close", "answer",
                                                     "heard", "lost",   "got",  "failed"};
constexpr std::array<std::string_view, 3> kLineStates = {"open", "set", "closed"};
constexpr std::array<std::string_view, 7> kOfLineAndWeb = {"sent", "heard", "lost", "get", "got", "failed", "dropped"};

template <typename Names>
bool isOneOf(const Names& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// Address without scheme and host: the one who plays has another server.
std::string pathOf(const std::string& url) {
  const std::size_t host = url.find("://");
  return host == std::string::npos ? url : url.substr(std::min(url.find('/', host + 3), url.size()));
}

std::string hexByte(std::uint8_t byte) { return hexText(ByteSpan(&byte, 1)); }

}  // namespace

Replay::Replay(const Recording& recording, ReplayStage& stage, ReplayPart part)
    : recording_(recording), stage_(stage), part_(part) {}

Replay::~Replay() = default;

const Entry* Replay::next() const { return at_ < recording_.entries.size() ? &recording_.entries[at_] : nullptr; }

Replay::Role Replay::roleOf(const Entry& entry) const {
  const bool lineState = isOneOf(kLineStates, entry.kind);
  if (entry.kind == "body" || (entry.kind == "dropped" && part_ == ReplayPart::LineAndWeb)) {
    return Role::PassedOver;
  }
  if (part_ == ReplayPart::LineAndWeb) {
    if (lineState) {
      return Role::LineState;
    }
    if (!isOneOf(kOfLineAndWeb, entry.kind)) {
      return Role::PassedOver;
    }
  }
  return isOneOf(kInputs, entry.kind) ? Role::Input : Role::Output;
}

void Replay::start() {
  anchor_ = stage_.now();
  anchorTime_ = recording_.entries.empty() ? 0 : recording_.entries.front().time;
  advance();
}

void Replay::advance() {
  while (!over_) {
    const Entry* entry = next();
    if (entry == nullptr) {
      finish();
      return;
    }
    switch (roleOf(*entry)) {
      case Role::PassedOver:
        ++at_;
        break;
      case Role::Output:
        waitFor(*entry);
        return;
      case Role::Input:
        plan(*entry);
        return;
      case Role::LineState:
        if (!stage_.takes(*entry)) {
          return;  // it looks again
        }
        matched(*entry);
        break;
    }
  }
}

/// Whoever works the program may take his time; a program that was worked by the record's own user may not.
void Replay::waitFor(const Entry& entry) {
  if (part_ != ReplayPart::Everything) {
    return;
  }
  const Micros limit = std::max<Micros>(0, entry.time - anchorTime_) + kPatience;
  stage_.after(limit, [this, alive = std::weak_ptr(life_), mine = at_, heard = heard_] {
    if (!alive.expired() && !over_ && at_ == mine && heard_ == heard) {
      differ(recording_.entries[at_], "nothing has come");
    }
  });
}

void Replay::plan(const Entry& entry) {
  planned_ = true;
  // An adapter that goes in mid-stream goes at its byte: by its time the program would have sent others.
  const Micros wait = entry.kind == "lost" && streaming_ ? 0 : std::max<Micros>(0, entry.time - anchorTime_);
  const Micros due = anchor_ + wait;
  stage_.after(std::max<Micros>(0, due - stage_.now()), [this, alive = std::weak_ptr(life_), mine = at_] {
    if (!alive.expired() && !over_ && at_ == mine) {
      perform();
    }
  });
}

void Replay::perform() {
  const Entry& entry = recording_.entries[at_];
  planned_ = false;
  if (entry.kind == "lost") {
    early_.clear();
  }
  matched(entry);
  if (const auto trouble = stage_.perform(entry)) {
    differ(entry, *trouble);
    return;
  }
  advance();
  if (const Bytes early = std::exchange(early_, {}); !early.empty()) {
    hear(entry.port(), early);
  }
}

void Replay::matched(const Entry& entry) {
  anchor_ = stage_.now();
  anchorTime_ = entry.time;
  if (entry.kind == "sent") {
    asking_ = questionsOf(entry.bytes).has_value();
  } else if (entry.kind == "open") {
    told_.clear();
  } else if (entry.kind == "heard") {
    told_.insert(entry.text);
  }
  streaming_ = entry.kind == "sent" ? !entry.bytes.inFull : streaming_ && entry.kind == "heard";
  heard_ = 0;
  sum_ = kSumOfNothing;
  tail_.clear();
  ++at_;
}

void Replay::observe(const std::string& text) {
  const std::string kind = text.substr(0, text.find(' '));
  if (over_ || isOneOf(kInputs, kind) || kind == "sent" || kind == "body") {
    return;
  }
  const Entry& entry = recording_.entries[at_];
  if (planned_ || entry.text != text) {
    differ(entry, "now: " + text);
    return;
  }
  matched(entry);
  advance();
}

void Replay::observeRequest(const std::string& url) {
  if (over_) {
    return;
  }
  comeToTraffic();
  const Entry* entry = next();
  const std::string asked = pathOf(withoutContact(url));
  if (entry == nullptr) {
    return;
  }
  if (entry->kind != "get" || pathOf(entry->words.front()) != asked) {
    differ(*entry, "now: get " + inQuotes(asked));
    return;
  }
  matched(*entry);
  advance();
}

void Replay::look() {
  const Entry* entry = next();
  if (over_ || entry == nullptr) {
    return;
  }
  if (roleOf(*entry) == Role::LineState) {
    advance();
    return;
  }
  const bool traffic = entry->kind == "sent" || entry->kind == "heard";
  const std::string moved = traffic ? stage_.movedOn(entry->port()) : std::string();
  if (!moved.empty() && !skipReading()) {
    differ(*entry, "now: " + moved);
  }
}

/// A program that has read enough asks no further, and is not told again what it knows. False when there is more in what is next.
bool Replay::skipReading() {
  std::size_t end = at_;
  for (; end < recording_.entries.size() && roleOf(recording_.entries[end]) != Role::LineState; ++end) {
    const Entry& entry = recording_.entries[end];
    const bool again =
        (entry.kind == "sent" && questionsOf(entry.bytes)) || (entry.kind == "heard" && told_.contains(entry.text));
    if (!again && roleOf(entry) != Role::PassedOver) {
      return false;
    }
  }
  planned_ = false;
  while (at_ < end) {
    matched(recording_.entries[at_]);
  }
  advance();
  return true;
}

/// Past what the program has to have done with its ports before it can send or ask for a page.
void Replay::comeToTraffic() {
  if (!planned_ && next() != nullptr && roleOf(*next()) != Role::Output) {
    advance();
  }
}

/// The furthest of the questions that are next, if questions are.
std::optional<Question> Replay::questionsNext() const {
  const Entry* entry = next();
  return part_ == ReplayPart::LineAndWeb && entry != nullptr && entry->kind == "sent" ? questionsOf(entry->bytes) : std::nullopt;
}

/// Returns how many bytes were a question of a reading; none when it is not the time for one.
std::size_t Replay::hearQuestion(int port, ByteSpan bytes) {
  const auto asked = questionAt(bytes);
  const auto expected = questionsNext();
  if (part_ != ReplayPart::LineAndWeb || !asked || (!expected && !asking_)) {
    return 0;
  }
  // A unit that took its time, most often because its user did, takes it again.
  if (expected && *asked >= *expected && next()->port() == port &&
      stage_.now() - anchor_ >= next()->time - anchorTime_ - kRhythm) {
    matched(*next());
    advance();
  }
  return kQuestionSize;
}

void Replay::hear(int port, ByteSpan bytes) {
  while (!bytes.empty() && !over_) {
    comeToTraffic();
    const Entry* entry = next();
    if (entry == nullptr) {
      finish();
      return;
    }
    if (const std::size_t question = hearQuestion(port, bytes); question > 0) {
      bytes = bytes.subspan(question);
      continue;
    }
    if (planned_ && streaming_ && early_.size() + bytes.size() <= kMostEarly) {
      early_.insert(early_.end(), bytes.begin(), bytes.end());
      return;
    }
    if (planned_ || entry->kind != "sent" || entry->port() != port) {
      differ(*entry, "now: sent " + std::to_string(port) + ": " + hexText(bytes.first(std::min(bytes.size(), kEnds))));
      return;
    }
    bytes = bytes.subspan(hearPart(bytes));
  }
}

/// Compares as far as the stream that is next goes; returns how many bytes that were.
std::size_t Replay::hearPart(ByteSpan bytes) {
  const Entry& entry = recording_.entries[at_];
  const std::size_t count = std::min(bytes.size(), entry.bytes.size - heard_);
  const ByteSpan part = bytes.first(count);
  for (std::size_t i = 0; i < count && heard_ + i < entry.bytes.first.size(); ++i) {
    const std::uint8_t expected = entry.bytes.first[heard_ + i];
    if (part[i] != expected) {
      differ(entry, "byte " + std::to_string(heard_ + i + 1) + " of " + std::to_string(entry.bytes.size) + " is " +
                        hexByte(part[i]) + " now, and was " + hexByte(expected));
      return count;
    }
  }
  heard_ += count;
  sum_ = recordSum(part, sum_);
  tail_.insert(tail_.end(), part.begin(), part.end());
  tail_.erase(tail_.begin(), tail_.end() - static_cast<std::ptrdiff_t>(std::min(kEnds, tail_.size())));
  if (heard_ == entry.bytes.size) {
    completeStream(entry);
  }
  return count;
}

void Replay::completeStream(const Entry& entry) {
  if (sum_ != entry.bytes.sum) {
    differ(entry, "the " + std::to_string(entry.bytes.size) + " bytes are others now; their sum is " + sumText(sum_) +
                      ", the last are " + hexText(tail_));
    return;
  }
  matched(entry);
  advance();
}

void Replay::differ(const Entry& entry, const std::string& how) {
  if (!over_) {
    difference_ = "line " + std::to_string(entry.line) + ", " + secondsText(entry.time) +
                  " s, the record has: " + entry.text.substr(0, 300) + "\n" + how;
    finish();
  }
}

void Replay::finish() {
  if (!std::exchange(over_, true) && onOver) {
    onOver();
  }
}

void Replay::end(const std::string& how) {
  const Entry* entry = next();
  if (!over_ && entry != nullptr) {
    differ(*entry, how);
  }
}

std::optional<Failure> Replay::refusalOf(int port) const {
  for (std::size_t i = at_; i < recording_.entries.size(); ++i) {
    const Entry& entry = recording_.entries[i];
    if ((entry.kind == "open" || entry.kind == "refused") && entry.port() == port) {
      return entry.kind == "open" ? std::nullopt : std::optional(Failure(entry.failureNumber(), entry.failureText()));
    }
  }
  return std::nullopt;
}

const Entry* Replay::bodyBehind(const Entry& got) const {
  for (std::size_t i = static_cast<std::size_t>(&got - recording_.entries.data()) + 1; i < recording_.entries.size(); ++i) {
    const Entry& entry = recording_.entries[i];
    if (entry.kind == "body") {
      return &entry;
    }
    if (entry.kind == "get") {
      break;
    }
  }
  return nullptr;
}

}  // namespace firmlane::sim
