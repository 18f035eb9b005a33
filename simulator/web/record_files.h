// What a record names by its sum alone: the pages and files that could stand for it here.
#pragma once

#include <string>

#include "replay/shelf.h"

namespace firmlane::sim {

/// All that the maker's web server has, and the files of a directory.
Shelf shelfWith(const std::string& directory);

/// Puts the files that the record's program found when it first turned to them into a directory. Throws Failure with the names of
/// those that are neither in the record in full nor on the shelf.
void putFiles(const Recording& recording, const Shelf& shelf, const std::string& directory);

}  // namespace firmlane::sim
