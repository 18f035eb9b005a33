#include "platform/qt/program_directory.h"

#include <QCoreApplication>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <system_error>

#include "platform/qt/qt_text.h"
#include "platform/qt/shared_trees.h"
#include "platform/system_path.h"

namespace firmlane {

namespace fs = std::filesystem;

bool isWritable(const fs::path& directory) {
  QTemporaryFile probe(toQt((directory / ".firmlane-XXXXXX").string()));
  return probe.open();
}

fs::path programDirectory() {
  fs::path own = systemPath(fromQt(QCoreApplication::applicationDirPath()));
  if (!isShared(own) && isWritable(own)) {
    return own;
  }
  fs::path data = systemPath(fromQt(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation)));
  std::error_code error;
  fs::create_directories(data, error);  // a failure shows as each file's own
  return data;
}

}  // namespace firmlane
