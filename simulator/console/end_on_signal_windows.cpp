#include <QCoreApplication>
#include <chrono>

#include "console/end_on_signal.h"
#include "platform/win32.h"

namespace firmlane::sim {

namespace {

/// Runs on a thread of its own. When the console is closed the system ends the program as soon as this returns.
BOOL WINAPI end(DWORD event) {
  QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit, Qt::QueuedConnection);
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
    ::Sleep(INFINITE);
  }
  return TRUE;
}

}  // namespace

/// Ctrl-C, Ctrl-Break, a console that is closed, and the end of the session.
EndOnSignal::EndOnSignal() { ::SetConsoleCtrlHandler(&end, TRUE); }

}  // namespace firmlane::sim
