// The lock files by which programs tell each other that they use a serial device. Qt makes and obeys them; what it cannot tell is
// a lock that somebody else's program has left behind from one in use.
#pragma once

#include <QString>
#include <string>

namespace firmlane {

struct PortLock {
  /// A lock whose owner does not live any more. Only that owner's user, or an administrator, can remove it.
  bool abandoned = false;
  /// The owner, such as "minicom, process 4711"; empty when there is no lock or nothing is known of it.
  std::string owner;
};

/// The lock on a device under the name with which Qt is to open it.
PortLock portLock(const QString& device);

}  // namespace firmlane
