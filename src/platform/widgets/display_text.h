// The program's 8-bit texts as Qt shows them, and back.
#pragma once

#include <QString>
#include <string>

namespace firmlane {

/// A text for display: CR, LF and CR LF each make one line break, blanks stay. The program's own texts are Latin-1; one that came
/// from the system, such as a path, may be UTF-8 and is shown as such.
QString displayText(const std::string& text);

/// As displayText, for widgets that would take "&" as the mark of a shortcut.
QString buttonText(const std::string& text);

/// What the user typed, in Latin-1.
std::string typedText(const QString& text);

}  // namespace firmlane
