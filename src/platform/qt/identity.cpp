#include "platform/qt/identity.h"

#include <QCoreApplication>

namespace firmlane {

void introduce(const std::string& name) {
  QCoreApplication::setApplicationName(QString::fromStdString(name));
  QCoreApplication::setApplicationVersion(QStringLiteral(FIRMLANE_VERSION));
}

std::string versionLine(const std::string& program) { return program + " " FIRMLANE_VERSION "\n"; }

}  // namespace firmlane
