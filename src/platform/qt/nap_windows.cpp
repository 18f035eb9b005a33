// A plain sleep takes Windows up to sixteen milliseconds, in which a fast line runs dry.
#include "platform/qt/nap.h"
#include "platform/win32.h"

namespace firmlane {

namespace {

#ifndef CREATE_WAITABLE_TIMER_HIGH_RESOLUTION
constexpr DWORD CREATE_WAITABLE_TIMER_HIGH_RESOLUTION = 2;
#endif

/// Before Windows 10 of 2018 a timer is as fine as the system's clock.
Handle makeTimer() {
  const HANDLE timer =
      ::CreateWaitableTimerExW(nullptr, nullptr, CREATE_WAITABLE_TIMER_HIGH_RESOLUTION, TIMER_MODIFY_STATE | SYNCHRONIZE);
  return Handle(timer != nullptr ? timer : ::CreateWaitableTimerW(nullptr, TRUE, nullptr));
}

}  // namespace

void nap(std::chrono::nanoseconds span) {
  const Handle timer = makeTimer();
  LARGE_INTEGER due{};
  due.QuadPart = -std::chrono::duration_cast<std::chrono::duration<LONGLONG, std::ratio<1, 10'000'000>>>(span).count();
  if (!timer.valid() || ::SetWaitableTimer(timer.get(), &due, 0, nullptr, nullptr, FALSE) == 0 ||
      ::WaitForSingleObject(timer.get(), INFINITE) != WAIT_OBJECT_0) {
    ::Sleep(1);
  }
}

}  // namespace firmlane
