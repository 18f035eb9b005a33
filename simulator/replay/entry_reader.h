// One line of a record, taken apart by the table of what each kind of entry consists of.
#pragma once

#include "replay/recording.h"

namespace firmlane::sim {

/// Throws Failure with what is wrong with the line. Its number is the caller's business.
Entry readEntry(std::string_view line);

}  // namespace firmlane::sim
