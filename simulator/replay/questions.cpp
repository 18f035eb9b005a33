#include "replay/questions.h"

#include <algorithm>
#include <array>

namespace firmlane::sim {

namespace {

constexpr std::uint8_t kStart = 0x02;
constexpr std::uint8_t kEnd = 0x80;
constexpr std::array<std::uint8_t, 3> kCodes = {114, 1, 94};  // in the order of Question

/// The furthest question of whole frames; nothing when they are no questions.
std::optional<Question> furthest(ByteSpan frames) {
  std::optional<Question> result;
  for (; frames.size() >= kQuestionSize; frames = frames.subspan(kQuestionSize)) {
    const auto question = questionAt(frames);
    if (!question) {
      return std::nullopt;
    }
    result = std::max(result, question);
  }
  return result;
}

}  // namespace

std::optional<Question> questionAt(ByteSpan bytes) {
  for (std::size_t i = 0; i < kCodes.size(); ++i) {
    const std::array<std::uint8_t, kQuestionSize> frame{kStart, 0, 0, 0, kCodes[i], kCodes[i], kEnd};
    if (bytes.size() >= frame.size() && std::equal(frame.begin(), frame.end(), bytes.begin())) {
      return static_cast<Question>(i);
    }
  }
  return std::nullopt;
}

std::optional<Question> questionsOf(const RecordedBytes& bytes) {
  if (bytes.size % kQuestionSize != 0) {
    return std::nullopt;
  }
  const auto first = furthest(bytes.first);
  if (!first || bytes.inFull) {
    return first;
  }
  const ByteSpan last(bytes.last);
  const auto second = furthest(last.subspan(last.size() % kQuestionSize));
  return second ? std::max(first, second) : std::nullopt;
}

}  // namespace firmlane::sim
