// What holds for every page, whatever stands on it.
#pragma once

#include <QWidget>
#include <string>

namespace firmlane::test {

/// Everything that is wrong with the window as it stands, one fault a line; empty when nothing is: a control that is out of sight
/// or cut, a control without name or role, a control that Tab does not lead to, a window larger than the screen.
std::string faultsOf(QWidget& window);

}  // namespace firmlane::test
