#include <thread>

#include "platform/qt/nap.h"

namespace firmlane {

void nap(std::chrono::nanoseconds span) { std::this_thread::sleep_for(span); }

}  // namespace firmlane
