// The application of a program with windows, and what becomes of it where there is no display.
#pragma once

#include <QApplication>
#include <memory>
#include <string>

namespace firmlane {

/// Opens the display under the name of the program's menu entry. Where none can be opened the program ends at once, with one
/// sentence on standard error and status 1; Qt alone would abort.
std::unique_ptr<QApplication> openDisplay(int& argc, char** argv, const std::string& name);

}  // namespace firmlane
