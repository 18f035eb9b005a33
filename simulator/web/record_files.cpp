#include "web/record_files.h"

#include "platform/failure.h"
#include "platform/files.h"
#include "platform/system_path.h"
#include "web/maker_site.h"

namespace firmlane::sim {

Shelf shelfWith(const std::string& directory) {
  Shelf shelf;
  for (const auto& [path, page] : makeMakerSite("")) {
    shelf.add(Bytes(page.body.begin(), page.body.end()));
  }
  shelf.addDirectory(firmlane::systemPath(directory));
  return shelf;
}

void putFiles(const Recording& recording, const Shelf& shelf, const std::string& directory) {
  const Files files(firmlane::systemPath(directory));
  std::string unknown;
  for (const Entry* entry : recording.filesAtFirst()) {
    const std::string& name = entry->words.front();
    if (const Bytes* content = shelf.find(entry->bytes)) {
      files.replace(files.path(name), *content);
    } else {
      unknown += "\n  line " + std::to_string(entry->line) + ": " + entry->text;
    }
  }
  if (!unknown.empty()) {
    throw Failure(failure_number::kInvalidArgument,
                  "The record holds these files by their sums alone; --dir names a directory that has them:" + unknown);
  }
}

}  // namespace firmlane::sim
