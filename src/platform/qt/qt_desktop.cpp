#include "platform/qt/qt_desktop.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <cerrno>

#include "platform/failure.h"
#include "platform/qt/qt_text.h"

namespace firmlane {

void QtDesktop::openDocument(const std::string& document) {
  if (!open_(QUrl::fromUserInput(toQt(document)))) {
    throw Failure(failure_number::kFileNotFound, "No application opens " + document);
  }
}

void QtDesktop::runProgram(const std::string& path) {
  makeStartable(path);
  const QFileInfo program(toQt(path));
  if (!QProcess::startDetached(program.absoluteFilePath(), {}, program.absolutePath())) {
    throw Failure(ENOEXEC, "Cannot start " + path);
  }
}

void QtDesktop::makeStartable(const std::string& path) {
  const QFileInfo program(toQt(path));
  if (!program.isFile()) {
    throw Failure(failure_number::kFileNotFound, "File not found: " + path);
  }
#ifdef Q_OS_UNIX
  QFile file(program.filePath());
  if (!program.isExecutable() && !file.setPermissions(file.permissions() | QFile::ExeOwner | QFile::ExeUser)) {
    throw Failure(failure_number::kPathAccess, "Cannot make " + path + " executable: " + fromQt(file.errorString()));
  }
#endif
}

}  // namespace firmlane
