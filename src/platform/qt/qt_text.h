// Between the program's 8-bit texts and Qt's.
#pragma once

#include <QString>
#include <string>

namespace firmlane {

/// A text of Qt as the program holds it.
inline std::string fromQt(const QString& text) { return text.toStdString(); }

/// Paths, URLs and other texts that came from Qt in the first place.
inline QString toQt(const std::string& text) { return QString::fromStdString(text); }

}  // namespace firmlane
