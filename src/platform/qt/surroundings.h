// What Qt tells of the system that the program runs on.
#pragma once

#include <QSysInfo>
#include <string>

#include "platform/qt/qt_text.h"

namespace firmlane {

inline std::string qtVersionInUse() { return qVersion(); }

/// Such as "Debian GNU/Linux 12 (bookworm), x86_64".
inline std::string systemInUse() {
  return fromQt(QSysInfo::prettyProductName() + QStringLiteral(", ") + QSysInfo::currentCpuArchitecture());
}

}  // namespace firmlane
