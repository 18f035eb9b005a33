// One line of a record, taken apart by the table of what each kind of entry consists of.
#pragma once

#include "replay/recording.h"

namespace firmlane::sim {

/// Throws Failure with what is wrong with the line. Its number is the caller's business.
Entry readEntry(std::string_view line);

/// A text as it was before a record wrote it without its quotes. Throws Failure as above.
std::string unescaped(std::string_view text);

}  // namespace firmlane::sim
