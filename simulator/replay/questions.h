// The questions with which the program reads a unit. How often it repeats one, and which of two comes first, is a matter of its
// timer and of how fast its computer counts; what the unit answers is not. So a player that meets a program on another computer
// compares of a reading only how far it has come.
#pragma once

#include <optional>

#include "replay/recording.h"

namespace firmlane::sim {

/// Later questions of a reading are only asked when earlier ones have been answered.
enum class Question { ResetLink, WhoIsThere, GetVersions };

/// Bytes of each question's frame.
inline constexpr std::size_t kQuestionSize = 7;

/// The question with which these bytes begin.
std::optional<Question> questionAt(ByteSpan bytes);
/// The furthest question of an entry of bytes that were sent; nothing when it holds anything else, as far as it is known.
std::optional<Question> questionsOf(const RecordedBytes& bytes);

}  // namespace firmlane::sim
