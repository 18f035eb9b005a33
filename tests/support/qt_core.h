// Qt's event loop for tests that stand on it without windows.
#pragma once

#include <QCoreApplication>

namespace firmlane::test {

struct QtCore {
  int count = 1;
  char name[5] = "test";
  char* arguments[2] = {name, nullptr};
  QCoreApplication application{count, arguments};
};

}  // namespace firmlane::test
