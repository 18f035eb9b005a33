#include "platform/qt/program_directory.h"

#include <QCoreApplication>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <algorithm>
#include <iterator>
#include <string_view>
#include <system_error>

#include "platform/qt/qt_text.h"

namespace firmlane {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kSharedTrees[] = {"/bin", "/sbin", "/usr", "/snap"};

/// What the system itself looks after is shared by all programs: firmware has no business there, even where root may write.
bool isShared(const fs::path& directory) {
  const std::string text = directory.string();
  return std::any_of(std::begin(kSharedTrees), std::end(kSharedTrees),
                     [&text](std::string_view tree) { return text == tree || text.starts_with(std::string(tree) + "/"); });
}

}  // namespace

bool isWritable(const fs::path& directory) {
  QTemporaryFile probe(toQt((directory / ".firmlane-XXXXXX").string()));
  return probe.open();
}

fs::path programDirectory() {
  fs::path own = fs::path(fromQt(QCoreApplication::applicationDirPath()));
  if (!isShared(own) && isWritable(own)) {
    return own;
  }
  fs::path data = fromQt(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation));
  std::error_code error;
  fs::create_directories(data, error);  // a failure shows as each file's own
  return data;
}

}  // namespace firmlane
