// Ends the event loop when the system asks the program to end, so that what it has made is removed.
#pragma once

#include <QTimer>

namespace firmlane::sim {

class EndOnSignal {
 public:
  EndOnSignal();

 private:
  QTimer timer_;
};

}  // namespace firmlane::sim
