#include <QDir>
#include <QStandardPaths>
#include <algorithm>

#include "platform/qt/qt_text.h"
#include "platform/qt/shared_trees.h"

namespace firmlane {

/// For all users, and for one: an installer that needs no administrator puts programs into the user's own tree.
bool isShared(const std::filesystem::path& directory) {
  QStringList trees = {QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Programs")};
  for (const char* name : {"ProgramFiles", "ProgramFiles(x86)", "ProgramW6432", "SystemRoot"}) {
    trees += qEnvironmentVariable(name);
  }
  const QString own = QDir::fromNativeSeparators(toQt(directory.string())) + QLatin1Char('/');
  return std::any_of(trees.begin(), trees.end(), [&own](const QString& tree) {
    return !tree.isEmpty() && own.startsWith(QDir::fromNativeSeparators(tree) + QLatin1Char('/'), Qt::CaseInsensitive);
  });
}

}  // namespace firmlane
